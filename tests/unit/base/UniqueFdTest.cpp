#include <fcntl.h>
#include <gtest/gtest.h>

#include "UniqueFd.hpp"

namespace {

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

/// An owner, and the number of its first descriptor.
class OwnedDescriptor : public testing::Test {
protected:
    Base::UniqueFd owner{::open("/dev/null", O_RDONLY | O_CLOEXEC)};
    const int number = owner.get();
};

TEST_F(OwnedDescriptor, IsClosedWithItsOwner) {
    { const Base::UniqueFd last = std::move(owner); }

    EXPECT_FALSE(isOpen(number));
}

TEST_F(OwnedDescriptor, MovesFromOwnerToOwner) {
    Base::UniqueFd next = std::move(owner);
    owner = std::move(next);

    EXPECT_EQ(owner.get(), number);
    EXPECT_TRUE(isOpen(number));
    EXPECT_FALSE(next);  // NOLINT(bugprone-use-after-move): a moved-from owner is empty
}

TEST_F(OwnedDescriptor, SurvivesSelfAssignmentOfItsOwner) {
    Base::UniqueFd& same = owner;
    owner = std::move(same);

    EXPECT_EQ(owner.get(), number);
    EXPECT_TRUE(isOpen(number));
}

TEST_F(OwnedDescriptor, IsClosedWhenAnotherReplacesIt) {
    const int other = ::open("/dev/null", O_RDONLY | O_CLOEXEC);

    owner.reset(other);

    EXPECT_EQ(owner.get(), other);
    EXPECT_FALSE(isOpen(number));
}

TEST_F(OwnedDescriptor, SurvivesAnOwnerThatReleasedIt) {
    EXPECT_EQ(owner.release(), number);

    EXPECT_FALSE(owner);
    EXPECT_TRUE(isOpen(number));
    ::close(number);
}

TEST_F(OwnedDescriptor, ReportsACloseThatFailed) {
    ::close(number);

    EXPECT_FALSE(owner.close());
    EXPECT_EQ(errno, EBADF);
    EXPECT_FALSE(owner);
}

TEST_F(OwnedDescriptor, DoesNotChangeErrnoWhenItIsReset) {
    ::close(number);
    errno = ENOSPC;

    owner.reset();

    EXPECT_EQ(errno, ENOSPC);
}

TEST(EmptyOwner, ClosesNothing) {
    Base::UniqueFd empty;

    EXPECT_FALSE(empty);
    EXPECT_TRUE(empty.close());
}

}  // namespace
