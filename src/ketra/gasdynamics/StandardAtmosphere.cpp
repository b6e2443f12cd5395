#include <ketra/gasdynamics/StandardAtmosphere.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double earthRadius = 6369000.0;       // m
constexpr double hydrostatic = 0.034163195;     // g M / R of air, K/m
constexpr double maxAltitude = 86000.0;         // m
constexpr double seaLevelTemperature = 298.15;  // K, of the printed temperature alone
constexpr double seaLevelPressure = 101325.0;   // Pa
constexpr double seaLevelDensity = 0.001225054; // g/cm3
constexpr double seaLevelSound = 340.29396;     // m/s

constexpr double leastPressure = 0.4;      // Pa, just above that at the highest altitude
constexpr double seaLevelBand = 0.001;     // of the pressure, taken for sea level
constexpr double pressureTolerance = 1e-4; // width of the closed bracket over the pressure
constexpr double sectionFraction = 0.382;  // of the bracket, cut off in one step: golden section

// The layer of a geopotential altitude; the first and the last go on without end.
int layerAt(double z)
{
    int i = 0;
    int j = 7;
    do {
        const int k = (i + j) / 2;
        if (z < StandardAtmosphere::htab[k])
            j = k;
        else
            i = k;
    } while (j > i + 1);
    return i;
}

} // namespace

// clang-format off
const double StandardAtmosphere::htab[8] = {
    0, 11000, 20000, 32000, 47000, 51000, 71000, 84852};
const double StandardAtmosphere::ttab[8] = {
    288.15, 216.65, 216.65, 228.65, 270.65, 270.65, 214.65, 186.946};
const double StandardAtmosphere::ptab[8] = {
    1.0,
    0.223361105092158,
    0.05403295010784876,
    0.008566678359291667,
    0.0010945601337771145,
    0.0006606353132858367,
    3.904683373343926e-05,
    3.6850095235747942e-06};
const double StandardAtmosphere::gtab[8] = {
    -0.0065, 0, 0.001, 0.0028, 0, -0.0028, -0.002, 0};
// clang-format on

StandardAtmosphere::StandardAtmosphere()
    : altitude(0.0), densityRatio(1.0), pressureRatio(1.0), temperatureRatio(1.0)
{
}

void StandardAtmosphere::setAltitude(double h)
{
    altitude = h;
    const double z = h * earthRadius / (h + earthRadius); // geopotential
    const int layer = layerAt(z);
    const double dz = z - htab[layer];
    const double gradient = gtab[layer];
    const double baseT = ttab[layer];
    const double T = baseT + gradient * dz;

    temperatureRatio = T / ttab[0];
    pressureRatio = gradient == 0.0 ? ptab[layer] * std::exp(-hydrostatic * dz / baseT)
                                    : ptab[layer] * std::pow(baseT / T, hydrostatic / gradient);
    densityRatio = pressureRatio / temperatureRatio;
}

double StandardAtmosphere::getTemperature() const { return temperatureRatio * seaLevelTemperature; }

double StandardAtmosphere::getPressure() const { return pressureRatio * seaLevelPressure; }

double StandardAtmosphere::getDensity() const { return densityRatio * seaLevelDensity; }

double StandardAtmosphere::getSpeedOfSound() const
{
    return std::sqrt(temperatureRatio) * seaLevelSound;
}

double StandardAtmosphere::getMaxAltitude() const { return maxAltitude; }

double StandardAtmosphere::getAltitudeForPressure(double p)
{
    const double overSeaLevel = seaLevelPressure / p;
    if (overSeaLevel > 1 - seaLevelBand && overSeaLevel < 1 + seaLevelBand) return 0.0;
    if (p < leastPressure) return maxAltitude;

    double low = 0.0;
    double high = maxAltitude;
    StandardAtmosphere atLow;
    StandardAtmosphere atHigh;
    atLow.setAltitude(low);
    atHigh.setAltitude(high);
    while (std::fabs(atHigh.getPressure() - atLow.getPressure()) / p > pressureTolerance) {
        const double pLow = atLow.getPressure();
        const double pHigh = atHigh.getPressure();
        if (p > pLow) { // the altitude lies below the bracket
            high = std::min(high, low);
            low = 0.0;
        } else if (pHigh > p) { // above it
            low = std::max(low, high);
            high = maxAltitude;
        } else if ((pHigh - p) / p > (p - pLow) / p) // nearer to the pressure at the upper end
            low += (high - low) * sectionFraction;
        else
            high -= (high - low) * sectionFraction;
        atLow.setAltitude(low);
        atHigh.setAltitude(high);
    }
    return low;
}
