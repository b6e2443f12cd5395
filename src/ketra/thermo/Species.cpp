#include <ketra/thermo/Species.h>

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Loader.h>
#include <ketra/thermo/properties/TransportProperties.h>

namespace thermo {

namespace {

template <class T> std::unique_ptr<T> copyOf(const std::unique_ptr<T>& object)
{
    return object ? std::make_unique<T>(*object) : nullptr;
}

} // namespace

Loader::~Loader() = default;

Species::Data::Data() = default;

Species::Data::Data(const Data& other)
    : formula(other.formula), cp(copyOf(other.cp)), rho(copyOf(other.rho)), mu(copyOf(other.mu)),
      lambda(copyOf(other.lambda)), ts(copyOf(other.ts)), qs(copyOf(other.qs)),
      transport(copyOf(other.transport))
{
    for (const auto& [name, pair] : other.interactions) interactions[name] = copyOf(pair);
    intervals.reserve(other.intervals.size());
    for (const auto& interval : other.intervals) intervals.emplace_back(interval->getCopy());
}

Species::Data::~Data() = default;

Species::Species() : data(new Data) {}

Species::Species(const Species& other) = default;

Species& Species::operator=(const Species& other)
{
    if (this == &other) return *this;
    std::unique_ptr<Data> copy(other.data.isOwner() ? new Data(*other.data) : nullptr);
    name = other.name;
    descr = other.descr;
    ref = other.ref;
    type = other.type;
    condensed = other.condensed;
    liquid = other.liquid;
    charge = other.charge;
    dHf298_15 = other.dHf298_15;
    dH298_15_0 = other.dH298_15_0;
    M = other.M;
    sourceId = other.sourceId;
    modified = other.modified;
    tableSourceId = other.tableSourceId;
    tableModified = other.tableModified;
    if (copy)
        data.reset(copy.release());
    else if (other.data.get() != data.get()) // else it shares what this object owns already
        data.borrow(other.data.get());
    return *this;
}

Species::~Species() = default;

Species::Data& Species::own()
{
    if (!data.isOwner()) data.reset(new Data(*data));
    return *data;
}

void Species::setType(int id)
{
    if (type != -1) throw Exception(4);
    type = id;
}

void Species::setFormula(const ChemicalFormula* formula)
{
    ChemicalFormula copy(*formula);
    own().formula = std::move(copy);
    charge = 0.0;
    for (int i = 0; i < size(); ++i)
        if (get(i)->getType() == Atom::E) charge += get(i)->getNumber();
    modified = true;
}

ChemicalFormula* Species::copyFormula() const { return new ChemicalFormula(data->formula); }

double Species::getValence() const
{
    double sum = 0.0;
    for (int i = 0; i < size(); ++i) sum += get(i)->getValence();
    return sum;
}

void Species::setM(double molarMass)
{
    M = molarMass;
    modified = true;
}

void Species::setCondensed(int phase)
{
    condensed = phase;
    modified = true;
}

void Species::setDHf298_15(double enthalpy)
{
    dHf298_15 = enthalpy;
    modified = true;
}

void Species::setDH298_15_0(double enthalpy)
{
    dH298_15_0 = enthalpy;
    modified = true;
}

void Species::addInterval(Polynomial* interval)
{
    std::unique_ptr<Polynomial> owned(interval);
    own().intervals.push_back(std::move(owned));
}

void Species::removeIntervals() { own().intervals.clear(); }

void Species::setSourceId(int id)
{
    if (sourceId != -1) throw Exception(15);
    sourceId = id;
}

void Species::setTableSourceId(int id)
{
    if (tableSourceId != -1) throw Exception(15);
    tableSourceId = id;
}

void Species::resetIds()
{
    type = -1;
    resetSourceIds();
}

void Species::resetSourceIds()
{
    sourceId = -1;
    tableSourceId = -1;
}

bool Species::operator<(const Species* other) const
{
    const int phase = getCondensed();
    const int otherPhase = other->getCondensed();
    return phase != otherPhase ? phase < otherPhase : name < other->name;
}

bool Species::operator>(const Species* other) const
{
    const int phase = getCondensed();
    const int otherPhase = other->getCondensed();
    return phase != otherPhase ? phase > otherPhase : name > other->name;
}

void Species::writeTo(std::string&, int) const {}

void Species::writeToAsJSON(std::string&, int) const {}

} // namespace thermo
