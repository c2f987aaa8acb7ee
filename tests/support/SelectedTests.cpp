#include "SelectedTests.hpp"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Writes the names to a file after GoogleTest has selected and ordered its tests. Then ends the process
/// instead of running them.
class NameWriter : public testing::EmptyTestEventListener {
public:
    explicit NameWriter(std::string path) : file(std::move(path)) {}

private:
    void OnTestIterationStart(const testing::UnitTest& program, int /*iteration*/) override {
        std::ofstream names(file);
        for (int i = 0; i < program.total_test_suite_count(); ++i) {
            write(*program.GetTestSuite(i), names);
        }
        names.close();
        std::_Exit(names ? EXIT_SUCCESS : EXIT_FAILURE);
    }

    static void write(const testing::TestSuite& suite, std::ostream& names) {
        for (int i = 0; i < suite.total_test_count(); ++i) {
            const testing::TestInfo& test = *suite.GetTestInfo(i);
            if (test.should_run()) {
                names << suite.name() << '.' << test.name() << '\n';
            }
        }
    }

    const std::string file;
};

}  // namespace

std::vector<std::string> selectedTests() {
    const int memory = ::memfd_create("tests", MFD_CLOEXEC);
    const std::string path = "/proc/self/fd/" + std::to_string(memory);
    const pid_t child = ::fork();
    if (child == 0) {
        auto& listeners = testing::UnitTest::GetInstance()->listeners();
        delete listeners.Release(listeners.default_result_printer());
        listeners.Append(new NameWriter(path));
        std::_Exit(RUN_ALL_TESTS());
    }
    int status = -1;
    if (::waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("no list of the tests");
    }
    std::vector<std::string> names;
    std::ifstream file(path);
    for (std::string name; std::getline(file, name);) {
        names.push_back(name);
    }
    ::close(memory);
    return names;
}
