#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nettle/base64.h>
#include <nettle/sha2.h>

#include "Assets.hpp"

namespace Report {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::array hashed{"page.css", "page.js", "page-with-plots.js"};

std::string hashOf(std::string_view text) {
    sha256_ctx context{};
    sha256_init(&context);
    sha256_update(&context, text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_digest(&context, digest.size(), digest.data());
    std::array<char, BASE64_ENCODE_RAW_LENGTH(SHA256_DIGEST_SIZE)> encoded{};
    base64_encode_raw(encoded.data(), digest.size(), digest.data());
    return "sha256-" + std::string(encoded.data(), encoded.size());
}

TEST(AssetsTest, HaveTheHashWithWhichABrowserComparesTheirBytes) {
    for (const char* const name : hashed) {
        SCOPED_TRACE(name);
        EXPECT_EQ(webAssetHash(name), hashOf(webAsset(name)));
    }
}

TEST(AssetsTest, HaveThePlottingLibraryOnlyInFrontOfTheScriptWithPlots) {
    const std::string script = webAsset("page.js");
    EXPECT_THAT(script, Not(HasSubstr("uPlot = ")));
    EXPECT_THAT(webAsset("page-with-plots.js"), StartsWith("/**\n* Copyright (c) 2025, Leon Sorokin\n"));
    EXPECT_THAT(webAsset("page-with-plots.js"), EndsWith(script));
}

TEST(AssetsTest, NeverEndTheElementThatHoldsThem) {
    for (const char* const name : hashed) {
        SCOPED_TRACE(name);
        for (const char* const end : {"</script", "</style", "<!--"}) {
            EXPECT_THAT(webAsset(name), Not(HasSubstr(end)));
        }
    }
}

TEST(AssetsTest, HaveAScriptThatWritesNoMarkupAndRunsNoText) {
    for (const char* const call : {"innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "eval(",
                                   "Function(", "setAttribute(\"style\"", "setAttribute(\"on"}) {
        EXPECT_THAT(webAsset("page-with-plots.js"), Not(HasSubstr(call)));
    }
}

TEST(AssetsTest, RefuseAnUnknownName) {
    EXPECT_THROW(webAsset("page.txt"), std::out_of_range);
    EXPECT_THROW(webAssetHash(""), std::out_of_range);
}

}  // namespace
}  // namespace Report
