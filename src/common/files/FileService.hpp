#pragma once

#include "FileExchange.hpp"
#include "InputFile.hpp"

namespace Korvel {

/// Handles requests about files. Blocks as long as the file system does.
class FileService {
public:
    void handle(FileExchange& exchange);

private:
    FileResponse respondTo(const FileRequest& request, std::span<char> piece);
    FileResponse open(const FileRequest& request);
    FileResponse readPiece(std::span<char> piece);

    InputFile file;
};

}  // namespace Korvel
