#include <ketra/util/Lent.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

/// Counts how many of its kind live.
struct Counted {
    explicit Counted(int& living) : alive(living) { ++alive; }
    ~Counted() { --alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    int& alive;
};

using Pointer = util::Lent<Counted>;

TEST(Lent, DestroysWhatItOwns)
{
    int alive = 0;
    {
        const Pointer owner(new Counted(alive));
        EXPECT_TRUE(owner.isOwner());
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Lent, IsEmptyAtFirst)
{
    const Pointer empty;
    EXPECT_FALSE(empty);
    EXPECT_FALSE(empty.isOwner());
    EXPECT_EQ(empty.get(), nullptr);
}

TEST(Lent, BorrowsInACopy)
{
    int alive = 0;
    const Pointer owner(new Counted(alive));
    {
        const Pointer copy(owner);
        const Pointer copyOfCopy(copy);
        EXPECT_EQ(copyOfCopy.get(), owner.get());
        EXPECT_FALSE(copy.isOwner());
        EXPECT_FALSE(copyOfCopy.isOwner());
    }
    EXPECT_EQ(alive, 1);
}

TEST(Lent, PassesOwnershipOnWhenMoved)
{
    int alive = 0;
    Pointer first(new Counted(alive));
    Pointer second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_TRUE(second.isOwner());
    Pointer third;
    third = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_TRUE(third.isOwner());
    EXPECT_EQ(alive, 1);
}

TEST(Lent, DestroysWhatAnAssignmentReplaces)
{
    int alive = 0;
    const Pointer owner(new Counted(alive));
    Pointer other(new Counted(alive));
    EXPECT_EQ(alive, 2);
    other = owner;
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(other.get(), owner.get());
    EXPECT_FALSE(other.isOwner());
}

TEST(Lent, StaysTheOwnerWhenItsOwnObjectComesBack)
{
    int alive = 0;
    Pointer owner(new Counted(alive));
    Pointer copy(owner);
    owner = copy;
    EXPECT_TRUE(owner.isOwner());
    owner = std::move(copy);
    EXPECT_TRUE(owner.isOwner());
    Pointer& same = owner;
    owner = same;
    owner = std::move(same);
    EXPECT_TRUE(owner.isOwner());
    EXPECT_EQ(alive, 1);
}

TEST(Lent, TakesOverByReset)
{
    int alive = 0;
    Pointer pointer(new Counted(alive));
    pointer.reset(new Counted(alive));
    EXPECT_EQ(alive, 1);
    pointer.reset(pointer.get());
    EXPECT_EQ(alive, 1);
    EXPECT_TRUE(pointer.isOwner());
    pointer.reset();
    EXPECT_EQ(alive, 0);
    EXPECT_FALSE(pointer.isOwner());
}

TEST(Lent, LetsGoByRelease)
{
    int alive = 0;
    Pointer pointer(new Counted(alive));
    Pointer again(pointer.release());
    EXPECT_FALSE(pointer);
    EXPECT_EQ(alive, 1);
    EXPECT_TRUE(again.isOwner());
}

TEST(Lent, BorrowsAnObjectOfSomebodyElse)
{
    int alive = 0;
    Counted object(alive);
    Pointer pointer(new Counted(alive));
    pointer.borrow(&object);
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(&*pointer, &object);
    EXPECT_EQ(&pointer->alive, &alive);
    EXPECT_FALSE(pointer.isOwner());
}

TEST(Lent, KeepsItsOwnershipInAGrowingVector)
{
    int alive = 0;
    {
        std::vector<Pointer> all;
        for (int i = 0; i < 20; ++i) all.emplace_back(new Counted(alive));
        EXPECT_EQ(alive, 20);
        for (const Pointer& pointer : all) EXPECT_TRUE(pointer.isOwner());
    }
    EXPECT_EQ(alive, 0);
}

} // namespace
