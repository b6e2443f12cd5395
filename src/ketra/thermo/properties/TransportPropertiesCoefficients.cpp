#include <ketra/thermo/properties/TransportPropertiesCoefficients.h>

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/detail/TextFile.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace thermo::properties {

using detail::slice;

namespace {

constexpr double highestLowerBound = 20000.0; // K

/// A number of a data line. Some files leave the place of an exponent's plus sign empty: "E 02".
double exponentNumber(std::string_view field)
{
    constexpr std::size_t widest = 16; // characters; a coefficient has 15
    char copy[widest];
    field = field.substr(0, widest);
    std::copy(field.begin(), field.end(), copy);
    const std::size_t letter = field.find_first_of("EeDd");
    if (letter != std::string_view::npos && letter + 1 < field.size() && copy[letter + 1] == ' ')
        copy[letter + 1] = '+';
    return detail::fortranNumber(std::string_view(copy, field.size()));
}

} // namespace

TransportPropertiesCoefficients::TransportPropertiesCoefficients(const std::string& line)
{
    load(line);
}

TransportPropertiesCoefficients::TransportPropertiesCoefficients(
    const TransportPropertiesCoefficients& other) = default;
TransportPropertiesCoefficients&
TransportPropertiesCoefficients::operator=(const TransportPropertiesCoefficients& other) = default;
TransportPropertiesCoefficients::~TransportPropertiesCoefficients() = default;

bool TransportPropertiesCoefficients::load(const std::string& line)
{
    T1 = detail::number(slice(line, 2, 11));
    if (T1 <= 0.0 || T1 > highestLowerBound) throw runtime::Exception(1);
    T2 = detail::number(slice(line, 11, 20));
    A = exponentNumber(slice(line, 20, 35));
    B = exponentNumber(slice(line, 35, 50));
    C = exponentNumber(slice(line, 50, 65));
    D = exponentNumber(slice(line, 65, 80));
    return true;
}

double TransportPropertiesCoefficients::getLogValue(double T) const
{
    if (!holds(T)) throw Exception(1);
    return A * std::log(T) + B / T + C / (T * T) + D;
}

double TransportPropertiesCoefficients::getValue(double T) const
{
    return std::exp(getLogValue(T));
}

} // namespace thermo::properties
