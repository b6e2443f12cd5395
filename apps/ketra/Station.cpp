#include "Station.h"

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>

#include <cmath>

namespace host {

using performance::equilibrium::Chamber;
using performance::equilibrium::NozzleSectionConditions;

namespace {

bool isFinite(const Chamber& chamber)
{
    return chamber.getReaction(Chamber::CHAMBER_END) !=
           chamber.getReaction(Chamber::INJECTION_PLANE);
}

Station ofChamber(const Chamber& chamber, Chamber::CHAMBER_STATION station)
{
    Station result = stationOf(*chamber.getReaction(station), *chamber.getDerivatives(station));
    result.pressureRatio = chamber.getReaction(Chamber::INJECTION_PLANE)->getP() / result.p();
    return result;
}

} // namespace

double Station::T() const { return isFrozen() ? section->getT() : equilibrium->getT(); }
double Station::p() const { return isFrozen() ? section->getP() : derivatives->getP(); }
double Station::rho() const { return isFrozen() ? section->getRho() : derivatives->getRho(); }
double Station::a() const { return isFrozen() ? section->getA() : derivatives->getA(); }
double Station::M() const { return isFrozen() ? section->getMm2() : derivatives->getMm2(); }
double Station::gamma() const { return isFrozen() ? section->getGamma() : derivatives->getGamma(); }
double Station::k() const { return isFrozen() ? section->getK() : derivatives->getK(); }

Station stationOf(const reaction::Equilibrium& equilibrium,
                  const reaction::Derivatives& derivatives)
{
    Station station;
    station.equilibrium = &equilibrium;
    station.derivatives = &derivatives;
    return station;
}

Station injectionPlaneOf(const Chamber& chamber)
{
    return ofChamber(chamber, Chamber::INJECTION_PLANE);
}

Station chamberEndOf(const Chamber& chamber)
{
    Station station = ofChamber(chamber, Chamber::CHAMBER_END);
    station.W = chamber.getWc();
    if (isFinite(chamber)) station.areaRatio = chamber.getFcr();
    return station;
}

Station throatOf(const Chamber& chamber)
{
    Station station = ofChamber(chamber, Chamber::THROAT);
    const double h = chamber.getReaction(Chamber::INJECTION_PLANE)->getHspec();
    station.W = std::sqrt(2.0 * (h - station.equilibrium->getHspec()));
    station.areaRatio = 1.0;
    return station;
}

Station stationOf(const NozzleSectionConditions& section)
{
    Station station;
    station.equilibrium = section.getReaction();
    station.derivatives = section.getDerivatives();
    station.section = &section;
    station.areaRatio = section.getFr();
    station.W = section.getW();
    station.pressureRatio = section.getPi();
    return station;
}

struct Composition::Products {
    std::unique_ptr<reaction::ReactingMixture> reacting;
};

Composition::Composition(const Station& station) : products(std::make_unique<Products>())
{
    if (!station.isFrozen()) {
        products->reacting.reset(
            station.equilibrium->copyReactingMixture(/*condensed=*/true, /*ions=*/true));
        mixture.reset(products->reacting->copyResultingMixture());
    } else {
        using Frozen = performance::frozen::NozzleSectionConditions;
        mixture.reset(dynamic_cast<const Frozen&>(*station.section).getResultingMixture());
    }
}

Composition::Composition(Composition&&) noexcept = default;
Composition::~Composition() = default;

double Composition::condensedFraction() const
{
    double z = 0.0;
    for (int i = 0; i < mixture->size(); ++i)
        if (mixture->getSpecies(i)->isCondensed()) z += mixture->getMassFraction(i);
    return z;
}

} // namespace host
