#include <ketra/gasdynamics/StandardAtmosphere.h>

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

namespace {

constexpr double seaLevel = 101325.0; // Pa

StandardAtmosphere at(double h)
{
    StandardAtmosphere atmosphere;
    atmosphere.setAltitude(h);
    return atmosphere;
}

/// Geometric altitude of a geopotential one.
double geometric(double z) { return z * 6369000.0 / (6369000.0 - z); }

TEST(StandardAtmosphere, BeginsAtSeaLevel)
{
    static_assert(!std::is_polymorphic_v<StandardAtmosphere>);
    const StandardAtmosphere fresh;
    const StandardAtmosphere set = at(0.0);
    for (const StandardAtmosphere* atmosphere : {&fresh, &set}) {
        EXPECT_EQ(atmosphere->getAltitude(), 0.0);
        EXPECT_EQ(atmosphere->getDensityRatio(), 1.0);
        EXPECT_EQ(atmosphere->getPressureRatio(), 1.0);
        EXPECT_EQ(atmosphere->getTemperatureRatio(), 1.0);
        EXPECT_EQ(atmosphere->getTemperature(), 298.15);
        EXPECT_EQ(atmosphere->getPressure(), 101325.0);
        EXPECT_EQ(atmosphere->getDensity(), 0.001225054);
        EXPECT_EQ(atmosphere->getSpeedOfSound(), 340.29396);
        EXPECT_EQ(atmosphere->getMaxAltitude(), 86000.0);
    }
}

TEST(StandardAtmosphere, HasEightLayers)
{
    const double h[] = {0, 11000, 20000, 32000, 47000, 51000, 71000, 84852};
    const double T[] = {288.15, 216.65, 216.65, 228.65, 270.65, 270.65, 214.65, 186.946};
    const double p[] = {1.0,
                        0.223361105092158,
                        0.05403295010784876,
                        0.008566678359291667,
                        0.0010945601337771145,
                        0.0006606353132858367,
                        3.904683373343926e-05,
                        3.6850095235747942e-06};
    const double g[] = {-0.0065, 0, 0.001, 0.0028, 0, -0.0028, -0.002, 0};
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(StandardAtmosphere::htab[i], h[i]);
        EXPECT_EQ(StandardAtmosphere::ttab[i], T[i]);
        EXPECT_EQ(StandardAtmosphere::ptab[i], p[i]);
        EXPECT_EQ(StandardAtmosphere::gtab[i], g[i]);
    }
    EXPECT_EQ(sizeof StandardAtmosphere::htab / sizeof(double), 8U);
    EXPECT_EQ(sizeof StandardAtmosphere::ttab / sizeof(double), 8U);
    EXPECT_EQ(sizeof StandardAtmosphere::ptab / sizeof(double), 8U);
    EXPECT_EQ(sizeof StandardAtmosphere::gtab / sizeof(double), 8U);
}

// U.S. Standard Atmosphere, 1976, table I: temperature and pressure at geometric altitudes, m.
TEST(StandardAtmosphere, AgreesWithThePublishedTable)
{
    struct Row {
        double h, T, p; // m, K, Pa
    };
    const Row rows[] = {
        {1000, 281.651, 8.9876e4},  {5000, 255.676, 5.4048e4},  {10000, 223.252, 2.6499e4},
        {15000, 216.650, 1.2111e4}, {20000, 216.650, 5.5293e3}, {30000, 226.509, 1.1970e3},
        {40000, 250.350, 2.8714e2}, {50000, 270.650, 7.9779e1}, {60000, 247.021, 2.1958e1},
        {70000, 219.585, 5.2209},   {80000, 198.639, 1.0524}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.h);
        const StandardAtmosphere atmosphere = at(row.h);
        // The earth's radius is 6,369 km here and 6,356.766 km there: up to 0.3 m in altitude at
        // 30 km and 2 m at 80 km, with an atmosphere that falls by e in 6 to 8 km.
        EXPECT_NEAR(atmosphere.getTemperatureRatio() * 288.15 / row.T, 1.0, 5e-5);
        EXPECT_NEAR(atmosphere.getPressure() / row.p, 1.0, 4e-4);
        // The temperature read out is counted from 298.15 K.
        EXPECT_NEAR(atmosphere.getTemperature() / row.T, 298.15 / 288.15, 6e-5);
        EXPECT_NEAR(atmosphere.getSpeedOfSound() / std::sqrt(1.4 * 287.053 * row.T), 1.0, 1e-4);
        EXPECT_NEAR(atmosphere.getDensity() * 1000.0 / (row.p / (287.053 * row.T)), 1.0, 5e-4);
        EXPECT_EQ(atmosphere.getAltitude(), row.h);
    }
}

// The table of the pressures and the exponents of the layers agree to 2e-6 each.
TEST(StandardAtmosphere, IsContinuousAcrossItsLayers)
{
    for (int i = 1; i < 8; ++i) {
        SCOPED_TRACE(i);
        const double h = geometric(StandardAtmosphere::htab[i]);
        const StandardAtmosphere below = at(h - 1e-6);
        const StandardAtmosphere above = at(h + 1e-6);
        EXPECT_NEAR(below.getPressureRatio() / above.getPressureRatio(), 1.0, 1e-5);
        EXPECT_NEAR(below.getTemperatureRatio() / above.getTemperatureRatio(), 1.0, 1e-5);
        EXPECT_NEAR(below.getDensityRatio() / above.getDensityRatio(), 1.0, 2e-5);
        EXPECT_NEAR(above.getPressureRatio() / StandardAtmosphere::ptab[i], 1.0, 1e-7);
    }
}

TEST(StandardAtmosphere, GoesOnAboveAndBelowItsLayers)
{
    // The layer that begins at 71,000 m is the last: beyond 84,852 m it goes on to cool.
    const double z = 90000.0 * 6369000.0 / (90000.0 + 6369000.0);
    const double T = 214.65 - 0.002 * (z - 71000.0);
    const StandardAtmosphere high = at(90000.0);
    EXPECT_EQ(high.getAltitude(), 90000.0);
    EXPECT_NEAR(high.getTemperatureRatio(), T / 288.15, 1e-14);
    EXPECT_NEAR(high.getPressureRatio() /
                    (3.904683373343926e-05 * std::pow(214.65 / T, 0.034163195 / -0.002)),
                1.0, 1e-12);
    EXPECT_EQ(high.getMaxAltitude(), 86000.0);
    EXPECT_EQ(high.getDensityRatio(), high.getPressureRatio() / high.getTemperatureRatio());

    const double deep = -400.0 * 6369000.0 / (-400.0 + 6369000.0); // the Dead Sea
    const StandardAtmosphere low = at(-400.0);
    EXPECT_NEAR(low.getTemperatureRatio(), (288.15 - 0.0065 * deep) / 288.15, 1e-15);
    EXPECT_GT(low.getPressureRatio(), 1.04);
}

TEST(StandardAtmosphere, FindsTheAltitudeOfAPressure)
{
    // The bracket closes to 1e-4 of the pressure and holds it.
    for (double p = 0.41; p < 0.998 * seaLevel; p *= 1.01) {
        SCOPED_TRACE(p);
        const double h = StandardAtmosphere::getAltitudeForPressure(p);
        EXPECT_NEAR(at(h).getPressure() / p, 1.0, 1e-4);
        EXPECT_GE(at(h).getPressure(), p); // the lower end of the bracket
    }
}

TEST(StandardAtmosphere, CallsAPressureWithinATenthOfAPercentSeaLevel)
{
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(101325.0), 0.0);
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(101400.0), 0.0);
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(seaLevel / 1.00099), 0.0);
    EXPECT_GT(StandardAtmosphere::getAltitudeForPressure(seaLevel / 1.0012), 0.0);
}

TEST(StandardAtmosphere, KeepsToItsRange)
{
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(0.3), 86000.0);
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(0.39999), 86000.0);
    EXPECT_LT(StandardAtmosphere::getAltitudeForPressure(0.4), 86000.0);
    EXPECT_GT(StandardAtmosphere::getAltitudeForPressure(0.4), 85500.0);
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(0.0), 86000.0);
    // Above sea level's the first pass shuts the bracket at 0.
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(101500.0), 0.0);
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(2e5), 0.0);
    EXPECT_EQ(StandardAtmosphere::getAltitudeForPressure(7e6), 0.0);
}

} // namespace
