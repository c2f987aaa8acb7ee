#include "ScenarioFile.hpp"

#include <filesystem>
#include <sstream>
#include <utility>

#include <toml++/toml.h>

#include "ScenarioKeys.hpp"
#include "UsageError.hpp"
#include "UserFile.hpp"

namespace Boardsim {
namespace {

/// The value in the form that ScenarioKey::set parses.
std::string scalarText(const toml::node& node) {
    if (const auto* text = node.as_string()) {
        return text->get();
    }
    if (const auto* number = node.as_integer()) {
        return std::to_string(number->get());
    }
    if (const auto* truth = node.as_boolean()) {
        return truth->get() ? "true" : "false";
    }
    throw UsageError("not a string, an integer or a boolean");
}

/// Throws UsageError, with file, line and key before the reason.
[[noreturn]] void refuse(std::string_view name, const toml::node& value, const std::string& reason) {
    std::ostringstream text;
    text << *value.source().path << ':' << value.source().begin.line << ": " << name << ": " << reason;
    throw UsageError(text.str());
}

void applyScalar(const ScenarioKey& key, const toml::node& value, Scenario& scenario) {
    try {
        key.set(scenario, scalarText(value));
    } catch (const UsageError& error) {
        refuse(key.name, value, error.what());
    }
}

void applyKey(std::string_view name, const toml::node& value, Scenario& scenario) {
    const ScenarioKey* key = findScenarioKey(name);
    if (key == nullptr) {
        refuse(name, value, "unknown key");
    }
    if (key->form != KeyForm::list) {
        applyScalar(*key, value, scenario);
        return;
    }
    const auto* values = value.as_array();
    if (values == nullptr) {
        refuse(name, value, "not an array");
    }
    for (const toml::node& each : *values) {
        applyScalar(*key, each, scenario);
    }
}

toml::table parseText(const std::string& source, const std::string& path) {
    try {
        return toml::parse(source, path);
    } catch (const toml::parse_error& error) {
        std::ostringstream text;
        text << path << ':' << error.source().begin.line << ": " << error.description();
        throw UsageError(text.str());
    }
}

}  // namespace

void loadScenario(const std::string& path, Scenario& scenario) {
    applyScenario(readUserFile(path), path, scenario);
}

void applyScenario(const std::string& text, const std::string& path, Scenario& scenario) {
    const std::string earlierConfig = std::exchange(scenario.config, {});
    for (const auto& [name, value] : parseText(text, path)) {
        applyKey(name.str(), value, scenario);
    }
    scenario.config = scenario.config.empty()
                          ? earlierConfig
                          : (std::filesystem::path(path).parent_path() / scenario.config).string();
}

std::string scenarioText(const Scenario& scenario) {
    toml::table table;
    for (const ScenarioKey& key : scenarioKeys()) {
        toml::array values;
        for (const std::string& value : key.get(scenario)) {
            values.push_back(value);
        }
        if (key.form == KeyForm::list) {
            table.insert(key.name, values);
        } else if (!values.empty()) {
            table.insert(key.name, *values[0].as_string());
        }
    }
    // Only one form of a text is written in such a way that toml++ can read all texts again.
    constexpr auto otherForms =
        toml::format_flags::allow_literal_strings | toml::format_flags::allow_multi_line_strings;
    std::ostringstream text;
    text << toml::toml_formatter(table, toml::toml_formatter::default_flags & ~otherForms) << '\n';
    return text.str();
}

}  // namespace Boardsim
