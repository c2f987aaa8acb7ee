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

std::size_t readPiece(int stream, std::span<char> buffer, const std::string& name) {
    return static_cast<std::size_t>(Base::checked(
        Base::uninterrupted([&] { return ::read(stream, buffer.data(), buffer.size()); }), name));
}

class PipeStream : public ByteSource {
public:
    PipeStream(int descriptor, std::string path) : pipe(descriptor), name(std::move(path)) {}

    std::size_t read(std::span<char> buffer) override { return readPiece(pipe, buffer, name); }

private:
    int pipe;
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

Base::UniqueFd openFile(const std::string& path, const std::string& name) {
    return Base::UniqueFd(
        Base::checked(path == "-" ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0) : Base::uninterrupted([&] {
                          return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
                      }),
                      name));
}

/// Fills a chunk as far as the stream goes.
std::string readChunk(int stream, const std::string& name) {
    std::string chunk(chunkSize, '\0');
    std::size_t filled = 0;
    while (filled < chunk.size()) {
        const std::size_t count = readPiece(stream, std::span(chunk).subspan(filled), name);
        if (count == 0) {
            break;
        }
        filled += count;
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

PackageSource::PackageSource(std::string path)
    : name(std::move(path)), shown(name == "-" ? "standard input" : name), file(openFile(name, shown)) {
    struct stat status {};
    Base::checked(::fstat(file.get(), &status), shown);
    if (S_ISREG(status.st_mode)) {
        begin = Base::checked(::lseek(file.get(), 0, SEEK_CUR), shown);
    } else if (!S_ISFIFO(status.st_mode) && !S_ISSOCK(status.st_mode)) {
        throw std::system_error(reasonFor(status.st_mode), shown);
    }
}

void PackageSource::keepPipe(std::size_t mostBytes) {
    if (!begin) {
        chunks = readStream(file.get(), mostBytes, shown);
    }
}

std::unique_ptr<ByteSource> PackageSource::open() const {
    if (begin) {
        return std::make_unique<FileStream>(file.get(), *begin, shown);
    }
    if (chunks) {
        return std::make_unique<MemoryStream>(*chunks);
    }
    return std::make_unique<PipeStream>(file.get(), shown);
}

}  // namespace Report
