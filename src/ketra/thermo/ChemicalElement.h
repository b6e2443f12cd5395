#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Atom.h>
#include <ketra/util/concurrent/CriticalSection.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace thermo {

/// One term of a chemical formula: an atom and how many of it. The number may be fractional, as in
/// the formula of air, or negative, as that of the electron in a positive ion.
///
/// The class also holds the table of atoms. initAtoms() fills it once per process; afterwards it is
/// only read and needs no lock.
class KETRA_API ChemicalElement
{
public:
    ChemicalElement(const Atom* elementAtom, double n) : atom(elementAtom), number(n) {}
    explicit ChemicalElement(const ChemicalElement* other)
        : atom(other->atom), number(other->number)
    {
    }
    /// The atom of \p other with a number of its own.
    ChemicalElement(const ChemicalElement* other, double n) : atom(other->atom), number(n) {}
    /// Looks the symbol up; the caller has made sure with isValid() that it exists.
    ChemicalElement(const std::string& symbol, double n);

    Atom::TYPE getType() const { return atom->getType(); }
    double getNumber() const { return number; }
    void setNumber(double n) { number = n; }
    void addNumber(double n) { number += n; }

    /// Weight of this term, g per mole of the formula.
    double M() const { return atom->getWeight() * number; }
    /// Atomic weight, g/mol.
    double am() const { return atom->getWeight(); }
    /// Oxidation number times the number of atoms.
    double getValence() const { return atom->getValency() * number; }
    bool isMetal() const { return isMetal(atom->getType()); }

    /// True for two terms of the same atom; the numbers do not matter.
    bool operator==(const ChemicalElement& other) const { return getType() == other.getType(); }

    /// Weight of \p n atoms of a row, g/mol.
    static double M(Atom::TYPE type, double n);
    /// The symbol of a row, in upper case.
    static const std::string& getName(Atom::TYPE type);
    static bool isMetal(Atom::TYPE type);
    /// True if the symbol exists. Exact match: symbols are in upper case.
    static bool isValid(const std::string& symbol) { return getAtom(std::string_view(symbol)); }
    static bool isValid(const char* symbol) { return getAtom(std::string_view(symbol)); }
    /// The atom of a symbol, null if there is none.
    static const Atom* getAtom(const char* symbol) { return getAtom(std::string_view(symbol)); }
    static const Atom* getAtom(std::string_view symbol);

    /// Fills the table of atoms. To be called before anything works on elements; may be called
    /// again and by several threads at once.
    static void initAtoms();

protected:
    /// Appends a row, or with a weight of 0 makes \p symbol an alias of the last row.
    /// \throws thermo::Exception 3 if the row does not come in sequence.
    static void addAtom(Atom::TYPE type, const char* symbol, int valency, double weight);

    static std::vector<std::unique_ptr<const Atom>> atomList;     // indexed by Atom::TYPE
    static std::map<std::string, const Atom*, std::less<>> atoms; // by symbol, alias included
    static std::vector<Atom::TYPE> metals;
    static util::concurrent::CriticalSection critSection; // guards the filling

private:
    const Atom* atom; // a row of the table
    double number;
};

} // namespace thermo
