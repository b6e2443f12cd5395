#include <ketra/math/equation/Exception.h>
#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/matrix/Exception.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/util/NetworkException.h>

#include <gtest/gtest.h>

#include <climits>
#include <exception>
#include <functional>
#include <ostream>
#include <string>
#include <type_traits>

namespace {

/// One code of a family and its text.
struct Row {
    const char* family;
    unsigned int code;
    const char* text;
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << row.family << "::Exception " << row.code;
}

/// Hands \p use an exception of the family, made from the code and, if there is one, the text.
void withException(const Row& row, const char* text,
                   const std::function<void(const runtime::Exception&)>& use)
{
    const auto make = [&]<class Type>(std::type_identity<Type>) {
        use(text != nullptr ? Type(row.code, text) : Type(row.code));
    };
    const std::string family(row.family);
    if (family == "math::equation") return make(std::type_identity<math::equation::Exception>());
    if (family == "math::matrix") return make(std::type_identity<math::matrix::Exception>());
    if (family == "math::interpolation")
        return make(std::type_identity<math::interpolation::Exception>());
    if (family == "util") return make(std::type_identity<util::NetworkException>());
    if (family == "thermo") return make(std::type_identity<thermo::Exception>());
    if (family == "thermo::input") return make(std::type_identity<thermo::input::Exception>());
    FAIL() << "no family " << family;
}

constexpr Row rows[] = {
    {"math::equation", 0, "Invalid interval"},
    {"math::equation", 1, "Iteration count exceeded"},
    {"math::equation", 2, "Position unchanged"},
    {"math::equation", 3, "Unknown"},
    {"math::equation", UINT_MAX, "Unknown"},
    {"math::matrix", 0, "Invalid matrix index"},
    {"math::matrix", 1, "Invalid dimensions"},
    {"math::matrix", 2, "Zero row"},
    {"math::matrix", 3, "Singular"},
    {"math::matrix", 4, "No convergence"},
    {"math::matrix", 5, "Unknown"},
    {"math::matrix", UINT_MAX, "Unknown"},
    {"math::interpolation", 0, "Invalid interval or argument"},
    {"math::interpolation", 1, "Unknown"},
    {"math::interpolation", UINT_MAX, "Unknown"},
    {"util", 0, "Host not found"},
    {"util", 1, "Unknown"},
    {"util", UINT_MAX, "Unknown"},
    {"thermo", 0, "Invalid state"},
    {"thermo", 1, "Invalid temperature"},
    {"thermo", 2, "Invalid pressure"},
    {"thermo", 3, "Unknown"},
    {"thermo", 4, "Unknown species"},
    {"thermo", 5, "Invalid mass fraction"},
    {"thermo", 6, "Invalid molar fraction"},
    {"thermo", 7, "Condensed species in gas mixture"},
    {"thermo", 8, "Could not find equilibrium"},
    {"thermo", 9, "Could not find chamber end conditions"},
    {"thermo", 10, "Could not find throat conditions"},
    {"thermo", 11, "Could not find nozzle section equilibrium"},
    {"thermo", 12, "Could not obtain thermodynamic derivatives"},
    {"thermo", 13, "Could not find nozzle section frozen conditions"},
    {"thermo", 14, "Could not solve problem"},
    {"thermo", 15, "Unknown"},
    {"thermo", 16, "Unknown"},
    {"thermo", 17, "Unknown"},
    {"thermo", 18, "Unknown"},
    {"thermo", 19, "Unknown"},
    {"thermo", UINT_MAX, "Unknown"},
    {"thermo::input", 0, "Could not load configuration file"},
    {"thermo::input", 1, "Incorrect version"},
    {"thermo::input", 2, "NULL pointer"},
    {"thermo::input", 3, "Data not found"},
    {"thermo::input", 4, "Unknown"},
    {"thermo::input", 5, "Unknown"},
    {"thermo::input", 6, "Index out of bounds"},
    {"thermo::input", 7, "Invalid state"},
    {"thermo::input", 8, "Unknown"},
    {"thermo::input", UINT_MAX, "Unknown"},
};

class ExceptionTable : public testing::TestWithParam<Row>
{
};

TEST_P(ExceptionTable, GivesTheTextOfTheCode)
{
    withException(GetParam(), nullptr, [](const runtime::Exception& e) {
        EXPECT_EQ(e.getType(), GetParam().code);
        EXPECT_STREQ(e.getMessage(), GetParam().text);
        EXPECT_STREQ(e.what(), GetParam().text);
    });
}

TEST_P(ExceptionTable, IsReplacedByAGivenText)
{
    withException(GetParam(), "x", [](const runtime::Exception& e) {
        EXPECT_EQ(e.getType(), GetParam().code);
        EXPECT_STREQ(e.getMessage(), "x");
        EXPECT_STREQ(e.what(), "x");
    });
}

INSTANTIATE_TEST_SUITE_P(Families, ExceptionTable, testing::ValuesIn(rows));

template <class Type> class ExceptionFamily : public testing::Test
{
};

using Families = testing::Types<math::equation::Exception, math::matrix::Exception,
                                math::interpolation::Exception, util::NetworkException,
                                thermo::Exception, thermo::input::Exception>;
TYPED_TEST_SUITE(ExceptionFamily, Families);

TYPED_TEST(ExceptionFamily, IsCaughtAsItselfAsTheRootAndAsAStandardException)
{
    EXPECT_THROW(throw TypeParam(0), TypeParam);
    EXPECT_THROW(throw TypeParam(0), runtime::Exception);
    EXPECT_THROW(throw TypeParam(0), std::exception);
}

TYPED_TEST(ExceptionFamily, OffersBothReadOutsOfTheTextOnTheClassItself)
{
    const TypeParam e(0, "text");
    EXPECT_STREQ(e.getMessage(), "text");
    EXPECT_STREQ(e.what(), e.getMessage());
}

TYPED_TEST(ExceptionFamily, IsCopiedWithCodeAndText)
{
    const TypeParam source(7, "seven");
    const TypeParam copy(source);
    TypeParam assigned(0);
    assigned = source;
    EXPECT_EQ(copy.getType(), 7u);
    EXPECT_STREQ(copy.getMessage(), "seven");
    EXPECT_EQ(assigned.getType(), 7u);
    EXPECT_STREQ(assigned.getMessage(), "seven");
}

TYPED_TEST(ExceptionFamily, TakesANullTextForAnEmptyOne)
{
    EXPECT_STREQ(TypeParam(1, nullptr).what(), "");
}

TEST(RuntimeException, HasNoTextUnlessOneIsGiven)
{
    const runtime::Exception bare(1);
    EXPECT_EQ(bare.getType(), 1u);
    EXPECT_STREQ(bare.what(), "");
    EXPECT_STREQ(bare.getMessage(), "");
    EXPECT_STREQ(runtime::Exception(2, "text").what(), "text");
    EXPECT_STREQ(runtime::Exception(2, nullptr).what(), "");
}

TEST(RuntimeException, KeepsACopyOfTheText)
{
    std::string text = "first";
    const runtime::Exception e(0, text.c_str());
    text = "other";
    EXPECT_STREQ(e.what(), "first");
}

TEST(RuntimeException, OutlivesTheExceptionItWasCopiedFrom)
{
    runtime::Exception kept(0);
    try {
        throw thermo::Exception(8);
    } catch (const runtime::Exception& e) {
        kept = e;
    }
    EXPECT_EQ(kept.getType(), 8u);
    EXPECT_STREQ(kept.what(), "Could not find equilibrium");
}

} // namespace
