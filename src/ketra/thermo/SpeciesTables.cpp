#include <ketra/thermo/Species.h>

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>

namespace thermo {

using math::interpolation::Interpolation;
using math::interpolation::Interpolation2D;

namespace {

constexpr double integrationStep = 0.1;          // K, of the enthalpy integral
constexpr double lnPressureAtReference = 0.0001; // ln(p/1e5) below which pressure adds nothing
constexpr double pascalsPerMPa = 1.0e6;

bool holdsT(const Interpolation2D* table, double T)
{
    return table != nullptr && table->getMinX() <= T && T <= table->getMaxX();
}

bool holdsP(const Interpolation2D* table, double p)
{
    return table != nullptr && table->getMinY() <= p && p <= table->getMaxY();
}

bool holds(const Interpolation* table, double x)
{
    return table != nullptr && table->getMinX() <= x && x <= table->getMaxX();
}

double clampedP(const Interpolation2D& table, double p)
{
    return std::clamp(p, table.getMinY(), table.getMaxY());
}

double lookUp(const Interpolation2D* table, double T, double p, bool clampPressure)
{
    if (table == nullptr) throw Exception(1);
    if (clampPressure) p = clampedP(*table, p);
    if (!holdsP(table, p) || !holdsT(table, T)) throw Exception(1);
    return table->bilinearInterpolation(T, p);
}

double lookUp(const Interpolation* table, double x)
{
    if (table == nullptr) throw Exception(1);
    return table->linearInterpolation(std::clamp(x, table->getMinX(), table->getMaxX()));
}

/// Puts a table into its place unless it stands there already.
template <class Table> void replace(std::unique_ptr<Table>& place, Table* table)
{
    if (table != place.get()) place.reset(table);
}

} // namespace

// clang-format off
void Species::setCpTable(Interpolation2D* table)     { replace(own().cp, table);     tableModified = true; }
void Species::setRhoTable(Interpolation2D* table)    { replace(own().rho, table);    tableModified = true; }
void Species::setMuTable(Interpolation2D* table)     { replace(own().mu, table);     tableModified = true; }
void Species::setLambdaTable(Interpolation2D* table) { replace(own().lambda, table); tableModified = true; }
void Species::setTsTable(Interpolation* table)       { replace(own().ts, table);     tableModified = true; }
void Species::setQsTable(Interpolation* table)       { replace(own().qs, table);     tableModified = true; }

void Species::removeCpTable()     { own().cp.reset();     tableModified = true; }
void Species::removeRhoTable()    { own().rho.reset();    tableModified = true; }
void Species::removeMuTable()     { own().mu.reset();     tableModified = true; }
void Species::removeLambdaTable() { own().lambda.reset(); tableModified = true; }
void Species::removeTsTable()     { own().ts.reset();     tableModified = true; }
void Species::removeQsTable()     { own().qs.reset();     tableModified = true; }

bool Species::checkCpTable(double T) const     { return holdsT(data->cp.get(), T); }
bool Species::checkRhoTable(double T) const    { return holdsT(data->rho.get(), T); }
bool Species::checkMuTable(double T) const     { return holdsT(data->mu.get(), T); }
bool Species::checkLambdaTable(double T) const { return holdsT(data->lambda.get(), T); }
bool Species::checkTsTable(double p) const     { return holds(data->ts.get(), p); }
bool Species::checkQsTable(double Ts) const    { return holds(data->qs.get(), Ts); }
// clang-format on

bool Species::checkCpTable(double T, double p, bool anyPressure) const
{
    return checkCpTable(T) && (anyPressure || holdsP(data->cp.get(), p));
}

bool Species::checkRhoTable(double T, double p, bool anyPressure) const
{
    return checkRhoTable(T) && (anyPressure || holdsP(data->rho.get(), p));
}

bool Species::checkMuTable(double T, double p, bool anyPressure) const
{
    return checkMuTable(T) && (anyPressure || holdsP(data->mu.get(), p));
}

bool Species::checkLambdaTable(double T, double p, bool anyPressure) const
{
    return checkLambdaTable(T) && (anyPressure || holdsP(data->lambda.get(), p));
}

double Species::getP(double p) const
{
    if (holdsP(data->cp.get(), p) || holdsP(data->rho.get(), p)) return p;
    throw Exception(2);
}

double Species::getInterpolatedCp(double T, double p, bool clampPressure) const
{
    return lookUp(data->cp.get(), T, p, clampPressure);
}

double Species::getInterpolatedRho(double T, double p, bool clampPressure) const
{
    return lookUp(data->rho.get(), T, p, clampPressure);
}

double Species::getInterpolatedMu(double T, double p, bool clampPressure) const
{
    return lookUp(data->mu.get(), T, p, clampPressure);
}

double Species::getInterpolatedLambda(double T, double p, bool clampPressure) const
{
    return lookUp(data->lambda.get(), T, p, clampPressure);
}

double Species::getInterpolatedTs(double p) const { return lookUp(data->ts.get(), p); }

double Species::getInterpolatedQs(double Ts) const { return lookUp(data->qs.get(), Ts); }

double Species::getDeltaH_Cp(double T1, double T2, double p) const
{
    const Interpolation2D* const table = data->cp.get();
    if (std::fabs(T1 - T2) < integrationStep || table == nullptr) return 0.0;
    if (!holdsP(table, p)) p = standardPressure;
    if (!holdsT(table, T1) || !holdsT(table, T2)) {
        util::Log::warnf("THERMO",
                         "Could not calculate temperature-caused enthalpy addition for given "
                         "temperature and pressure: %7.4fK %7.4fMPa\n",
                         T2, p / pascalsPerMPa);
        return 0.0;
    }
    // A table may lie above the standard pressure altogether; then its nearest pressure counts.
    const auto Cp = [&](double T) { return getInterpolatedCp(T, p, /*clampPressure=*/true); };

    const double h = T2 > T1 ? integrationStep : -integrationStep;
    const auto beforeEnd = [&](double T) { return h > 0.0 ? T < T2 : T > T2; };
    double s = h;
    double x = T1 + h;
    double c = Cp(T1);
    double sum = 0.0;
    // The integral ends at the last grid point before T2, and every trapezoid has the full width.
    while (beforeEnd(x)) {
        const double c2 = Cp(x);
        sum += (c + c2) * h / 2.0;
        c = c2;
        if (!beforeEnd(x + s)) s = T2 - x;
        x += s;
    }
    return sum;
}

double Species::getDeltaH_rho(double T1, double T, double p) const
{
    const double L = std::log(p / referencePressure);
    if (!(L >= lnPressureAtReference)) return 0.0;
    if (!isCondensed()) return T * gasConstant * L;
    if (!isLiquid()) return 0.0;

    const double pMPa = p / pascalsPerMPa;
    const Interpolation2D* const table = data->rho.get();
    if (!holdsT(table, T1)) {
        util::Log::warnf("THERMO",
                         "%s: could not calculate pressure-caused enthalpy addition for given "
                         "temperature and pressure: %7.4fK %7.4fMPa\n",
                         name.c_str(), T, pMPa);
        return 0.0;
    }
    const double M1 = getM() / 1000.0; // kg/mol
    const double P = clampedP(*table, p);
    const bool moved = P != p;
    const double work = (p - referencePressure) * M1; // J/mol per 1/rho
    const double rho1 = getInterpolatedRho(T1, P, /*clampPressure=*/false);
    if (holdsT(table, T)) {
        if (moved)
            util::Log::warnf("THERMO",
                             "%s: using density at pressure %7.4f MPa while calculating "
                             "pressure-caused enthalpy addition for temperature and pressure "
                             "%7.4fK %7.4fMPa\n",
                             name.c_str(), P / pascalsPerMPa, T, pMPa);
        return 2.0 * work / (rho1 + getInterpolatedRho(T, P, /*clampPressure=*/false));
    }
    if (moved)
        util::Log::warnf("THERMO",
                         "%s: using density at temperature %7.4fK and pressure %7.4f MPa while "
                         "calculating pressure-caused enthalpy addition for temperature and "
                         "pressure %7.4fK %7.4fMPa\n",
                         name.c_str(), T1, P / pascalsPerMPa, T, pMPa);
    else
        util::Log::warnf("THERMO",
                         "%s: using density at temperature %7.4fK %7.4f MPa while calculating "
                         "pressure-caused enthalpy addition for temperature and pressure "
                         "%7.4fK %7.4fMPa\n",
                         name.c_str(), T1, pMPa, T, pMPa);
    return work / rho1;
}

} // namespace thermo
