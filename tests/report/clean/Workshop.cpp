#include "Workshop.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "Budget.hpp"
#include "HashedStream.hpp"
#include "MemorySource.hpp"
#include "PackageReader.hpp"

namespace ReportTest {

namespace {

/// Writes down all that a restored package has in common with the original one.
class Lister : public Report::PackageVisitor {
public:
    void enterGzip() override { text += "gzip {\n"; }
    void leaveGzip(const Report::LayerEnd& end) override { leave(end); }
    void enterTar() override { text += "tar {\n"; }
    void leaveTar(const Report::LayerEnd& end) override { leave(end); }
    void beginMember(const Report::MemberHeader& header) override {
        text += header.name + " " + header.owner + "/" + header.group + " " + std::to_string(header.uid) +
                "/" + std::to_string(header.gid) + " " + std::to_string(header.mode) + " " +
                std::to_string(header.time.tv_sec) + " " + std::to_string(static_cast<int>(header.type)) +
                " {\n";
    }
    void data(std::string_view bytes) override { text += bytes; }
    void endMember(const Report::LayerEnd& end) override { leave(end); }

    std::string text;

private:
    void leave(const Report::LayerEnd& end) { text += "\n} " + end.reason + "\n"; }
};

template <typename Step>
std::string statusAndMessage(Step step) {
    try {
        step();
    } catch (const Report::CleanRefusal& refusal) {
        return std::to_string(refusal.status()) + ": " + refusal.what();
    }
    return "not refused";
}

}  // namespace

Workshop::Workshop() {
    std::string pattern = (std::filesystem::temp_directory_path() / "korvel-clean.XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
}

Workshop::~Workshop() {
    std::filesystem::remove_all(folder);
}

void Workshop::write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string Workshop::read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> Workshop::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

Report::CleanRequest Workshop::cleanRequest() const {
    return {.package = path("in.tgz"),
            .output = path("out.tgz"),
            .map = path("out.tgz.map"),
            .words = {},
            .runFile = {},
            .limits = {},
            .summary = false};
}

Report::RestoreRequest Workshop::restoreRequest() const {
    return {.input = path("out.tgz"),
            .map = path("out.tgz.map"),
            .output = path("back.tgz"),
            .runFile = {},
            .limits = {}};
}

std::string Workshop::refusalOf(const Report::CleanRequest& request) const {
    return withoutFolder(statusAndMessage([&] { Report::cleanPackage(request); }));
}

std::string Workshop::refusalOf(const Report::RestoreRequest& request) const {
    return withoutFolder(statusAndMessage([&] { Report::restore(request); }));
}

std::string Workshop::notesOf(const Report::CleanRequest& request) const {
    std::string text;
    for (const std::string& note : Report::cleanPackage(request)) {
        text += note + "\n";
    }
    return withoutFolder(text);
}

std::string Workshop::withoutFolder(std::string text) const {
    const std::string name = folder.string();
    for (std::size_t place = text.find(name); place != std::string::npos; place = text.find(name)) {
        text.replace(place, name.size(), "DIR");
    }
    return text;
}

std::string Workshop::sha256Of(const std::string& name) const {
    MemorySource source(read(name));
    Report::HashedStream stream(source);
    while (!stream.next().empty()) {
    }
    return stream.sha256();
}

std::string Workshop::listing(const std::string& package) {
    MemorySource source(package);
    Report::Budget budget(Report::Limits{});
    Lister lister;
    const Report::PackageFacts facts = readPackage(source, budget, lister);
    return lister.text + facts.end.reason;
}

}  // namespace ReportTest
