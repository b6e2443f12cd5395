#include <ketra/util/detail/Format.h>
#include <ketra/util/detail/NumericLocale.h>

#include <gtest/gtest.h>

#include <string>

#include <langinfo.h>
#include <locale.h>

namespace {

std::string codeset() { return nl_langinfo(CODESET); }

/// Puts the thread under a locale other than "C".
class OtherLocale
{
public:
    OtherLocale() : other(newlocale(LC_ALL_MASK, "C.UTF-8", nullptr)), former(uselocale(other)) {}
    ~OtherLocale()
    {
        uselocale(former);
        freelocale(other);
    }
    OtherLocale(const OtherLocale&) = delete;
    OtherLocale& operator=(const OtherLocale&) = delete;

    locale_t get() const { return other; }

private:
    locale_t other;
    locale_t former;
};

TEST(NumericLocale, HoldsWhileItLivesAndGivesTheThreadItsLocaleBack)
{
    const OtherLocale other;
    ASSERT_EQ(codeset(), "UTF-8");
    {
        const util::NumericLocale outer;
        EXPECT_NE(codeset(), "UTF-8");
        EXPECT_STREQ(localeconv()->decimal_point, ".");
        {
            const util::NumericLocale inner;
            EXPECT_NE(codeset(), "UTF-8");
        }
        EXPECT_NE(codeset(), "UTF-8");
    }
    EXPECT_EQ(codeset(), "UTF-8");
    EXPECT_EQ(uselocale(nullptr), other.get());
}

TEST(NumericLocale, ComesBackAfterAnException)
{
    const OtherLocale other;
    try {
        const util::NumericLocale numbers;
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(uselocale(nullptr), other.get());
}

TEST(NumericLocale, LeavesTheLocaleOfTheProcessAlone)
{
    const std::string before = setlocale(LC_ALL, nullptr);
    const util::NumericLocale numbers;
    EXPECT_EQ(setlocale(LC_ALL, nullptr), before);
}

TEST(Format, GivesTextsOfAnyLength)
{
    EXPECT_EQ(util::detail::format("%s", ""), "");
    EXPECT_EQ(util::detail::format("%7.3f|%d", 1.5, 2), "  1.500|2");
    // Below, at and above the size of the buffer on the stack, 512.
    for (const std::size_t length : {510u, 511u, 512u, 513u, 100000u}) {
        const std::string text(length, 'x');
        EXPECT_EQ(util::detail::format("%s", text.c_str()), text) << length;
    }
}

} // namespace
