#include <ketra/ketra.h>

#include <cmath>
#include <cstdio>

// A host with nothing but the installed library: loads the species, catches an exception of the
// library, and burns hydrogen in oxygen.

namespace {

bool catchesAnExceptionOfTheLibrary()
{
    thermo::Mixture mixture;
    try {
        mixture.addSpecies("unobtainium", 298.15, 1.0);
    } catch (const thermo::Exception& e) {
        return e.getType() == 4;
    }
    return false;
}

/// Adiabatic flame temperature of liquid oxygen and hydrogen at O/F 6 and 20 MPa, K.
double flameTemperature()
{
    thermo::Mixture mixture;
    mixture.addSpecies("O2(L)", 90.17, 6.0 / 7.0);
    mixture.addSpecies("H2(L)", 20.27, 1.0 / 7.0);
    reaction::Equilibrium problem(mixture, /*multiphase=*/true, /*ions=*/false);
    problem.setPH(20.0e6, mixture.H());
    problem.solve(/*expectCondensed=*/false);
    return problem.getT();
}

} // namespace

int main()
{
    loadThermodynamicsDatabase(KETRA_RESOURCES_DIR "/thermo.inp", true);
    if (!catchesAnExceptionOfTheLibrary()) {
        std::puts("an unknown species was not refused with thermo::Exception 4");
        return 1;
    }
    // Computed with NASA CEA from the same species data.
    constexpr double expected = 3595.42469;
    const double T = flameTemperature();
    std::printf("LOX/LH2: %.2f K\n", T);
    return std::abs(T - expected) < 1e-4 * expected ? 0 : 1;
}
