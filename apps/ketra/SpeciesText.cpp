#include "SpeciesText.h"
#include "Text.h"

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Species.h>

#include <cmath>

namespace host {

const char* phaseOf(const thermo::Species& species)
{
    if (!species.isCondensed()) return "gas";
    return species.isLiquid() ? "liquid" : "solid";
}

std::string formulaOf(const thermo::Species& species)
{
    std::string formula;
    for (int i = 0; i < static_cast<int>(species.size()); ++i) {
        const thermo::ChemicalElement& element = *species[i];
        std::string symbol = thermo::ChemicalElement::getName(element.getType());
        if (symbol == "E") continue;
        if (symbol.size() > 1) symbol = symbol[0] + lowered(symbol.substr(1));
        formula += symbol;
        if (element.getNumber() != 1.0) formula += plainText(element.getNumber());
    }
    const double charge = chargeOf(species);
    if (formula.empty()) formula = charge != 0.0 ? "e" : "-";
    if (charge != 0.0) {
        const double size = std::fabs(charge);
        formula += (size == 1.0 ? "" : "^" + plainText(size)) + (charge > 0.0 ? "+" : "-");
    }
    return formula;
}

double chargeOf(const thermo::Species& species) { return 0.0 - species.getCharge(); }

bool isFixed(const thermo::Species& species)
{
    return species.getIntervalSize() == 1 && !(species.getMaximalT() > 0.0);
}

} // namespace host
