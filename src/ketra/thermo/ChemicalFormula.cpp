#include <ketra/thermo/ChemicalFormula.h>

#include <utility>

namespace thermo {

namespace {

/// Numbers of atoms that differ by less than 1 count as equal.
bool sameTerm(const ChemicalElement& a, const ChemicalElement& b)
{
    const double difference = a.getNumber() - b.getNumber();
    return a == b && difference > -1.0 && difference < 1.0;
}

} // namespace

ChemicalFormula::ChemicalFormula(const ChemicalFormula& other) : ChemicalFormula(other.elements) {}

ChemicalFormula::ChemicalFormula(const std::vector<ChemicalElement*>& others)
{
    terms.reserve(others.size());
    elements.reserve(others.size());
    for (const ChemicalElement* term : others) append(std::make_unique<ChemicalElement>(term));
}

ChemicalFormula& ChemicalFormula::operator=(const ChemicalFormula& other)
{
    if (this != &other) {
        ChemicalFormula copy(other);
        terms.swap(copy.terms);
        elements.swap(copy.elements);
    }
    return *this;
}

ChemicalFormula::~ChemicalFormula() = default;

void ChemicalFormula::append(std::unique_ptr<ChemicalElement> term)
{
    elements.reserve(elements.size() + 1);
    terms.push_back(std::move(term));
    elements.push_back(terms.back().get());
}

ChemicalElement* ChemicalFormula::findTerm(const ChemicalElement& element) const
{
    for (ChemicalElement* term : elements)
        if (*term == element) return term;
    return nullptr;
}

void ChemicalFormula::add(const ChemicalElement* element) { add(element, element->getNumber()); }

void ChemicalFormula::add(const ChemicalElement* element, double n)
{
    if (ChemicalElement* term = findTerm(*element))
        term->addNumber(n);
    else
        append(std::make_unique<ChemicalElement>(element, n));
}

void ChemicalFormula::add(const ChemicalFormula& other, double factor)
{
    const std::size_t count = other.elements.size(); // other may be this formula itself
    for (std::size_t i = 0; i < count; ++i)
        add(other.elements[i], other.elements[i]->getNumber() * factor);
}

bool ChemicalFormula::operator==(const std::vector<ChemicalElement*>& others) const
{
    if (elements.size() != others.size()) return false;
    for (std::size_t i = 0; i < others.size(); ++i)
        if (!sameTerm(*elements[i], *others[i])) return false;
    return true;
}

} // namespace thermo
