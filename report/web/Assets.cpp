#include "Assets.hpp"

#include <algorithm>
#include <stdexcept>

#include "EmbeddedAsset.hpp"

namespace Report {
namespace {

const EmbeddedAsset& find(std::string_view name) {
    const auto assets = embeddedAssets();
    const auto asset = std::ranges::find(assets, name, &EmbeddedAsset::name);
    if (asset == assets.end()) {
        throw std::out_of_range("no such asset: " + std::string{name});
    }
    return *asset;
}

}  // namespace

std::string webAsset(std::string_view name) {
    std::string text;
    for (const std::string_view piece : find(name).pieces) {
        text += piece;
    }
    return text;
}

std::string_view webAssetHash(std::string_view name) {
    return find(name).hash;
}

}  // namespace Report
