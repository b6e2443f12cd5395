#include <ketra/thermo/Mixture.h>

#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/util/Log.h>
#include <ketra/util/String.h>

#include <algorithm>
#include <array>
#include <cstddef>

using util::eol;
using util::Log;

namespace thermo {

namespace {

/// The name of the crystal without its modification, "Fe(cr)" for "Fe(a)"; empty if the name does
/// not end like a modification.
std::string crystalName(const std::string& name)
{
    constexpr std::array endings{"I)", "V)", "a)", "b)", "c)"};
    const bool labelled = std::any_of(endings.begin(), endings.end(), [&](const char* ending) {
        return util::String::endsWith(name, ending);
    });
    if (!labelled) return "";
    std::string crystal = name;
    util::String::replaceFirst(crystal, "(.*)\\([IVabc]+\\)$", "$1(cr)");
    return crystal;
}

} // namespace

const Species* Mixture::findSpecies(const std::string& name)
{
    Database& database = *Database::getInstance();
    if (const Species* found = database.find(name)) return found;
    const std::string crystal = crystalName(name);
    if (const Species* found = crystal.empty() ? nullptr : database.find(crystal)) {
        Log::warnf("THERMO", "Unknown species \"%s\". Replacing with \"%s\".%s", name.c_str(),
                   found->getName().c_str(), eol);
        return found;
    }
    Log::errorf("THERMO", "Unknown species \"%s\". Please check propellant specification.%s",
                name.c_str(), eol);
    throw Exception(4);
}

const Species* Mixture::append(std::unique_ptr<_Species> added)
{
    fractionsChecked = false;
    entries.push_back(std::move(added));
    return entries.back()->species;
}

_Species::FractionType Mixture::type() const
{
    return massBased ? _Species::MASS_FRACTION : _Species::MOLE_FRACTION;
}

const Species* Mixture::addSpecies(const Species* added)
{
    return append(std::unique_ptr<_Species>(new _Species(added)));
}

const Species* Mixture::addSpecies(const Species* added, double f)
{
    return append(std::unique_ptr<_Species>(new _Species(added, f, type())));
}

const Species* Mixture::addSpecies(const Species* added, double T, double f)
{
    return append(std::unique_ptr<_Species>(new _Species(added, T, f, type())));
}

const Species* Mixture::addSpecies(const Species* added, double T, double p, double f)
{
    return addSpecies(added, T, p, f, /*check=*/true);
}

const Species* Mixture::addSpecies(const Species* added, double T, double p, double f, bool check)
{
    return append(std::unique_ptr<_Species>(new _Species(added, T, p, f, type(), check)));
}

const Species* Mixture::addSpecies(const std::string& name)
{
    return addSpecies(findSpecies(name));
}

const Species* Mixture::addSpecies(const std::string& name, double f)
{
    return addSpecies(findSpecies(name), f);
}

const Species* Mixture::addSpecies(const std::string& name, double T, double f)
{
    return addSpecies(findSpecies(name), T, f);
}

const Species* Mixture::addSpecies(const std::string& name, double T, double p, double f)
{
    return addSpecies(findSpecies(name), T, p, f);
}

_Species* Mixture::findEntry(const _Species& like, bool ignoreT) const
{
    // Only exactly the same temperature makes two entries one.
    for (const auto& e : entries)
        if (*e == &like && (ignoreT || e->T == like.T)) return e.get();
    return nullptr;
}

void Mixture::scaleGiven(double factor) const
{
    for (const auto& e : entries) given(*e) *= factor;
}

void Mixture::addMixture(Mixture& other, double w, bool ignoreT)
{
    if (fractionsChecked) {
        scaleGiven(1 - w);
        fractionsChecked = false;
    }
    other.checkFractions(true);
    const std::size_t count = other.entries.size(); // a mixture may be added to itself
    for (std::size_t i = 0; i < count; ++i) {
        const _Species& e = *other.entries[i];
        const double share = (massBased ? e.g : e.r) * w;
        if (_Species* same = findEntry(e, ignoreT)) {
            given(*same) += share;
            fractionsChecked = false;
            continue;
        }
        try {
            addSpecies(e.species, e.T, e.p, share, /*check=*/false);
        } catch (const Exception& failure) {
            throw Exception(failure.getType());
        }
    }
}

void Mixture::addMixture(Mixture& other, double w)
{
    // The mark of checked fractions stays: a merge without new entries counts as checked.
    if (fractionsChecked) scaleGiven(1 - w);
    other.checkFractions(true);
    const std::size_t count = other.entries.size();
    for (std::size_t i = 0; i < count; ++i) {
        const _Species& e = *other.entries[i];
        const double share = (massBased ? e.g : e.r) * w;
        if (_Species* same = findEntry(e, /*ignoreT=*/false))
            given(*same) += share;
        else
            addSpecies(e.species->getName(), e.T, e.p, share);
    }
}

unsigned int Mixture::replaceSpecies(const std::string& oldName, const std::string& newName)
{
    const Species* replacement = findSpecies(newName);
    const auto old = std::find_if(entries.begin(), entries.end(), [&](const auto& e) {
        return e->species && e->species->getName() == oldName;
    });
    if (old == entries.end()) throw Exception(4, "Unknown species");
    old->reset(new _Species(replacement, (*old)->T, given(**old), type()));
    fractionsChecked = false;
    return static_cast<unsigned int>(old - entries.begin());
}

void Mixture::removeIons()
{
    const auto isIon = [](const auto& e) { return e->species->isIon(); };
    if (std::erase_if(entries, isIon) > 0) fractionsChecked = false;
    checkFractions(true);
}

void Mixture::removeCondensed(double T)
{
    for (auto e = entries.begin(); e != entries.end();) {
        const Species& s = *(*e)->species;
        if (!s.isCondensed()) {
            ++e;
            continue;
        }
        try {
            s.getT(T);
        } catch (const Exception&) {
            e = entries.erase(e);
            fractionsChecked = false;
        }
    }
    checkFractions(true);
}

} // namespace thermo
