#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "PackageSource.hpp"
#include "UniqueFd.hpp"

namespace fs = std::filesystem;
using Report::PackageSource;

namespace {

constexpr std::size_t enough = std::size_t{1} << 20;

std::string allOf(Report::ByteSource& stream, std::size_t portion = 1000) {
    std::string bytes;
    std::string buffer(portion, '\0');
    for (std::size_t count = stream.read(buffer); count > 0; count = stream.read(buffer)) {
        bytes.append(buffer, 0, count);
    }
    return bytes;
}

/// Writes to a pipe or FIFO while the test reads it.
class Writer {
public:
    template <typename OpenWriter>
    Writer(OpenWriter open, std::string bytes)
        : thread([open, bytes = std::move(bytes)] {
              const Base::UniqueFd out(open());
              for (std::size_t done = 0; done < bytes.size();) {
                  const ssize_t count = ::write(out.get(), &bytes[done], bytes.size() - done);
                  if (count <= 0) {
                      return;
                  }
                  done += static_cast<std::size_t>(count);
              }
          }) {}
    ~Writer() { thread.join(); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    Writer(Writer&&) = delete;
    Writer& operator=(Writer&&) = delete;

private:
    std::thread thread;
};

/// Standard input is another file while this object exists.
class StandardInput {
public:
    explicit StandardInput(int descriptor) : before(::dup(STDIN_FILENO)) { ::dup2(descriptor, STDIN_FILENO); }
    ~StandardInput() { ::dup2(before.get(), STDIN_FILENO); }
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;
    StandardInput(StandardInput&&) = delete;
    StandardInput& operator=(StandardInput&&) = delete;

private:
    Base::UniqueFd before;
};

class PackageSourceTest : public testing::Test {
protected:
    PackageSourceTest() {
        std::string pattern = fs::temp_directory_path() / "korvel-report-XXXXXX";
        folder = ::mkdtemp(pattern.data());
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string write(const std::string& bytes) {
        std::ofstream(folder / "package.tgz") << bytes;
        return folder / "package.tgz";
    }

    fs::path folder;
};

TEST_F(PackageSourceTest, AFileHasIndependentStreams) {
    const PackageSource source(write("0123456789"));
    const auto first = source.open();
    const auto second = source.open();
    std::string buffer(4, '\0');

    EXPECT_EQ(first->read(buffer), 4U);
    EXPECT_EQ(allOf(*second), "0123456789");
    EXPECT_EQ(allOf(*first), "456789");
    EXPECT_EQ(allOf(*source.open()), "0123456789");
}

TEST_F(PackageSourceTest, StandardInputIsReadFromWhereItStands) {
    const Base::UniqueFd file(::open(write("0123456789").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::lseek(file.get(), 3, SEEK_SET), 3);
    const StandardInput input(file.get());

    const PackageSource source("-");

    EXPECT_EQ(source.path(), "-");
    EXPECT_EQ(allOf(*source.open()), "3456789");
    EXPECT_EQ(allOf(*source.open()), "3456789");
}

TEST_F(PackageSourceTest, APipeIsKeptInMemoryOnRequest) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{5}, enough / 2, enough}) {
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        const std::string bytes(size, 'p');
        const Writer writer([end = ends[1]] { return end; }, bytes);
        const Base::UniqueFd readEnd(ends[0]);
        const StandardInput input(readEnd.get());

        PackageSource source("-");
        source.keepPipe(enough);

        EXPECT_EQ(allOf(*source.open()), bytes);
        EXPECT_EQ(allOf(*source.open(), 300'000), bytes);
    }
}

TEST_F(PackageSourceTest, AFifoIsReadLikeAPipe) {
    const std::string fifo = folder / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const Writer writer([fifo] { return ::open(fifo.c_str(), O_WRONLY | O_CLOEXEC); }, "package");

    const PackageSource source(fifo);

    EXPECT_EQ(allOf(*source.open()), "package");
    EXPECT_EQ(allOf(*source.open()), "") << "a pipe can be read only once";
}

TEST_F(PackageSourceTest, APipeThatDoesNotFitIntoMemoryIsNotKept) {
    const std::string fifo = folder / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const Writer writer([fifo] { return ::open(fifo.c_str(), O_WRONLY | O_CLOEXEC); }, "12345678");

    PackageSource source(fifo);
    EXPECT_THROW(source.keepPipe(7), std::length_error);
}

TEST_F(PackageSourceTest, WhatIsNoFileIsRefusedWithAReason) {
    const struct {
        std::string path;
        std::errc reason;
        std::string words;
    } cases[] = {
        {folder, std::errc::is_a_directory, "Is a directory"},
        {"/dev/null", std::errc::not_supported, "not a file or a pipe"},
        {folder / "missing", std::errc::no_such_file_or_directory, "No such file or directory"},
    };
    for (const auto& [path, reason, words] : cases) {
        try {
            const PackageSource source(path);
            ADD_FAILURE() << path;
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), reason);
            EXPECT_EQ(error.code().message(), words);
        }
    }
}

}  // namespace
