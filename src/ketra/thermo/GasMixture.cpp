#include <ketra/thermo/GasMixture.h>

#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace thermo {

GasMixture::GasMixture(double newT, double newP, _Species::FractionType type)
    : Mixture(type), T(newT), p(newP)
{
}

GasMixture::~GasMixture() = default;

void GasMixture::checkFractions() const
{
    if (areFractionsChecked()) return;
    Mixture::checkFractions(/*correct=*/false);
    for (int i = 0; i < size(); ++i) {
        const Species& species = *getSpecies(i);
        if (!species.isCondensed()) continue;
        util::Log::errorf("THERMO", "Condensed species %s in gas mixture%s",
                          species.getName().c_str(), util::eol);
        throw Exception(7, "Condensed species in gas mixture");
    }
}

double GasMixture::rho() const { return mm() * p / (T * gasConstant); }

double GasMixture::R() const { return gasConstant / mm(); }

double GasMixture::Cp0() const
{
    checkFractions();
    double Cp = 0.0;
    for (int i = 0; i < size(); ++i) Cp += _getSpecies(i).getR() * getSpecies(i)->Cp0(T);
    return Cp;
}

double GasMixture::Cv0() const { return Cp0() - gasConstant; }

double GasMixture::k() const
{
    const double Cp = Cp0();
    return Cp / (Cp - gasConstant);
}

/// a^2 = k R T / Mm
double GasMixture::a() const { return std::sqrt(k() * (gasConstant / mm()) * T); }

} // namespace thermo
