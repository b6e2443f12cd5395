#pragma once

#include "MadeUpMixtures.h"

#include <support/TransportData.h>

#include <ketra/math/matrix/Matrix.h>
#include <ketra/math/matrix/RowVector.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/thermo/Database.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

// Made-up gases with transport data, and the steps of the transport calculation in reach.

namespace ketra_test {

/// The working data of one calculation.
struct Involved {
    std::vector<reaction::Product*> list;
    unsigned nm = 0;
    double nSum = 0.0, nE = -1.0, xE = 0.0;
    std::vector<double> x, counts;
    math::matrix::Matrix eta{0, 0};
    math::matrix::RowVector lambda{0};

    unsigned n() const { return static_cast<unsigned>(list.size()); }
};

class OpenTransport : public reaction::Derivatives
{
public:
    using Derivatives::Derivatives;

    Involved select(const double* thresholds, unsigned levels) const
    {
        Involved gases;
        gases.counts.assign(levels, 0.0);
        double* x = nullptr;
        std::vector<double> bounds(thresholds, thresholds + levels);
        getInvolvedSpecies(gases.list, gases.nm, gases.nSum, gases.nE, x, gases.xE, bounds.data(),
                           gases.counts.data(), levels);
        const std::unique_ptr<double[]> owned(x);
        gases.x.assign(x, x + gases.list.size());
        return gases;
    }
    Involved withData(Involved gases, double atT) const
    {
        gases.eta = math::matrix::Matrix(gases.n(), gases.n());
        gases.lambda = math::matrix::RowVector(gases.n());
        prepareData(gases.list, gases.nm, gases.n(), gases.nSum, gases.nE, gases.x.data(), gases.xE,
                    &gases.eta, &gases.lambda, atT);
        return gases;
    }
    Involved prepared(const double* thresholds, unsigned levels, double atT) const
    {
        return withData(select(thresholds, levels), atT);
    }
    /// Computes the share of the reactions of these gases alone, and no other result.
    void react(const Involved& gases, double atT)
    {
        calculateTransportPropertiesR(gases.list, gases.nm, gases.n(), gases.nSum, gases.nE,
                                      gases.x.data(), gases.xE, &gases.eta, &gases.lambda, atT);
    }
};

inline unsigned indexOf(const Involved& gases, const std::string& name)
{
    for (unsigned i = 0; i < gases.n(); ++i)
        if (gases.list[i]->getName() == name) return i;
    ADD_FAILURE() << "no " << name;
    return 0;
}

inline void setTransport(const std::string& name, double viscosity, double conductivity)
{
    thermo::Database::getInstance()->findForUpdate(name)->setTransportProperties(
        newTransport(viscosity, conductivity));
}

inline void setTransport(const std::string& name, const std::string& other, double viscosity)
{
    thermo::Database::getInstance()->findForUpdate(name)->setTransportProperties(
        other, newTransport(viscosity, 0.0));
}

/// Products of equal parts of some reactants with the amounts and the temperature of a solution.
/// Products without a given amount have none.
inline std::unique_ptr<OpenMixture> gasSolution(const std::vector<std::string>& reactants, double T,
                                                const std::map<std::string, double>& amounts,
                                                bool ions = false, unsigned condensed = 0)
{
    std::vector<Reactant> charge;
    for (const std::string& name : reactants)
        charge.push_back({name, 300.0, 1.0 / static_cast<double>(reactants.size())});
    const auto initial = mixtureOf(charge, thermo::_Species::MOLE_FRACTION);
    auto products = std::make_unique<OpenMixture>(*initial, true, ions);
    products->reset();
    for (unsigned c = 0; c < condensed; ++c) products->checkNewCondesedPhases(T, nullptr, 0);
    for (unsigned j = 0; j < products->size(); ++j) {
        const auto found = amounts.find(products->product(j)->getName());
        products->product(j)->setT(T);
        products->product(j)->setN(found == amounts.end() ? 0.0 : found->second);
    }
    for (const auto& [name, n] : amounts)
        if (n > 0.0) {
            EXPECT_NE(entryOf(*products, name), nullptr) << name;
        }
    return products;
}

/// One mole of a gas alone, whatever it could react to.
inline std::unique_ptr<OpenMixture> pureGas(const std::string& name, double T)
{
    return gasSolution({name}, T, {{name, 1.0}});
}

} // namespace ketra_test
