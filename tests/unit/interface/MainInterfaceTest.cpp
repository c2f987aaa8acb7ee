// The interface of src/main.

#include <concepts>
#include <memory>
#include <string>
#include <vector>

#include "DispatcherSelection.hpp"
#include "Managers.hpp"
#include "Usage.hpp"

namespace {

using std::same_as;

static_assert(same_as<decltype(Korvel::managers), std::vector<std::unique_ptr<Korvel::IManager>>>);
static_assert(requires(int argc, char** argv, const std::string& type) {
    { Korvel::registerManagers() } -> same_as<void>;
    { Korvel::printUsage(argc, argv) } -> same_as<void>;
    { Korvel::selectDispatcherFromOption(type) } -> same_as<void>;
});

}  // namespace
