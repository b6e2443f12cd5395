// Oxygen and hydrogen through the classes of the library: from a propellant to the state and the
// composition of what it burns to, without a document.
//
// Usage: example_equilibrium [FOLDER OF THE SPECIES FILES]

#include <ketra/api/ketra.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

namespace {

constexpr double chamberPressure = 10e6; // Pa
constexpr double mixtureRatio = 6.0;     // oxygen over hydrogen, by mass
constexpr double leastShown = 1e-4;      // mole fraction

/// A propellant at its components' own temperatures: the boiling points of the two liquids.
thermo::Propellant oxygenAndHydrogen()
{
    thermo::Propellant propellant(mixtureRatio);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2(L)");
    propellant.addComponent(thermo::Propellant::FUEL, "H2(L)");
    propellant.getComponent(thermo::Propellant::OXIDIZER)->setFraction(0, 1.0);
    propellant.getComponent(thermo::Propellant::FUEL)->setFraction(0, 1.0);
    return propellant;
}

void printState(const reaction::Equilibrium& equilibrium, const reaction::Derivatives& derivatives)
{
    std::printf("T     = %10.2f K\n", equilibrium.getT());
    std::printf("MW    = %10.5f g/mol\n", 1000 * derivatives.getMm());
    std::printf("rho   = %10.5f kg/m^3\n", derivatives.getRho());
    std::printf("cp    = %10.2f J/(kg K)\n", derivatives.getCp_spec());
    std::printf("gamma = %10.5f\n", derivatives.getGamma());
    std::printf("k     = %10.5f\n", derivatives.getK());
    std::printf("a     = %10.2f m/s\n\n", derivatives.getA());
}

/// The entries of the resulting mixture point to products of the working copy, so both live on
/// until the end.
void printComposition(const reaction::Equilibrium& equilibrium)
{
    const std::unique_ptr<reaction::ReactingMixture> products(
        equilibrium.copyReactingMixture(/*condensed=*/true, /*ions=*/true));
    const std::unique_ptr<thermo::Mixture> mixture(products->copyResultingMixture());
    for (int i = 0; i < mixture->size(); ++i)
        if (mixture->getMolarFraction(i) >= leastShown)
            std::printf("%-8s %10.6f\n", mixture->getSpecies(i)->getName().c_str(),
                        mixture->getMolarFraction(i));
}

void solveAndPrint()
{
    thermo::Propellant propellant = oxygenAndHydrogen();
    std::printf("O/F = %.2f, alpha = %.3f\n\n", propellant.getKm(), propellant.getAlpha());

    // Burning at constant pressure without loss of heat keeps the enthalpy.
    reaction::Equilibrium equilibrium(propellant, /*multiphase=*/true, /*ions=*/false);
    equilibrium.setPH(chamberPressure, propellant.H());
    equilibrium.solve(/*expectCondensed=*/false);

    reaction::Derivatives derivatives(&equilibrium);
    derivatives.solve(/*transport=*/false);

    printState(equilibrium, derivatives);
    printComposition(equilibrium);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string folder = argc > 1 ? argv[1] : "resources";
    try {
        loadThermodynamicsDatabase((folder + "/thermo.inp").c_str(), /*clear=*/true);
        loadPropertiesDatabase((folder + "/properties.inp").c_str());
        solveAndPrint();
    } catch (const runtime::Exception& e) {
        std::fprintf(stderr, "error %u: %s\n", e.getType(), e.getMessage());
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "error: %s\n", e.what());
        return 1;
    }
    return 0;
}
