#include "FileService.hpp"

#include <cerrno>

#include <unistd.h>

namespace Korvel {
namespace {

FileAnswer access(const FileQuestion& question) {
    return {.error = ::access(question.path.data(), question.accessMode) == 0 ? 0 : errno};
}

FileAnswer stateOf(const FileQuestion& question) {
    struct stat status {};
    const int error = ::stat(question.path.data(), &status) == 0 ? 0 : errno;
    return {.error = error, .state = FileState(status)};
}

}  // namespace

void FileService::answer(FileExchange& exchange) {
    exchange.answer = answerTo(exchange.question, exchange.piece);
}

FileAnswer FileService::answerTo(const FileQuestion& question, std::span<char> piece) {
    switch (question.kind) {
        case FileQuestion::Kind::access:
            return access(question);
        case FileQuestion::Kind::state:
            return stateOf(question);
        case FileQuestion::Kind::open:
            return open(question);
        case FileQuestion::Kind::read:
            return readPiece(piece);
        case FileQuestion::Kind::close:
            file = InputFile();
            break;
    }
    return {};
}

FileAnswer FileService::open(const FileQuestion& question) {
    file = InputFile(question.path.data(), question.owner);
    const int error = file.isOpen() ? 0 : errno;
    return {.error = error, .state = file.state()};
}

FileAnswer FileService::readPiece(std::span<char> piece) {
    const std::optional<std::size_t> size = file.read(piece);
    return {.error = size ? 0 : errno, .size = size.value_or(0)};
}

}  // namespace Korvel
