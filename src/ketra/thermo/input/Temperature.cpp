#include <ketra/thermo/input/Temperature.h>

namespace thermo::input {

namespace {

using enum TemperatureUnits::UNITS;

double fromK(double x, TemperatureUnits::UNITS to)
{
    switch (to) {
    case C:
        return x - 273.15;
    case F:
        return (x - 273.15) * 9 / 5 + 32;
    case R:
        return x * 9 / 5;
    default:
        return x;
    }
}

double fromC(double x, TemperatureUnits::UNITS to)
{
    switch (to) {
    case C:
        return x;
    case F:
        return x * 9 / 5 + 32;
    case R:
        return (x + 273.15) * 9 / 5;
    default:
        return x + 273.15;
    }
}

double fromF(double x, TemperatureUnits::UNITS to)
{
    switch (to) {
    case C:
        return (x - 32) * 5 / 9;
    case F:
        return x;
    case R:
        return x + 459.67;
    default:
        return (x - 32) * 5 / 9 + 273.15;
    }
}

double fromR(double x, TemperatureUnits::UNITS to)
{
    switch (to) {
    case C:
        return (x - 491.67) * 5 / 9;
    case F:
        return x - 459.67;
    case R:
        return x;
    default:
        return x * 5 / 9;
    }
}

} // namespace

// Each pair of scales has its own formula: a detour over the kelvin would cost digits.
double TemperatureUnits::convert(double x, UNITS from, UNITS to)
{
    switch (from) {
    case C:
        return fromC(x, to);
    case F:
        return fromF(x, to);
    case R:
        return fromR(x, to);
    default:
        return fromK(x, to);
    }
}

void Temperature::write(libconfig::Setting& parent, bool all)
{
    if (getValue() > 0.0) UnitValue::write(parent, all);
}

} // namespace thermo::input
