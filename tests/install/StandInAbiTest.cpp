#include <cstdarg>
#include <string>

#include <gtest/gtest.h>

// Calls the stand-ins of the board's libraries as an existing program does: by symbol names and slot numbers,
// without the headers in platform/include.

namespace {

/// A client of a log: an object whose first word points to the table of operations.
struct Client {
    void* const* operations;
};

using Write = void (*)(Client*, int, const char*, const char*, ...);
using WriteList = void (*)(Client*, int, const char*, const char*, std::va_list);
using Read = unsigned (*)(Client*, char*, unsigned, unsigned, unsigned, unsigned);
using Overlap = bool (*)(Client*, unsigned, unsigned);

extern "C" Client* getClientInstance(const char* name, unsigned app) asm("_ZN5SmLog17getClientInstanceEPKcj");
extern "C" int vask_cma_process_init(void);
extern "C" int vask_cma_phy_to_virt(unsigned physical, void** virtualPointer);
extern "C" int vask_security_is_secure_env(int* secure);

class SmLogStandIn : public testing::Test {
protected:
    template <typename Operation>
    Operation slot(unsigned number) const {
        return reinterpret_cast<Operation>(client->operations[number]);
    }

    void writeList(const char* format, ...) const {
        std::va_list arguments;
        va_start(arguments, format);
        slot<WriteList>(1)(client, 5, "Tag", format, arguments);
        va_end(arguments);
    }

    /// The log's text, each entry without its time.
    std::string read() const {
        std::string text(4096, '\0');
        slot<Read>(2)(client, text.data(), static_cast<unsigned>(text.size()), 3, 0, 5);
        text.resize(text.find('\0'));
        std::string entries;
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = text.find('\n', begin) + 1;
            const std::size_t time = text.find(' ', begin) + 1;
            entries += text.substr(time, end - time);
            begin = end;
        }
        return entries;
    }

    Client* const client = getClientInstance("some_log", 3);
};

TEST_F(SmLogStandIn, WritesThroughItsFirstTwoSlotsAndReadsThroughItsThird) {
    slot<Write>(0)(client, 4, "Tag", "port %d of %s", 7, "eth0");
    writeList("port %d of %s", 8, "eth1");

    EXPECT_EQ(read(), "4 Tag: port 7 of eth0\n5 Tag: port 8 of eth1\n");
}

TEST_F(SmLogStandIn, ReportsOverlapsThroughItsFourthSlot) {
    EXPECT_FALSE(slot<Overlap>(3)(client, 1, 2));
}

TEST(VaskStandIn, ExportsItsFunctionsByName) {
    void* address = nullptr;
    int secure = -1;

    EXPECT_EQ(vask_cma_process_init(), 0);
    EXPECT_EQ(vask_cma_phy_to_virt(0x80000000, &address), 0);
    EXPECT_EQ(vask_security_is_secure_env(&secure), 0);

    EXPECT_NE(address, nullptr);
    EXPECT_EQ(secure, 0);
}

}  // namespace
