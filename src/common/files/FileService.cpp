#include "FileService.hpp"

#include <cerrno>

#include <unistd.h>

namespace Korvel {
namespace {

FileResponse access(const FileRequest& request) {
    return {.error = ::access(request.path.data(), request.accessMode) == 0 ? 0 : errno};
}

FileResponse stateOf(const FileRequest& request) {
    struct stat status {};
    const int error = ::stat(request.path.data(), &status) == 0 ? 0 : errno;
    return {.error = error, .state = FileState(status)};
}

}  // namespace

void FileService::handle(FileExchange& exchange) {
    exchange.response = respondTo(exchange.request, exchange.piece);
}

FileResponse FileService::respondTo(const FileRequest& request, std::span<char> piece) {
    switch (request.kind) {
        case FileRequest::Kind::access:
            return access(request);
        case FileRequest::Kind::state:
            return stateOf(request);
        case FileRequest::Kind::open:
            return open(request);
        case FileRequest::Kind::read:
            return readPiece(piece);
        case FileRequest::Kind::close:
            file = InputFile();
            break;
    }
    return {};
}

FileResponse FileService::open(const FileRequest& request) {
    file = InputFile(request.path.data(), request.owner);
    const int error = file.isOpen() ? 0 : errno;
    return {.error = error, .state = file.state()};
}

FileResponse FileService::readPiece(std::span<char> piece) {
    const std::optional<std::size_t> size = file.read(piece);
    return {.error = size ? 0 : errno, .size = size.value_or(0)};
}

}  // namespace Korvel
