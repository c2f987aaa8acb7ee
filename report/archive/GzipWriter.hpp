#pragma once

#include <string_view>
#include <vector>

#include <zlib.h>

#include "ByteSink.hpp"

namespace Report {

/// Compresses into another sink, as gzip does without a name and without a time.
class GzipWriter : public ByteSink {
public:
    /// `sink` must outlive this object.
    explicit GzipWriter(ByteSink& sink);
    ~GzipWriter() override;
    GzipWriter(const GzipWriter&) = delete;
    GzipWriter& operator=(const GzipWriter&) = delete;
    GzipWriter(GzipWriter&&) = delete;
    GzipWriter& operator=(GzipWriter&&) = delete;

    void write(std::string_view bytes) override;

    /// Writes what is left, and the trailer. Nothing can be written after it.
    void finish() { deflate({}, Z_FINISH); }

private:
    void deflate(std::string_view bytes, int flush);

    ByteSink& out;
    std::vector<char> buffer;
    z_stream stream{};
};

}  // namespace Report
