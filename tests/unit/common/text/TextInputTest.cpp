#include <new>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "ResourceLimit.hpp"
#include "TextInput.hpp"

TEST(TextInput, ReadsTheText) {
    auto input = Korvel::inputFrom("a b");
    std::string word;

    EXPECT_TRUE(input >> word);
    EXPECT_TRUE(input >> word);
    EXPECT_EQ(word, "b");
    EXPECT_FALSE(input >> word);
}

#ifndef __SANITIZE_ADDRESS__  // it needs terabytes of address space
TEST(TextInput, DoesNotTakeTheEndOfMemoryForTheEndOfTheText) {
    auto input = Korvel::inputFrom(std::string(std::size_t{64} << 20, 'x'));
    const ResourceLimit noMemory(RLIMIT_AS, 0);
    std::string word;

    EXPECT_THROW(input >> word, std::bad_alloc);
}
#endif
