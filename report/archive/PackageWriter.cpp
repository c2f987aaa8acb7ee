#include "PackageWriter.hpp"

#include <cstddef>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

#include "Collector.hpp"
#include "GzipWriter.hpp"
#include "TarWriter.hpp"

namespace Report {

namespace {

/// The layer, if it is of this kind.
template <typename Kind, typename Layer>
Kind& require(Layer* layer) {
    auto* found = layer ? std::get_if<Kind>(layer) : nullptr;
    if (!found) {
        throw std::logic_error("a package is written in the wrong order");
    }
    return *found;
}

}  // namespace

/// The open layers, from the outermost one inwards.
class PackageWriter::Layers {
    /// A member between beginMember() and endMember().
    struct Member {
        explicit Member(const MemberHeader& memberHeader) : header(memberHeader) {}

        MemberHeader header;
        bool begun = false;               ///< the header is written
        std::optional<Collector> packed;  ///< what is compressed inside it
    };

    using Layer = std::variant<GzipWriter, TarWriter, Member>;

public:
    Layers(ByteSink& sink, Budget& budget) : outermost(sink), limits(budget) {}

    void enterGzip() { layers.emplace_back(std::in_place_type<GzipWriter>, sinkOfInnermost()); }

    void leaveGzip() {
        require<GzipWriter>(layer(1)).finish();
        layers.pop_back();
    }

    void enterTar() { layers.emplace_back(std::in_place_type<TarWriter>, require<GzipWriter>(layer(1))); }

    void leaveTar() {
        require<TarWriter>(layer(1)).finish();
        layers.pop_back();
    }

    void beginMember(const MemberHeader& header) {
        require<TarWriter>(layer(1));
        layers.emplace_back(std::in_place_type<Member>, header);
    }

    void data(std::string_view bytes) {
        if (auto* gzip = layer(1) ? std::get_if<GzipWriter>(layer(1)) : nullptr) {
            return gzip->write(bytes);
        }
        writeHeader(require<Member>(layer(1)));
        tar().write(bytes);
    }

    void endMember() {
        auto& member = require<Member>(layer(1));
        writeHeader(member);
        if (member.packed) {
            member.packed->moveTo(tar());
        }
        tar().endMember();
        layers.pop_back();
    }

private:
    /// The innermost layer for 1, the one around it for 2; nullptr if there is none.
    Layer* layer(std::size_t fromInside) {
        return fromInside <= layers.size() ? &layers[layers.size() - fromInside] : nullptr;
    }

    /// The archive of the current member.
    TarWriter& tar() { return require<TarWriter>(layer(2)); }

    ByteSink& sinkOfInnermost() {
        if (layers.empty()) {
            return outermost;
        }
        if (auto* gzip = std::get_if<GzipWriter>(layer(1))) {
            return *gzip;
        }
        return require<Member>(layer(1)).packed.emplace(limits);
    }

    void writeHeader(Member& member) {
        if (!std::exchange(member.begun, true)) {
            tar().beginMember(member.header, member.packed ? member.packed->size() : member.header.size);
        }
    }

    ByteSink& outermost;
    Budget& limits;
    std::deque<Layer> layers;
};

PackageWriter::PackageWriter(ByteSink& sink, Budget& budget)
    : layers(std::make_unique<Layers>(sink, budget)) {
}

PackageWriter::~PackageWriter() = default;

void PackageWriter::enterGzip() {
    layers->enterGzip();
}

void PackageWriter::leaveGzip() {
    layers->leaveGzip();
}

void PackageWriter::enterTar() {
    layers->enterTar();
}

void PackageWriter::leaveTar() {
    layers->leaveTar();
}

void PackageWriter::beginMember(const MemberHeader& header) {
    layers->beginMember(header);
}

void PackageWriter::data(std::string_view bytes) {
    layers->data(bytes);
}

void PackageWriter::endMember() {
    layers->endMember();
}

}  // namespace Report
