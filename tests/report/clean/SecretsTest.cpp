#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "PackageBuilder.hpp"
#include "Workshop.hpp"

namespace ReportTest {
namespace {

using Random = std::mt19937;

std::string hexDigits(Random& random, std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += "0123456789abcdef"[random() % 16];
    }
    return text;
}

std::string upper(std::string text) {
    for (char& byte : text) {
        byte = byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 32) : byte;
    }
    return text;
}

/// An original with its spellings. The second of the names is a capitalised one.
struct Secret {
    std::vector<std::string> spellings;
    bool name = false;
};

Secret ip4(Random& random) {
    std::array<unsigned, 4> octets{};
    for (unsigned& octet : octets) {
        octet = random() % 256;
    }
    constexpr std::array networks{10U, 172U, 192U, 100U, 8U};
    octets[0] = networks[random() % networks.size()];
    octets[1] = random() % 3 == 0 ? octets[1] : 168;
    std::string plain;
    std::string padded;
    for (const unsigned octet : octets) {
        const std::string number = std::to_string(octet);
        plain += (plain.empty() ? "" : ".") + number;
        padded += (padded.empty() ? "" : ".") + std::string(3 - number.size(), '0') + number;
    }
    return {{plain, padded, "::ffff:" + plain}};
}

Secret ip6(Random& random) {
    const std::string network =
        random() % 2 == 0 ? "2001:db8:" : "fd" + hexDigits(random, 2) + ":a" + hexDigits(random, 3) + ":";
    const std::string host = "1" + hexDigits(random, 3) + ":b" + hexDigits(random, 2);
    const std::string shortened = network + ":" + host;
    return {{shortened, upper(shortened), network + "0:0:0:0:" + host, network + "0000:0:0::" + host}};
}

Secret mac(Random& random) {
    const std::string digits = "4" + std::string(1, "0248ace"[random() % 7]) + hexDigits(random, 10);
    std::string colons;
    std::string dots;
    for (std::size_t place = 0; place < 12; ++place) {
        colons += (place > 0 && place % 2 == 0 ? ":" : "") + digits.substr(place, 1);
        dots += (place > 0 && place % 4 == 0 ? "." : "") + digits.substr(place, 1);
    }
    std::string hyphens = upper(colons);
    std::ranges::replace(hyphens, ':', '-');
    return {{colons, hyphens, dots, digits}};
}

Secret name(Random& random, std::size_t number) {
    std::string word = number % 2 == 0 ? "bts-" : "op";
    for (int index = 0; index < 5; ++index) {
        word += static_cast<char>('a' + random() % 26);
    }
    word += std::to_string(number);
    return {{word, upper(word)}, true};
}

/// Texts of all kinds, with the secrets in them.
class Planter {
public:
    explicit Planter(unsigned seed) : random(seed) {
        for (std::size_t number = 0; number < 1000; ++number) {
            secrets.push_back(number < 300   ? ip4(random)
                              : number < 600 ? ip6(random)
                              : number < 800 ? mac(random)
                                             : name(random, number));
        }
    }

    const Secret& any() { return secrets[random() % secrets.size()]; }
    std::string spelling(const Secret& secret) {
        return secret.spellings[random() % secret.spellings.size()];
    }

    /// Lines in which each secret occurs, where it is recognised.
    std::string introduction() {
        std::string text = "Welcome\n";
        for (const Secret& secret : secrets) {
            const std::string& first = secret.spellings.front();
            if (!secret.name) {
                text += "address " + first + " is known\n";
            } else if (first.starts_with("op")) {
                text += first + "@localhost:~$ ls\n";
            } else {
                text += "Nov 22 08:30:33 " + first + " kernel: started\n";
            }
        }
        return text;
    }

    /// A table with secrets between other words, in columns.
    std::string table(std::size_t size) {
        constexpr std::array frames{" ", "/", ",", "=", "<", "(", "[", "\"", "\t", ";", "|"};
        std::string text;
        while (text.size() < size) {
            const std::string secret = spelling(any());
            text += frames[random() % frames.size()] + secret + frames[random() % 4] +
                    std::string(random() % 40, ' ') + "12:34:56 counter 4711 NetFP::Proxy 1.2.3\n";
        }
        return text;
    }

    Random random;
    std::vector<Secret> secrets;
};

std::string plantedPackage(Planter& planter) {
    const auto memberName = [&](const std::string& folder) {
        return folder + planter.secrets[900 + planter.random() % 100].spellings.front() + "/" +
               planter.any().spellings.front() + "/" + std::to_string(planter.random()) + ".log";
    };
    const std::string inner = PackageBuilder()
                                  .directory("./")
                                  .ownedBy(planter.secrets[901].spellings.front(), "root")
                                  .file(memberName("./linux/"), planter.table(100'000))
                                  .file("./archive/dispatcher/startup.log.gz", gzip(planter.table(80'000)))
                                  .tgz();
    const std::string middle = PackageBuilder()
                                   .file("./netfp_logs_post_mortem.tgz", inner)
                                   .file(memberName("./mmi/"), planter.table(1000))
                                   .tgz();
    return PackageBuilder()
        .directory("./")
        .ownedBy(planter.secrets[903].spellings.front(), planter.secrets[905].spellings.front())
        .file("./linux/system.log", planter.introduction())
        .file("./netfp_logs_post_mortem.tgz", middle)
        .ownedBy("root", "root")
        .file("./archive/syslib/middle.log.gz", gzip(planter.table(100'000)))
        .file("./empty.log", "")
        .file(memberName("./"), planter.table(300'000))
        .tgz();
}

/// All bytes of a package, of each layer: headers and contents.
std::string flattened(const std::string& package) {
    const std::string tar = gunzip(package);
    std::string all = tar;
    for (std::size_t place = 0; place + 512 <= tar.size() && tar[place] != '\0';) {
        const std::size_t size = std::stoul(tar.substr(place + 124, 11), nullptr, 8);
        const std::string contents = tar.substr(place + 512, size);
        if (contents.starts_with("\x1f\x8b")) {
            const std::string inflated = gunzip(contents);
            all += inflated.substr(257, 5) == "ustar" ? flattened(contents) : inflated;
        }
        place += 512 + (size + 511) / 512 * 512;
    }
    return all;
}

bool isWordByte(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// The spellings that occur in a text. Does not use the scanner of the program.
std::set<std::string> spellingsIn(const std::string& text, const std::vector<Secret>& secrets) {
    constexpr std::size_t startLength = 6;
    std::unordered_multimap<std::string_view, const std::string*> byStart;
    for (const Secret& secret : secrets) {
        for (const std::string& spelling : secret.spellings) {
            byStart.emplace(std::string_view(spelling).substr(0, startLength), &spelling);
        }
    }
    std::set<std::string> found;
    const std::string_view view = text;
    for (std::size_t place = 0; place + startLength <= view.size(); ++place) {
        const auto [begin, end] = byStart.equal_range(view.substr(place, startLength));
        for (auto entry = begin; entry != end; ++entry) {
            if (view.substr(place).starts_with(*entry->second)) {
                found.insert(*entry->second);
            }
        }
    }
    return found;
}

using SecretsTest = Workshop;

TEST_F(SecretsTest, LeavesNoneOf1000PlantedSecretsAndRestoresAll) {
    Planter planter(1);
    const std::string package = plantedPackage(planter);
    write("in.tgz", package);
    ASSERT_GT(spellingsIn(flattened(package), planter.secrets).size(), 2000U);

    EXPECT_EQ(notesOf(cleanRequest()), "");

    EXPECT_EQ(spellingsIn(flattened(read("out.tgz")), planter.secrets), std::set<std::string>());
    Report::restore(restoreRequest());
    EXPECT_EQ(listing(read("back.tgz")), listing(package));
}

/// The text of the only member.
std::string cleanedText(const std::string& package) {
    const std::string tar = gunzip(package);
    return tar.substr(512, std::stoul(tar.substr(124, 11), nullptr, 8));
}

TEST_F(SecretsTest, GivesTheSameOriginalTheSameReplacementAndMovesNoColumn) {
    Planter planter(3);
    const std::string text = planter.introduction() + planter.table(80'000);
    write("in.tgz", PackageBuilder().file("./linux/x.log", text).tgz());
    Report::cleanPackage(cleanRequest());

    const std::string after = cleanedText(read("out.tgz"));
    ASSERT_EQ(after.size(), text.size());
    std::map<std::string, std::string> replacements;
    std::map<std::string, std::string> originals;
    for (std::size_t place = 0; place < text.size();) {
        std::size_t end = place;
        while (end < text.size() &&
               (isWordByte(text[end]) || text[end] == ':' || text[end] == '.' || text[end] == '-')) {
            EXPECT_EQ(isWordByte(text[end]), isWordByte(after[end]));
            ++end;
        }
        const std::string original = text.substr(place, end - place);
        const std::string replacement = after.substr(place, end - place);
        EXPECT_EQ(replacements.emplace(original, replacement).first->second, replacement);
        EXPECT_EQ(originals.emplace(replacement, original).first->second, original);
        if (end < text.size()) {
            EXPECT_EQ(text[end], after[end]);
        }
        place = end + 1;
    }
    // All other words are unchanged: those of the table, and those around the secrets.
    for (const std::string word :
         {"12:34:56", "counter", "4711", "NetFP::Proxy", "1.2.3", "address", "kernel:"}) {
        EXPECT_EQ(replacements.at(word), word);
    }
}

TEST_F(SecretsTest, FindsASecretAtEveryPlaceAroundABufferBorder) {
    std::string text = "host 192.168.17.23 [2001:db8:1:2:3:4:5:6]:80 40:11:22:33:44:5f alice@bts-4711:\n";
    for (const std::size_t border : {65'536U, 131'072U}) {
        for (std::size_t before = 0; before < 60; before += 5) {
            text += std::string(border - text.size() % border - before, '.');
            text += " 192.168.17.23 2001:db8:1:2:3:4:5:6 40:11:22:33:44:5f Alice BTS-4711\n";
        }
    }
    write("in.tgz", PackageBuilder().file("./linux/x.log", text).tgz());
    Report::cleanPackage(cleanRequest());
    const std::string after = cleanedText(read("out.tgz"));
    ASSERT_EQ(after.size(), text.size());
    for (const std::string secret :
         {"192.168.17.23", "2001:db8", "40:11:22", "Alice", "alice", "BTS-4711", "bts-4711"}) {
        EXPECT_EQ(after.find(secret), std::string::npos) << secret;
    }
    Report::restore(restoreRequest());
    EXPECT_EQ(cleanedText(read("back.tgz")), text);
}

}  // namespace
}  // namespace ReportTest
