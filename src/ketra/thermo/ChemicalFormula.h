#pragma once

#include <ketra/export.h>
#include <ketra/thermo/ChemicalElement.h>

#include <memory>
#include <vector>

namespace thermo {

/// A chemical formula: an ordered list of terms, which the formula owns. Copies are deep.
class KETRA_API ChemicalFormula
{
public:
    ChemicalFormula() = default;
    ChemicalFormula(const ChemicalFormula& other);
    explicit ChemicalFormula(const std::vector<ChemicalElement*>& others);
    ChemicalFormula& operator=(const ChemicalFormula& other);
    ChemicalFormula(ChemicalFormula&&) noexcept = default;
    ChemicalFormula& operator=(ChemicalFormula&&) noexcept = default;
    virtual ~ChemicalFormula();

    /// The list of terms; it and the terms stay the formula's.
    const std::vector<ChemicalElement*>* getElements() const { return &elements; }
    unsigned int size() const { return static_cast<unsigned int>(elements.size()); }
    /// The i-th term, unchecked.
    ChemicalElement* operator[](unsigned int i) const { return elements[i]; }

    /// Adds the number of \p element to the term of its atom, or appends a copy of it.
    void add(const ChemicalElement* element);
    /// Adds \p n atoms of the kind of \p element, whose own number does not matter.
    void add(const ChemicalElement* element, double n);
    /// Adds \p factor times another formula, term by term.
    void add(const ChemicalFormula& other, double factor);

    /// Appends a term and takes ownership of it, without looking for one of the same atom: the
    /// terms of a file stay as they stand there.
    void append(std::unique_ptr<ChemicalElement> term);

    /// True if the terms agree one by one in list order: the same atoms, and numbers that differ by
    /// less than 1. The order matters, C 1 H 4 is not H 4 C 1.
    bool operator==(const std::vector<ChemicalElement*>& others) const;
    bool operator==(const ChemicalFormula& other) const { return *this == other.elements; }

private:
    ChemicalElement* findTerm(const ChemicalElement& element) const;

    std::vector<std::unique_ptr<ChemicalElement>> terms; // owns what the list shows
    std::vector<ChemicalElement*> elements;
};

} // namespace thermo
