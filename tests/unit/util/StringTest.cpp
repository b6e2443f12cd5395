#include <ketra/util/String.h>

#include <ketra/runtime/Exception.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace {

using util::String;

std::string trimmed(std::string s, const std::string& chars = " \t\r\n")
{
    String::trim(s, chars);
    return s;
}

std::string replaced(std::string s, const std::string& pattern, const std::string& replacement)
{
    String::replaceFirst(s, pattern, replacement);
    return s;
}

TEST(String, FindsTheFirstIndexOrMinusOne)
{
    EXPECT_EQ(String::indexOf("abcb", 'b'), 1);
    EXPECT_EQ(String::indexOf("abc", 'x'), -1);
    EXPECT_EQ(String::indexOf("", 'x'), -1);
    EXPECT_EQ(String::indexOf("abcbc", "bc"), 1);
    EXPECT_EQ(String::indexOf("abc", "abcd"), -1);
    EXPECT_EQ(String::indexOf("abc", ""), 0);
    EXPECT_EQ(String::indexOf("abc", static_cast<const char*>(nullptr)), -1);
}

TEST(String, ComparesTheEndsWithCase)
{
    EXPECT_TRUE(String::startsWith("thermo.inp", "thermo"));
    EXPECT_FALSE(String::startsWith("thermo.inp", "Thermo"));
    EXPECT_FALSE(String::startsWith("th", "thermo"));
    EXPECT_TRUE(String::startsWith("th", ""));
    EXPECT_TRUE(String::endsWith("AL2O3(a)", "a)"));
    EXPECT_FALSE(String::endsWith("AL2O3(a)", "A)"));
    EXPECT_FALSE(String::endsWith(")", "a)"));
    EXPECT_TRUE(String::endsWith("", ""));
}

TEST(String, ChangesTheCaseOfLettersOnly)
{
    std::string s = "Al2O3(L) \xC4_z@[`{";
    String::toLowerCase(s);
    EXPECT_EQ(s, "al2o3(l) \xC4_z@[`{");
    String::toUpperCase(s);
    EXPECT_EQ(s, "AL2O3(L) \xC4_Z@[`{");
}

TEST(String, TrimsTheGivenCharactersFromBothEnds)
{
    EXPECT_EQ(trimmed(" \t a b \r\n"), "a b");
    EXPECT_EQ(trimmed("    "), "");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("xax", "x"), "a");
    EXPECT_EQ(trimmed(" a ", ""), " a ");
    EXPECT_EQ(trimmed("a"), "a");
}

constexpr const char* backup = R"(\.([^.]))";

TEST(ReplaceFirst, MakesTheNameOfABackup)
{
    EXPECT_EQ(replaced("a/thermo.inp", backup, "~.$1"), "a/thermo~.inp");
    EXPECT_EQ(replaced("a/thermo", backup, "~.$1"), "a/thermo");
    EXPECT_EQ(replaced("a.b.c", backup, "~.$1"), "a~.b.c");
    EXPECT_EQ(replaced("a..b", backup, "~.$1"), "a.~.b");
    EXPECT_EQ(replaced("a.", backup, "~.$1"), "a.");
}

TEST(ReplaceFirst, FindsTheWordBehindStructure)
{
    const std::string pattern = ".*(structure|STRUCTURE)[[:space:]]?([^[:space:]]+).+";
    EXPECT_EQ(replaced("Cr. structure alpha  remark", pattern, " $2"), " alpha");
    EXPECT_EQ(replaced("STRUCTURE:x y", pattern, " $2"), " :x");
    EXPECT_EQ(replaced("structure", pattern, " $2"), "structure");
}

TEST(ReplaceFirst, RewritesTheParenthesesOfASpecies)
{
    EXPECT_EQ(replaced("BeO(a)", R"((.*)\([IVabc]+\)$)", "$1(cr)"), "BeO(cr)");
    EXPECT_EQ(replaced("BeO(L)", R"((.*)\([IVabc]+\)$)", "$1(cr)"), "BeO(L)");
    EXPECT_EQ(replaced("AL2O3(L)", R"((.*)\(.*\))", "$1(transit)"), "AL2O3(transit)");
}

TEST(ReplaceFirst, LeavesAStringWithoutAMatch)
{
    EXPECT_EQ(replaced("abc", "x", "y"), "abc");
    EXPECT_EQ(replaced("", "x", "y"), "");
}

TEST(ReplaceFirst, ReplacesOnlyTheFirstMatch) { EXPECT_EQ(replaced("aaa", "a", "b"), "baa"); }

TEST(ReplaceFirst, KnowsGroupsAndNothingElseBehindADollar)
{
    EXPECT_EQ(replaced("ab", "(a)(b)", "$2$1"), "ba");
    EXPECT_EQ(replaced("ab", "(a)(b)", "[$0]"), "[ab]");
    EXPECT_EQ(replaced("ab", "(a)(b)", "$3"), "");
    EXPECT_EQ(replaced("b", "(a)?b", "<$1>"), "<>");
    EXPECT_EQ(replaced("a", "a", "$x$"), "$x$");
    EXPECT_EQ(replaced("a", "a", R"(\1&)"), R"(\1&)");
    // Text that comes in by a group is not a replacement itself.
    EXPECT_EQ(replaced("$1", "(.*)", "<$1>"), "<$1>");
}

TEST(ReplaceFirst, TakesAZeroByteAsACharacter)
{
    const std::string s("a\0b.c", 5);
    EXPECT_EQ(replaced(s, backup, "~.$1"), std::string("a\0b~.c", 6));
}

TEST(ReplaceFirst, TakesAByteThatIsNoCharacterOfTheLocale)
{
    const std::string former = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    EXPECT_EQ(replaced("\xFF(a)", R"((.*)\(.*\))", "$1"), "\xFF");
    std::setlocale(LC_ALL, former.c_str());
}

TEST(ReplaceFirst, CopesWithLongLines)
{
    const std::string line(100000, 'x');
    EXPECT_EQ(replaced(line + ".inp", backup, "~.$1"), line + "~.inp");
}

TEST(ReplaceFirst, RefusesAPatternThatIsNoExpression)
{
    std::string s = "abc";
    KETRA_EXPECT_THROW_MESSAGE(String::replaceFirst(s, "(a", ""), runtime::Exception, 1,
                               "Invalid regular expression");
    KETRA_EXPECT_THROW_CODE(String::replaceFirst(s, "[[:nothing:]]", ""), runtime::Exception, 1);
    EXPECT_EQ(s, "abc");
}

} // namespace
