#include <ketra/thermo/nasa9/NASA9Species.h>
#include <ketra/util/detail/Format.h>

#include <algorithm>
#include <string>

namespace thermo::nasa9 {

namespace {

using util::detail::format;

constexpr double lightest = 0.01; // g/mol; a molar mass up to this is written with 12 decimals
// The exponents that all functions assume, and that of the integration constants.
constexpr const char* exponents = "[-2.0, -1.0, 0.0, 1.0, 2.0, 3.0, 4.0, 0.0]";

std::string head(const Species& s)
{
    // Quotes of the description would end its text.
    std::string descr = s.getDescr();
    std::replace(descr.begin(), descr.end(), '"', '\'');
    return format(" {\n  'name':\"%s\", 'descr':\"%s\", 'ref':'%s',\n", s.getName().c_str(),
                  descr.c_str(), s.getRef().c_str());
}

std::string elements(const Species& s)
{
    std::string text = "  'elements':[\n";
    for (int i = 0; i < s.size(); ++i)
        text += format("    {'name':'%s', 'number':%.3f}%s\n",
                       ChemicalElement::getName(s[i]->getType()).c_str(), s[i]->getNumber(),
                       i + 1 < s.size() ? "," : "");
    return text + "  ],\n";
}

std::string values(const Species& s)
{
    const std::string mass =
        s.getM() > lightest ? format("%.7f", s.getM()) : format("%.12f", s.getM());
    return format("  'condensed':%d, 'M':%s, 'dHf298_15':%.5f, 'dH298_15_0':%.5f,\n",
                  s.getCondensed(), mass.c_str(), s.getDHf298_15(), s.getDH298_15_0());
}

std::string interval(const Polynomial& p)
{
    std::string text = format("    {'T1':%.3f, 'T2':%.3f, 'exp':%s,\n     'coefficients':[",
                              p.getT1(), p.getT2(), exponents);
    for (int k = 0; k < 7; ++k) text += format("%16.9E, ", p.getA(k));
    return text + format("%16.9E, %16.9E]}", p.getB(0), p.getB(1));
}

} // namespace

void NASA9Species::writeToAsJSON(std::string& out, int fileSourceId) const
{
    if (fileSourceId >= 0 && fileSourceId != sourceId) return;
    out += head(*this) + elements(*this) + values(*this) + "  'intervals':[";
    if (isFixedTemperature()) {
        // Its readers look for this value behind the list, with the decimals of the species file.
        out += format("],\n  'dH298_15_0':%.3f\n", dH298_15_0);
    } else {
        out += '\n';
        const auto count = static_cast<unsigned int>(getIntervalSize());
        for (unsigned int i = 0; i < count; ++i)
            out += interval(*getInterval(i)) + (i + 1 < count ? ",\n" : "\n");
        out += "  ]\n";
    }
    out += " }";
}

} // namespace thermo::nasa9
