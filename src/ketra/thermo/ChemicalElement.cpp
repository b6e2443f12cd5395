#include <ketra/thermo/ChemicalElement.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/detail/AtomTable.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <iterator>

namespace thermo {

std::vector<std::unique_ptr<const Atom>> ChemicalElement::atomList;
std::map<std::string, const Atom*, std::less<>> ChemicalElement::atoms;
std::vector<Atom::TYPE> ChemicalElement::metals;
util::concurrent::CriticalSection ChemicalElement::critSection;

ChemicalElement::ChemicalElement(const std::string& symbol, double n)
    : atom(getAtom(std::string_view(symbol))), number(n)
{
}

double ChemicalElement::M(Atom::TYPE type, double n)
{
    return atomList[static_cast<std::size_t>(type)]->getWeight() * n;
}

const std::string& ChemicalElement::getName(Atom::TYPE type)
{
    return atomList[static_cast<std::size_t>(type)]->getName();
}

bool ChemicalElement::isMetal(Atom::TYPE type)
{
    return std::find(metals.begin(), metals.end(), type) != metals.end();
}

const Atom* ChemicalElement::getAtom(std::string_view symbol)
{
    const auto found = atoms.find(symbol);
    return found == atoms.end() ? nullptr : found->second;
}

void ChemicalElement::initAtoms()
{
    const util::concurrent::CriticalSection::Guard filling(critSection);
    if (atoms.empty()) {
        for (const detail::AtomRow& row : detail::atomTable) {
            addAtom(row.type, row.symbol, row.valency, row.weight);
            if (row.type == Atom::E) addAtom(Atom::E, "E-", 0, 0.0);
        }
    }
    if (metals.empty()) metals.assign(std::begin(detail::metalTable), std::end(detail::metalTable));
}

void ChemicalElement::addAtom(Atom::TYPE type, const char* symbol, int valency, double weight)
{
    if (weight > 0.0) {
        if (static_cast<std::size_t>(type) != atomList.size()) {
            util::Log::errorf("THERMO", "ChemicalElement: unknown element\n");
            throw Exception(3);
        }
        atomList.push_back(std::make_unique<const Atom>(type, symbol, valency, weight));
    }
    atoms[symbol] = atomList.back().get();
}

} // namespace thermo
