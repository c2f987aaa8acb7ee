// The main function of a fuzz target without libFuzzer: every file of the corpus, and some variants of each.
//   PROGRAM CORPUS

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "FuzzTarget.hpp"

namespace {

constexpr int variants = 100;

void run(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

void runVariants(const std::string& input) {
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): each run has the same variants
    std::minstd_rand random(1);
    for (int count = 0; count < variants && !input.empty(); ++count) {
        std::string variant = input;
        for (int change = 0; change < 3; ++change) {
            variant[random() % variant.size()] = static_cast<char>(random());
        }
        run(variant);
        run(input.substr(0, random() % input.size()));
    }
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): an exception ends the program, which then has failed
int main(int /*argc*/, char** argv) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(file), {}};
        std::printf("%s\n", entry.path().filename().c_str());
        run(input);
        runVariants(input);
        ++files;
    }
    return files > 0 ? 0 : 1;
}
