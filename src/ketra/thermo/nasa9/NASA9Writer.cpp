#include <ketra/thermo/detail/Columns.h>
#include <ketra/thermo/nasa9/NASA9Species.h>
#include <ketra/util/detail/Format.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace thermo::nasa9 {

namespace {

constexpr std::size_t lineWidth = 80;
constexpr int elementFields = 5;
// The exponents that all functions assume; the eighth is never used.
constexpr double exponents[] = {-2.0, -1.0, 0.0, 1.0, 2.0, 3.0, 4.0, 0.0};
constexpr double lightest = 0.01; // g/mol; a molar mass up to this is written with 12 decimals

void writeNumber(detail::Columns& line, double number)
{
    if (std::fabs(number) < 100.0)
        line.number(6, 6, "a number of atoms", "%6.3f", number);
    else
        line.number(6, 6, "a number of atoms", "%6.2f", number);
}

void writeMolarMass(detail::Columns& line, double M)
{
    if (M <= lightest) {
        // Without the leading 0 the twelve decimals fit the column.
        const std::string text = util::detail::format("%14.12f", M);
        line.number(13, 13, "the molar mass", "%s", text.c_str() + (text[0] == '0' ? 1 : 0));
    } else {
        line.number(13, 13, "the molar mass", "%13.7f", M);
    }
}

void writeCoefficient(detail::Columns& line, std::string& out, double value)
{
    const std::size_t begin = out.size();
    line.number(16, 16, "a coefficient", "%# 16.9E", value);
    std::replace(out.begin() + static_cast<std::ptrdiff_t>(begin), out.end(), 'E', 'D');
}

void writeRange(detail::Columns& line, const Polynomial& interval, bool fixed, double dH298_15_0)
{
    line.number(11, 11, "a lower temperature", "%11.3f", interval.getT1());
    line.number(11, 11, "an upper temperature", "%11.3f", interval.getT2());
    line.number(1, 1, "the number of coefficients", "%1d", fixed ? 0 : 7);
    for (const double exponent : exponents)
        line.number(5, 5, "an exponent", "%5.1f", fixed ? 0.0 : exponent);
    line.text(2, "");
    line.number(15, 15, "H(298.15) - H(0)", "%15.3f", dH298_15_0);
    line.endLine(lineWidth);
}

} // namespace

void NASA9Species::writeTo(std::string& out, int fileSourceId) const
{
    if (fileSourceId >= 0 && fileSourceId != sourceId) return;
    const bool fixed = isFixedTemperature();
    detail::Columns line(out, name);
    line.text(16, name);
    line.text(2, "");
    line.text(62, descr);
    line.endLine(lineWidth);

    line.number(2, 2, "the number of intervals", "%2d", fixed ? 0 : getIntervalSize());
    line.text(1, "");
    line.text(6, ref);
    line.text(1, "");
    for (int i = 0; i < elementFields; ++i) {
        line.text(2, i < size() ? ChemicalElement::getName(get(i)->getType()) : "");
        if (i < size())
            writeNumber(line, get(i)->getNumber());
        else
            line.number(6, 6, "a number of atoms", "%6.2f", 0.0);
    }
    line.number(2, 2, "the phase", "%2d", condensed);
    writeMolarMass(line, M);
    line.number(15, 15, "the heat of formation", "%15.5f", dHf298_15);
    line.endLine(lineWidth);

    for (int i = 0; i < getIntervalSize(); ++i) {
        const Polynomial& interval = *getInterval(static_cast<unsigned int>(i));
        writeRange(line, interval, fixed, dH298_15_0);
        if (fixed) break;
        for (int k = 0; k < 5; ++k) writeCoefficient(line, out, interval.getA(k));
        line.endLine(lineWidth);
        for (int k = 5; k < 7; ++k) writeCoefficient(line, out, interval.getA(k));
        line.text(16, "");
        for (int k = 0; k < 2; ++k) writeCoefficient(line, out, interval.getB(k));
        line.endLine(lineWidth);
    }
}

} // namespace thermo::nasa9
