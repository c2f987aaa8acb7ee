#include "PackageSource.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "UniqueFd.hpp"

namespace Report {

namespace {

constexpr std::size_t chunkSize = std::size_t{256} << 10;

/// Words of its own for errc::not_supported.
class SourceCategory : public std::error_category {
public:
    const char* name() const noexcept override { return "package source"; }
    std::string message(int /*value*/) const override { return "not a file or a pipe"; }
    std::error_condition default_error_condition(int /*value*/) const noexcept override {
        return std::errc::not_supported;
    }
};

std::error_code reasonFor(mode_t kind) {
    static const SourceCategory category;
    return S_ISDIR(kind) ? std::make_error_code(std::errc::is_a_directory) : std::error_code(1, category);
}

}  // namespace

struct PackageSource::Content {
    Base::UniqueFd file;              ///< of a regular file
    off_t begin = 0;                  ///< where the package begins in `file`
    std::vector<std::string> chunks;  ///< of what can be read only once
};

namespace {

/// Reads with pread, so that several streams can share a descriptor.
class FileStream : public ByteSource {
public:
    FileStream(int descriptor, off_t begin, std::string path)
        : file(descriptor), offset(begin), name(std::move(path)) {}

    std::size_t read(std::span<char> buffer) override {
        std::size_t filled = 0;
        while (filled < buffer.size()) {
            const auto rest = buffer.subspan(filled);
            const ssize_t count = Base::checked(
                Base::uninterrupted([&] { return ::pread(file, rest.data(), rest.size(), offset); }), name);
            if (count == 0) {
                break;
            }
            filled += static_cast<std::size_t>(count);
            offset += count;
        }
        return filled;
    }

private:
    int file;
    off_t offset;
    std::string name;
};

class MemoryStream : public ByteSource {
public:
    explicit MemoryStream(const std::vector<std::string>& content) : chunks(content) {}

    std::size_t read(std::span<char> buffer) override {
        if (chunk == chunks.size()) {
            return 0;
        }
        const std::size_t count = chunks[chunk].copy(buffer.data(), buffer.size(), offset);
        offset += count;
        if (offset == chunks[chunk].size()) {
            ++chunk;
            offset = 0;
        }
        return count;
    }

private:
    const std::vector<std::string>& chunks;
    std::size_t chunk = 0;
    std::size_t offset = 0;
};

Base::UniqueFd openFile(const std::string& name) {
    const bool standardInput = name == "-";
    return Base::UniqueFd(
        Base::checked(standardInput ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0) : Base::uninterrupted([&] {
                          return ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
                      }),
                      name));
}

/// Fills a chunk as far as the stream goes.
std::string readChunk(int stream, const std::string& name) {
    std::string chunk(chunkSize, '\0');
    std::size_t filled = 0;
    while (filled < chunk.size()) {
        const ssize_t count = Base::checked(
            Base::uninterrupted([&] { return ::read(stream, &chunk[filled], chunk.size() - filled); }), name);
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    chunk.resize(filled);
    return chunk;
}

std::vector<std::string> readStream(int stream, std::size_t mostBytes, const std::string& name) {
    std::vector<std::string> chunks;
    std::size_t size = 0;
    do {
        chunks.push_back(readChunk(stream, name));
        size += chunks.back().size();
        if (size > mostBytes) {
            throw std::length_error(name + ": it holds more than " + std::to_string(mostBytes) + " bytes");
        }
    } while (chunks.back().size() == chunkSize);
    return chunks;
}

}  // namespace

PackageSource::PackageSource(std::string path, std::size_t mostBytes) : name(std::move(path)) {
    auto opened = std::make_shared<Content>();
    opened->file = openFile(name);
    struct stat status {};
    Base::checked(::fstat(opened->file.get(), &status), name);
    if (S_ISREG(status.st_mode)) {
        opened->begin = Base::checked(::lseek(opened->file.get(), 0, SEEK_CUR), name);
    } else if (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)) {
        opened->chunks = readStream(opened->file.get(), mostBytes, name);
        opened->file.reset();
    } else {
        throw std::system_error(reasonFor(status.st_mode), name);
    }
    content = std::move(opened);
}

std::unique_ptr<ByteSource> PackageSource::open() const {
    if (content->file) {
        return std::make_unique<FileStream>(content->file.get(), content->begin, name);
    }
    return std::make_unique<MemoryStream>(content->chunks);
}

}  // namespace Report
