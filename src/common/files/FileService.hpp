#pragma once

#include "FileExchange.hpp"
#include "InputFile.hpp"

namespace Korvel {

/// Answers requests about files. Blocks as long as the file system does.
class FileService {
public:
    void answer(FileExchange& exchange);

private:
    FileAnswer answerTo(const FileQuestion& question, std::span<char> piece);
    FileAnswer open(const FileQuestion& question);
    FileAnswer readPiece(std::span<char> piece);

    InputFile file;
};

}  // namespace Korvel
