#include <support/Failures.h>
#include <support/MadeUpSpecies.h>

#include <ketra/reaction/Product.h>
#include <ketra/reaction/QuasiProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

using ketra_test::constantCp;
using ketra_test::makeSpecies;
using ketra_test::Record;
using math::matrix::ColumnVector;
using reaction::Product;
using reaction::QuasiProduct;
using thermo::gasConstant;

namespace {

// Cp/R = 2.5, H/R = 2.5 T + 100, S/R = 2.5 ln T + 3: closed forms for every function.
const Record gasRecord{"X2", {{"AR", 2.0}}, 79.896,
                       0,    0.0,           {constantCp(200.0, 6000.0, 2.5, 100.0, 3.0)}};
const Record solidRecord{"Y(cr)", {{"AL", 1.0}}, 26.98,
                         1,       0.0,           {constantCp(200.0, 1000.0, 3.0, -5000.0, -12.0)}};

ColumnVector* numbers(const std::vector<double>& values)
{
    auto vector = std::make_unique<ColumnVector>(static_cast<unsigned>(values.size()));
    for (unsigned i = 0; i < values.size(); ++i) vector->set(i, values[i]);
    return vector.release();
}

class ProductTest : public testing::Test
{
protected:
    std::unique_ptr<thermo::Species> gas = makeSpecies(gasRecord, 7);
    std::unique_ptr<thermo::Species> solid = makeSpecies(solidRecord, 8);
};

} // namespace

TEST_F(ProductTest, BeginsWithoutAmountAndWithEmptyCaches)
{
    const Product product(*gas);
    EXPECT_EQ(product.n(), 0.0);
    EXPECT_EQ(product.ln_n(), 0.0);
    EXPECT_EQ(product.T(), 0.0);
    EXPECT_FALSE(product.isExcluded());
    for (const double cached :
         {product.G0(), product.H0(), product.U0(), product.S0(), product.Cp0(), product.Cv0(),
          product.G0_tilde(), product.H0_tilde(), product.U0_tilde(), product.S0_tilde(),
          product.Cp0_tilde(), product.Cv0_tilde()})
        EXPECT_EQ(cached, 0.0);
    EXPECT_EQ(product.getName(), "X2");
    EXPECT_TRUE(product == gas.get());
}

TEST_F(ProductTest, TheLogarithmOfNoAmountIsZero)
{
    Product product(*gas);
    product.setN(0.5);
    EXPECT_DOUBLE_EQ(product.ln_n(), std::log(0.5));
    product.setN(0.0);
    EXPECT_EQ(product.n(), 0.0);
    EXPECT_EQ(product.ln_n(), 0.0);
}

TEST_F(ProductTest, AmountAndLogarithmAreStoredAsGiven)
{
    Product product(*gas);
    product.setN(2.0, -17.0);
    EXPECT_EQ(product.n(), 2.0);
    EXPECT_EQ(product.ln_n(), -17.0);
}

TEST_F(ProductTest, SetTFillsAllCachesOfAGas)
{
    Product product(*gas);
    const double T = 1500.0;
    product.setT(T);
    const double H = 2.5 + 100.0 / T;
    const double S = 2.5 * std::log(T) + 3.0;
    EXPECT_EQ(product.T(), T);
    EXPECT_DOUBLE_EQ(product.H0_tilde(), H);
    EXPECT_DOUBLE_EQ(product.U0_tilde(), H - 1.0);
    EXPECT_NEAR(product.S0_tilde(), S, 1e-13 * S);
    EXPECT_NEAR(product.G0_tilde(), H - S, 1e-12 * S);
    EXPECT_DOUBLE_EQ(product.Cp0_tilde(), 2.5);
    EXPECT_DOUBLE_EQ(product.Cv0_tilde(), 1.5);
    EXPECT_DOUBLE_EQ(product.H0(), product.H0_tilde() * gasConstant * T);
    EXPECT_DOUBLE_EQ(product.U0(), product.U0_tilde() * gasConstant * T);
    EXPECT_DOUBLE_EQ(product.G0(), product.G0_tilde() * gasConstant * T);
    EXPECT_DOUBLE_EQ(product.S0(), product.S0_tilde() * gasConstant);
    EXPECT_DOUBLE_EQ(product.Cp0(), product.Cp0_tilde() * gasConstant);
    // From the dimensionless form: not the Cv0(T) of the species, which subtracts 298.15.
    EXPECT_DOUBLE_EQ(product.Cv0(), 1.5 * gasConstant);
}

TEST_F(ProductTest, SetTFillsAllCachesOfACondensedProduct)
{
    Product product(*solid);
    product.setT(500.0);
    EXPECT_DOUBLE_EQ(product.U0_tilde(), product.H0_tilde());
    EXPECT_DOUBLE_EQ(product.U0(), product.H0());
    EXPECT_DOUBLE_EQ(product.Cv0_tilde(), 3.0);
    EXPECT_DOUBLE_EQ(product.Cv0(), product.Cp0());
    EXPECT_DOUBLE_EQ(product.H0_tilde(), 3.0 - 5000.0 / 500.0);
}

TEST_F(ProductTest, FunctionsAtATemperatureLeaveTheCachesAlone)
{
    Product product(*gas);
    product.setT(1500.0);
    const double cached = product.H0_tilde();
    EXPECT_DOUBLE_EQ(product.H0_tilde(3000.0), gas->H0_tilde(3000.0));
    EXPECT_DOUBLE_EQ(product.H0(3000.0), gas->H0(3000.0));
    EXPECT_DOUBLE_EQ(product.U0(3000.0), gas->U0(3000.0));
    EXPECT_DOUBLE_EQ(product.U0_tilde(3000.0), gas->U0_tilde(3000.0));
    EXPECT_DOUBLE_EQ(product.S0(3000.0), gas->S0(3000.0));
    EXPECT_DOUBLE_EQ(product.S0_tilde(3000.0), gas->S0_tilde(3000.0));
    EXPECT_DOUBLE_EQ(product.G0(3000.0), gas->G0(3000.0));
    EXPECT_DOUBLE_EQ(product.G0_tilde(3000.0), gas->G0_tilde(3000.0));
    EXPECT_DOUBLE_EQ(product.Cp0(3000.0), gas->Cp0(3000.0));
    EXPECT_DOUBLE_EQ(product.Cp0_tilde(3000.0), gas->Cp0_tilde(3000.0));
    EXPECT_DOUBLE_EQ(product.Cv0_tilde(3000.0), gas->Cv0_tilde(3000.0));
    EXPECT_DOUBLE_EQ(product.Cv0(3000.0), gas->Cp0(3000.0) - 298.15);
    EXPECT_EQ(product.H0_tilde(), cached);
    EXPECT_EQ(product.T(), 1500.0);
}

TEST_F(ProductTest, ATemperatureOutsideTheRangeLeavesTheCachesAndStoresT)
{
    Product product(*gas);
    product.setT(1500.0);
    const double H = product.H0();
    const double G = product.G0_tilde();
    KETRA_EXPECT_THROW_CODE(product.setT(6001.0), thermo::Exception, 1);
    EXPECT_EQ(product.T(), 6001.0);
    EXPECT_EQ(product.H0(), H);
    EXPECT_EQ(product.G0_tilde(), G);
    KETRA_EXPECT_THROW_CODE(product.setT(199.9), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(product.setT(std::nan("")), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(product.H0(199.9), thermo::Exception, 1);
}

TEST_F(ProductTest, AssignATakesOverTheNumbers)
{
    Product product(*gas);
    product.assignA(numbers({1.0, 2.0}));
    product.assignA(numbers({3.0, 4.0, 5.0}));
    EXPECT_EQ(product.a(0), 3.0);
    EXPECT_EQ(product.a(2), 5.0);
}

TEST_F(ProductTest, ACopyHasNumbersOfItsOwn)
{
    Product product(*gas);
    product.assignA(numbers({1.0, 2.0}));
    product.setN(0.25, -3.0);
    product.setT(700.0);
    product.exclude(true);
    {
        const Product copy(product);
        EXPECT_EQ(copy.a(1), 2.0);
        EXPECT_EQ(copy.n(), 0.25);
        EXPECT_EQ(copy.ln_n(), -3.0);
        EXPECT_EQ(copy.T(), 700.0);
        EXPECT_EQ(copy.G0(), product.G0());
        EXPECT_EQ(copy.Cv0_tilde(), product.Cv0_tilde());
        EXPECT_FALSE(copy.isExcluded());
    }
    EXPECT_EQ(product.a(0), 1.0);
    EXPECT_EQ(product.a(1), 2.0);
    EXPECT_TRUE(product.isExcluded());
}

TEST_F(ProductTest, ACopyOfAProductWithoutNumbersHasNone)
{
    const Product product(*gas);
    Product copy(product);
    copy.assignA(numbers({9.0}));
    EXPECT_EQ(copy.a(0), 9.0);
}

TEST_F(ProductTest, AssignmentTakesSpeciesAmountAndCaches)
{
    Product target(*solid);
    target.assignA(numbers({8.0}));
    {
        Product source(*gas);
        source.assignA(numbers({1.0, 2.0}));
        source.setN(0.5);
        source.setT(900.0);
        source.exclude(true);
        target = source;
        EXPECT_EQ(target.H0(), source.H0());
    }
    EXPECT_EQ(target.getName(), "X2");
    EXPECT_EQ(target.a(1), 2.0);
    EXPECT_EQ(target.n(), 0.5);
    EXPECT_EQ(target.T(), 900.0);
    EXPECT_TRUE(target.isExcluded());
    Product& same = target;
    target = same;
    EXPECT_EQ(target.a(1), 2.0);
}

TEST_F(ProductTest, DestroyingAProductLeavesItsSpeciesIntact)
{
    {
        const Product product(*gas);
    }
    EXPECT_DOUBLE_EQ(gas->H0_tilde(1000.0), 2.6);
}

TEST_F(ProductTest, AQuasiProductIsTheMeanOverThePhasesByAmount)
{
    const Record upperRecord{
        "Y(L)", {{"AL", 1.0}}, 26.98, 2, 0.0, {constantCp(200.0, 1000.0, 4.0, -4000.0, -16.0)}};
    const auto upperSpecies = makeSpecies(upperRecord, 9);
    Product first(*solid);
    first.setN(0.3);
    first.setT(400.0);
    Product second(*upperSpecies);
    second.setN(0.1);

    QuasiProduct quasi(first);
    EXPECT_DOUBLE_EQ(quasi.getTotalN(), 0.3);
    quasi.addMember(&second);
    EXPECT_DOUBLE_EQ(quasi.getTotalN(), 0.4);
    ASSERT_EQ(quasi.getMembers().size(), 1u);

    quasi.setT(800.0);
    EXPECT_EQ(second.T(), 800.0);
    const auto mean = [](double own, double member) { return (0.3 * own + 0.1 * member) / 0.4; };
    const double lnT = std::log(800.0);
    EXPECT_DOUBLE_EQ(quasi.Cp0_tilde(), mean(3.0, 4.0));
    EXPECT_DOUBLE_EQ(quasi.Cp0(), mean(3.0, 4.0) * gasConstant);
    EXPECT_DOUBLE_EQ(quasi.H0_tilde(), mean(3.0 - 5000.0 / 800.0, 4.0 - 4000.0 / 800.0));
    EXPECT_NEAR(quasi.S0_tilde(), mean(3.0 * lnT - 12.0, 4.0 * lnT - 16.0), 1e-12);
    EXPECT_NEAR(quasi.G0_tilde(), quasi.H0_tilde() - quasi.S0_tilde(), 1e-11);
    EXPECT_NEAR(quasi.H0(), quasi.H0_tilde() * gasConstant * 800.0, 1e-9 * std::abs(quasi.H0()));
    EXPECT_NEAR(quasi.G0(), quasi.G0_tilde() * gasConstant * 800.0, 1e-9 * std::abs(quasi.G0()));
    EXPECT_NEAR(quasi.S0(), quasi.S0_tilde() * gasConstant, 1e-9);
    EXPECT_EQ(quasi.n(), 0.3);
}
