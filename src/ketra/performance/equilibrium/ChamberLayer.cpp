// The boundary layer of a chamber: a stream of its own at the static pressures of the core.

#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/performance/equilibrium/detail/SonicSearch.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace performance::equilibrium {

using performance::detail::BracketedRoot;
using reaction::Derivatives;
using reaction::Equilibrium;

namespace {

constexpr int bracketSteps = 20;
constexpr double narrowestBracket = 1e-9; // of the velocity, relative

} // namespace

void Chamber::setBLC(double fraction, thermo::Propellant& reactants, bool calculateTransport)
{
    blc_clear();
    if (!(fraction > 0.0)) return;
    setLayer(fraction, reactants);
    // A speed of sound equals a pressure in no real gas: a layer of a propellant waits for the next
    // solve of the chamber. Hosts that set one layer after another rely on it.
    const Derivatives* sonic = throatStation.derivatives.get();
    if (endKind != End::NONE && sonic && sonic->getA() == throatStation.problem->getP())
        blc_solve(calculateTransport);
}

void Chamber::setBLC(double fraction, thermo::Mixture& reactants, bool calculateTransport)
{
    blc_clear();
    setLayer(fraction, reactants);
    if (endKind != End::NONE) blc_solve(calculateTransport);
}

template <class Reactants> void Chamber::setLayer(double fraction, Reactants& reactants)
{
    const Equilibrium& core = *getReaction();
    auto posed = std::make_unique<Equilibrium>(reactants, core.isMultiphase(), core.isIons());
    layerH = reactants.H();
    posed->setPH(core.getP(), layerH);
    layer.problem = std::move(posed);
    layerIsFresh = true;
    layerShare = fraction;
}

void Chamber::blc_clear()
{
    clearLayerStations();
    layer.clear();
    layerShare = 0.0;
}

// All results of the layer; what it consists of stays.
void Chamber::clearLayerStations()
{
    layerThroat.clear();
    layerEnd.clear();
    layerEndKind = End::NONE;
    layer.derivatives.reset();
    Pc_0_blc = SigmaC_blc = Mr_blc = Fcr_blc = Wc_blc = cstar_blc = 0.0;
}

void Chamber::blc_solve(bool calculateTransport)
{
    if (!isBLC()) return;
    clearLayerStations();
    requireSolved(CHAMBER_END);
    requireSolved(THROAT);
    poseLayer();
    layer.derivatives.reset(solveReaction(layer.problem.get(), getRelativeTolerance(),
                                          isCondensedExpected(), calculateTransport));
    blc_throat();
    if (endKind == End::INJECTION) {
        layerEndKind = End::INJECTION;
        Pc_0_blc = layer.problem->getP();
    } else {
        solveLayerEnd();
    }
    const Derivatives& sonic = *layerThroat.derivatives;
    cstar_blc = Pc_0_blc / (sonic.getA() * sonic.getRho());
}

// A solution leaves the enthalpy of its products in the place of the target, so that the layer is
// posed anew with each solve, at the pressure that the core has now. Another kind of problem that a
// host has made of it stays as it is.
void Chamber::poseLayer()
{
    Equilibrium& target = *layer.problem;
    inherit(target);
    if (target.getProcessType() != Equilibrium::PH) return;
    if (layerIsFresh) layerH = target.getH();
    layerIsFresh = false;
    target.setPH(getReaction()->getP(), layerH);
}

void Chamber::blc_throat()
{
    try {
        if (!layer.derivatives) throw thermo::Exception(0);
        requireSolved(THROAT);
        findLayerThroat();
    } catch (const thermo::Exception& e) {
        layerThroat.clear();
        throw thermo::Exception(e.getType());
    } catch (...) {
        layerThroat.clear();
        throw;
    }
}

// The layer's throat has the pressure of the core's, so that not the pressure but the enthalpy is
// varied until the velocity gained since the injection plane is that of sound.
void Chamber::findLayerThroat()
{
    try {
        iterateLayerThroat();
        if (!isPersistent() || layerThroatIsSonic()) return;
    } catch (const thermo::Exception&) {
        if (!isPersistent()) throw;
    }
    bracketLayerThroat();
}

void Chamber::iterateLayerThroat()
{
    double a = layer.derivatives->getA();
    double M = 1.0, previousM = 1.0;
    for (int pass = 1;; ++pass) {
        solveLayerThroat(a);
        a = layerThroat.derivatives->getA();
        M = layerThroatMach();
        if (std::abs(M - 1.0) < getRelativeTolerance() * detail::sonicTolerance) return;
        if (pass == detail::sonicPasses) break;
        previousM = M;
    }
    // Across a jump of the Mach number the last state is kept as it stands.
    if (!detail::bracketSonic(M, previousM)) throw thermo::Exception(detail::noThroat);
}

// The Mach number rises with the velocity, as the layer cools by it.
void Chamber::bracketLayerThroat()
{
    util::Log::infof("THERMO",
                     "Throat of the boundary layer: the search has not found Mach number 1. "
                     "Searching between a subsonic and a supersonic velocity.%s",
                     util::eol);
    const auto excess = [&](double w) {
        solveLayerThroat(w);
        return layerThroatMach() - 1.0;
    };
    const double a = layer.derivatives->getA();
    BracketedRoot::Point subsonic{0.0, -1.0}, supersonic{0.0, -1.0};
    for (int step = 1; !(supersonic.value > 0.0); ++step) {
        if (step > bracketSteps) throw thermo::Exception(detail::noThroat);
        subsonic = supersonic;
        supersonic.x = (0.9 + 0.1 * step) * a;
        supersonic.value = excess(supersonic.x);
    }
    BracketedRoot root(excess, subsonic, supersonic);
    if (!root.close(getRelativeTolerance() * detail::sonicTolerance, narrowestBracket * a))
        excess(root.best().x);
}

// The layer at the pressure of the core's throat with the velocity w.
void Chamber::solveLayerThroat(double w)
{
    const Equilibrium& source = *layer.problem;
    const double mass = layer.derivatives->getMm();
    const double N = source.getResultingMixtureQuantaty();
    layerThroat.clear();
    layerThroat.problem = std::make_unique<Equilibrium>(source);
    layerThroat.problem->setPH(throatStation.problem->getP(),
                               mass * (source.getHspec() - w * w / 2.0) * N);
    layerThroat.derivatives.reset(solveReaction(layerThroat.problem.get(), getRelativeTolerance(),
                                                isCondensedExpected(), false));
}

double Chamber::layerThroatMach() const
{
    return std::sqrt(2.0 * (layer.problem->getHspec() - layerThroat.problem->getHspec())) /
           layerThroat.derivatives->getA();
}

bool Chamber::layerThroatIsSonic() const
{
    return std::abs(layerThroatMach() - 1.0) < getRelativeTolerance() * detail::sonicTolerance;
}

// The end of the layer in a chamber of finite area: its throat's entropy at the pressure of the
// core's end.
void Chamber::solveLayerEnd()
{
    const Equilibrium& sonic = *layerThroat.problem;
    Station station;
    station.problem = std::make_unique<Equilibrium>(*layer.problem);
    station.problem->setPS(end.problem->getP(), sonic.getS() * sonic.getResultingMixtureQuantaty());
    station.derivatives.reset(
        solveReaction(station.problem.get(), getRelativeTolerance(), isCondensedExpected(), true));
    const double rho = station.derivatives->getRho();
    Wc_blc = std::sqrt(2.0 * (layer.problem->getHspec() - station.problem->getHspec()));
    Mr_blc = rho * Wc_blc;
    Fcr_blc = layerThroat.derivatives->getRho() * layerThroat.derivatives->getA() / Mr_blc;
    Pc_0_blc = stagnationPressure(station, Wc_blc);
    SigmaC_blc = Pc_0_blc / layer.problem->getP();
    layerEnd = std::move(station);
    layerEndKind = End::OWN;
}

} // namespace performance::equilibrium
