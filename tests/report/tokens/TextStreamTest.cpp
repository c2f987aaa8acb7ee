#include <random>
#include <string>

#include <gtest/gtest.h>

#include "TextStream.hpp"
#include "TokenRecorder.hpp"

using namespace ReportTest;

namespace {

/// A text of pieces that addresses and words consist of, so that many are almost addresses.
std::string randomText(std::mt19937& random, std::size_t size) {
    constexpr std::array pieces{"10.0.0.1",
                                "fe80::1",
                                "::",
                                ":",
                                ".",
                                "-",
                                "00:11:22:33:44:55",
                                "12",
                                "ff",
                                " ",
                                "bob",
                                "\n",
                                "x",
                                "1",
                                "a",
                                "_",
                                "0011.2233.4455",
                                "\xc3\xbc",
                                "\xe2\x80",
                                "255",
                                "%",
                                "fe80",
                                "001122334455"};
    std::string text;
    while (text.size() < size) {
        text += pieces[random() % pieces.size()];
    }
    return text;
}

TEST(TextStreamTest, FindsTheSameTokensHoweverTheTextIsCutIntoPieces) {
    std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts in every run
    for (const std::size_t longest : {1U, 1000U, 150'000U}) {
        const std::string text = randomText(random, 150'000);
        TokenRecorder whole;
        EXPECT_EQ(Report::handleTokens(text, whole), text);

        TokenRecorder recorder;
        std::string passedOn;
        Report::TextStream stream(recorder, [&passedOn](std::string_view bytes) { passedOn += bytes; });
        for (std::size_t place = 0; place < text.size();) {
            const std::string piece = text.substr(place, 1 + random() % longest);
            stream.append(piece);
            place += piece.size();
        }
        stream.finish();

        EXPECT_EQ(passedOn, text);
        EXPECT_EQ(recorder.text(), whole.text()) << longest;
    }
}

TEST(TextStreamTest, FindsAnAddressAtEveryPlaceAroundABufferBorder) {
    for (std::size_t before = 65'536 - 80; before < 65'536 + 20; ++before) {
        TokenRecorder recorder;
        Report::TextStream stream(recorder, [](std::string_view) {});
        std::string text(before, '.');
        text += " [2001:db8:1111:2222:3333:4444:5555:6666]:80 bob ";
        stream.append(text);
        stream.append(std::string(2000, ' '));
        stream.finish();
        EXPECT_EQ(recorder.text(), "ip6(2001:db8:1111:2222:3333:4444:5555:6666) 80 bob") << before;
    }
}

TEST(TextStreamTest, KeepsTextsApart) {
    TokenRecorder recorder;
    Report::TextStream stream(recorder, [](std::string_view) {});
    for (const std::string piece : {"10.0.", "0.1"}) {
        stream.append(piece);
        stream.finish();
    }
    EXPECT_EQ(recorder.text(), "10 0 0 1");
}

}  // namespace
