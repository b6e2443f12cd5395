#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace performance::equilibrium {

using reaction::Derivatives;
using reaction::Equilibrium;

Chamber::Chamber(thermo::Propellant& propellant) : Combustor(propellant) {}

Chamber::Chamber(thermo::Propellant& propellant, double H) : Combustor(propellant, H) {}

Chamber::Chamber(thermo::Propellant& propellant, bool multiphase, bool ions)
    : Combustor(propellant, multiphase, ions)
{
}

Chamber::Chamber(thermo::Propellant& propellant, double H, bool multiphase, bool ions)
    : Combustor(propellant, H, multiphase, ions)
{
}

Chamber::Chamber(thermo::Mixture& mixture) : Combustor(mixture) {}

Chamber::Chamber(thermo::Mixture& mixture, double H) : Combustor(mixture, H) {}

Chamber::Chamber(thermo::Mixture& mixture, bool multiphase, bool ions)
    : Combustor(mixture, multiphase, ions)
{
}

Chamber::Chamber(thermo::Mixture& mixture, double H, bool multiphase, bool ions)
    : Combustor(mixture, H, multiphase, ions)
{
}

Chamber::~Chamber() = default;

void Chamber::Station::clear()
{
    derivatives.reset();
    problem.reset();
}

void Chamber::setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted)
{
    clearTables();
    clearStations();
    clearDerivatives();
    Combustor::setSpecies(included, omitted);
}

void Chamber::setFcr(double ratio)
{
    Fcr = ratio;
    Mr = 0.0;
}

void Chamber::setMr(double flux)
{
    Mr = flux;
    Fcr = 0.0;
}

double Chamber::getCstar(double blc) const
{
    const double share = blc != 0.0 ? blc : layerShare;
    return share != 0.0 ? share * cstar_blc + (1.0 - share) * cstar : cstar;
}

Equilibrium* Chamber::getReaction(CHAMBER_STATION station) const
{
    switch (station) {
    case INJECTION_PLANE:
        return getReaction();
    case CHAMBER_END:
        return endKind == End::INJECTION ? getReaction() : end.problem.get();
    case THROAT:
        return throatStation.problem.get();
    }
    return nullptr;
}

Derivatives* Chamber::getDerivatives(int station) const
{
    switch (station) {
    case INJECTION_PLANE:
        return getDerivatives();
    case CHAMBER_END:
        return endKind == End::INJECTION ? getDerivatives() : end.derivatives.get();
    case THROAT:
        return throatStation.derivatives.get();
    default:
        return nullptr;
    }
}

Equilibrium* Chamber::getBlcReaction(CHAMBER_STATION station) const
{
    switch (station) {
    case INJECTION_PLANE:
        return layer.problem.get();
    case CHAMBER_END:
        return layerEndKind == End::INJECTION ? layer.problem.get() : layerEnd.problem.get();
    case THROAT:
        return layerThroat.problem.get();
    }
    return nullptr;
}

Derivatives* Chamber::getBlcDerivatives(int station) const
{
    switch (station) {
    case INJECTION_PLANE:
        return layer.derivatives.get();
    case CHAMBER_END:
        return layerEndKind == End::INJECTION ? layer.derivatives.get()
                                              : layerEnd.derivatives.get();
    case THROAT:
        return layerThroat.derivatives.get();
    default:
        return nullptr;
    }
}

void Chamber::requireSolved(int station) const
{
    if (!getDerivatives(station)) throw thermo::Exception(0);
}

void Chamber::solve(bool finiteArea, bool expectCondensed, bool calculateTransport)
{
    clearTables();
    try {
        Combustor::solve(expectCondensed, calculateTransport);
        if (finiteArea)
            solveFiniteArea(expectCondensed, calculateTransport);
        else
            solveInfiniteArea(expectCondensed, calculateTransport);
        cstar = Pc_0 / getThroatFlux();
        blc_solve(calculateTransport);
    } catch (const thermo::Exception&) {
        clearStations();
        clearDerivatives();
        util::Log::errorf(
            "THERMO", "Shifting Equilibrium Combustor: could not solve the problem.%s", util::eol);
        throw thermo::Exception(14);
    } catch (...) {
        clearStations(); // what is half built says nothing
        throw;
    }
}

void Chamber::solveInfiniteArea(bool expectCondensed, bool calculateTransport)
{
    end.clear();
    endKind = End::INJECTION;
    Wc = 0.0;
    Pc_0 = getReaction()->getP();
    SigmaC = 1.0;
    throat(expectCondensed);
    if (calculateTransport) throatStation.derivatives->calculateTransportProperties(0.0, true);
}

void Chamber::solveFiniteArea(bool expectCondensed, bool calculateTransport)
{
    combustion_end_and_throat(expectCondensed);
    if (calculateTransport) {
        end.derivatives->calculateTransportProperties(0.0, true);
        throatStation.derivatives->calculateTransportProperties(0.0, true);
    }
    Wc = std::sqrt(2.0 * (getReaction()->getHspec() - end.problem->getHspec()));
    Pc_0 = stagnationPressure(end, Wc);
    SigmaC = Pc_0 / getReaction()->getP();
}

// p0 = p (1 + (k - 1)/2 M^2)^(k/(k - 1)) with M^2 = rho w^2/(k p): the perfect gas's, also where
// the composition shifts, so that it is a little off the pressure at which the products would rest.
double Chamber::stagnationPressure(const Station& station, double w)
{
    const double k = station.derivatives->getK();
    const double p = station.problem->getP();
    const double x = station.derivatives->getRho() * ((k - 1.0) * w * w) / (p * (k + k));
    return p * std::pow(x + 1.0, k / (k - 1.0));
}

void Chamber::clearStations()
{
    clearCoreStations();
    clearLayerStations();
}

void Chamber::clearCoreStations()
{
    throatStation.clear();
    end.clear();
    endKind = End::NONE;
}

void Chamber::clearTables()
{
    nozzleInput.reset();
    nozzleExit.reset();
}

// A copy has the properties of its source as they were when that was posed.
void Chamber::inherit(Equilibrium& station) const
{
    station.setPersistent(isPersistent());
    station.setWarmStart(isWarmStart());
}

} // namespace performance::equilibrium
