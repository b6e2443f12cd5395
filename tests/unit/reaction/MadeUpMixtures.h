#pragma once

#include <support/CapturingLogger.h>
#include <support/MadeUpSpecies.h>
#include <support/Reactants.h>

#include <ketra/reaction/ReactingMixture.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ketra_test {

/// A gas of constant heat capacity between 200 and 20000 K; \p h is its H/R at 0 K, K.
inline Record gasRecord(const std::string& name,
                        std::vector<std::pair<std::string, double>> formula, double M, double h,
                        double s = 5.0)
{
    return {name, std::move(formula), M, 0, 0.0, {constantCp(200.0, 20000.0, 3.5, h, s)}};
}

/// A condensed phase of constant heat capacity.
inline Record condensedRecord(const std::string& name,
                              std::vector<std::pair<std::string, double>> formula, double M,
                              int phase, double T1, double T2, double h, double s = -15.0)
{
    return {name, std::move(formula), M, phase, 0.0, {constantCp(T1, T2, 3.0, h, s)}};
}

/// Gases of hydrogen, oxygen, nitrogen and aluminium, ions, alumina in two phases that change at
/// 2000 K, aluminium, and water at 273.15 K.
inline std::vector<Record> sampleSpecies()
{
    return {
        gasRecord("OH-", {{"O", 1.0}, {"H", 1.0}, {"E", 1.0}}, 17.00788858, -17000.0),
        gasRecord("H2", {{"H", 2.0}}, 2.01588, -1000.0, -2.0),
        gasRecord("e-", {{"E", 1.0}}, 0.00054858026, -700.0, -10.0),
        gasRecord("O2", {{"O", 2.0}}, 31.9988, -1000.0),
        gasRecord("H+", {{"H", 1.0}, {"E", -1.0}}, 1.00739142, 184000.0),
        gasRecord("H2O", {{"H", 2.0}, {"O", 1.0}}, 18.01528, -30000.0),
        gasRecord("N2", {{"N", 2.0}}, 28.0134, -1000.0),
        gasRecord("NO", {{"N", 1.0}, {"O", 1.0}}, 30.0061, 10000.0),
        gasRecord("AL", {{"AL", 1.0}}, 26.9815386, 39000.0),
        gasRecord("H", {{"H", 1.0}}, 1.00794, 25500.0, -2.0),
        condensedRecord("AL2O3(a)", {{"AL", 2.0}, {"O", 3.0}}, 101.9612772, 1, 200.0, 2000.0,
                        -202000.0, -50.0),
        condensedRecord("AL2O3(L)", {{"AL", 2.0}, {"O", 3.0}}, 101.9612772, 2, 2000.0, 6000.0,
                        -190000.0, -44.0),
        condensedRecord("AL(cr)", {{"AL", 1.0}}, 26.9815386, 1, 200.0, 933.0, -900.0, -14.0),
        condensedRecord("H2O(cr)", {{"H", 2.0}, {"O", 1.0}}, 18.01528, 1, 200.0, 273.15, -36000.0),
        condensedRecord("H2O(L)", {{"H", 2.0}, {"O", 1.0}}, 18.01528, 2, 273.15, 600.0, -35300.0),
    };
}

/// A mixture whose inner operations and lists a test may reach.
class OpenMixture : public reaction::ReactingMixture
{
public:
    using ReactingMixture::addProduct;
    using ReactingMixture::containsElement;
    using ReactingMixture::containsProduct;
    using ReactingMixture::createTransitProducts;
    using ReactingMixture::findRelevantElements;
    using ReactingMixture::findRelevantProducts;
    using ReactingMixture::getIndexOf;
    using ReactingMixture::materialBalance;
    using ReactingMixture::MaterialBalanceCoefficients;
    using ReactingMixture::ReactingMixture;

    /// All products that could form, worked out anew: gases, then condensed.
    std::unique_ptr<std::vector<reaction::Product*>> candidates()
    {
        std::unique_ptr<std::vector<reaction::Product*>> list(
            findRelevantProducts(nullptr, false, isIons()));
        findRelevantProducts(list.get(), true, isIons());
        return list;
    }
};

inline std::vector<std::string> namesOf(const std::vector<reaction::Product*>& products)
{
    std::vector<std::string> names;
    for (const reaction::Product* product : products) names.push_back(product->getName());
    return names;
}

/// Names of the present list.
inline std::vector<std::string> reactingNames(const reaction::ReactingMixture& mixture)
{
    std::vector<std::string> names;
    for (unsigned j = 0; j < mixture.size(); ++j) names.push_back(mixture.product(j)->getName());
    return names;
}

/// The entry of that name in the present list, null without one.
inline reaction::Product* entryOf(const reaction::ReactingMixture& mixture, const std::string& name)
{
    for (unsigned j = 0; j < mixture.size(); ++j)
        if (mixture.product(j)->getName() == name) return mixture.product(j);
    return nullptr;
}

using Names = std::vector<std::string>;

/// Hydrogen and oxygen, three to two by moles.
inline std::unique_ptr<thermo::Mixture> hydrogenOxygen()
{
    return mixtureOf({{"H2", 300.0, 0.6}, {"O2", 300.0, 0.4}}, thermo::_Species::MOLE_FRACTION);
}

/// Aluminium and oxygen, two to three by atoms.
inline std::unique_ptr<thermo::Mixture> aluminiumOxygen()
{
    return mixtureOf({{"AL(cr)", 300.0, 4.0 / 7.0}, {"O2", 300.0, 3.0 / 7.0}},
                     thermo::_Species::MOLE_FRACTION);
}

/// A test on the made-up species, with its log captured.
class SampleSpeciesTest : public testing::Test
{
protected:
    SampleSpeciesTest() { useSpecies(sampleSpecies()); }
    LogCapture log;
};

} // namespace ketra_test
