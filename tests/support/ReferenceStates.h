#pragma once

#include <support/Reactants.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/ChemicalFormula.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// The published equilibrium states of tests/validation/data, and how far the library is from them.

namespace ketra_test {

/// One state of the reference, SI units, M and MW in g/mol. A NaN was not computed.
struct ReferenceState {
    int station;
    std::string place;
    std::string problem; // TP, HP, TV, UV or SP
    bool twoPhase;       // liquid and solid of one substance at their melting point
    double p, T, rho, h, u, g, s, M, MW, cp, gamma, a;
    double given; // internal energy of a UV problem, J/kg
    struct Fraction {
        std::string species;
        bool condensed;
        double x;
    };
    std::vector<Fraction> composition; // mole fractions above 1e-6
};

/// One charge and its states.
struct ReferenceCase {
    std::string id;
    bool ions = false;
    std::vector<Reactant> reactants; // by mass
    std::vector<ReferenceState> states;

    bool holds(const std::string& name) const
    {
        for (const Reactant& reactant : reactants)
            if (reactant.name == name) return true;
        return false;
    }
};

/// The rows of a file of the reference: fields between semicolons, without comments and the header.
inline std::vector<std::vector<std::string>> referenceRows(const std::string& file)
{
    std::ifstream in(KETRA_SOURCE_DIR "/tests/validation/data/" + file);
    if (!in) throw std::runtime_error("no reference file " + file);
    std::vector<std::vector<std::string>> rows;
    bool header = true;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (header) {
            header = false;
            continue;
        }
        std::vector<std::string> fields;
        std::stringstream text(line);
        for (std::string field; std::getline(text, field, ';');) fields.push_back(field);
        if (line.back() == ';') fields.emplace_back();
        rows.push_back(std::move(fields));
    }
    return rows;
}

inline double numberOf(const std::string& field)
{
    return field.empty() ? std::numeric_limits<double>::quiet_NaN() : std::stod(field);
}

inline std::vector<ReferenceCase> readReferenceCases()
{
    std::vector<ReferenceCase> cases;
    std::map<std::string, std::size_t> index;
    for (const auto& row : referenceRows("mixtures.csv")) {
        if (!index.count(row.at(0))) {
            index[row[0]] = cases.size();
            cases.emplace_back().id = row[0];
        }
        ReferenceCase& c = cases[index[row[0]]];
        c.ions = row.at(1) == "1";
        c.reactants.push_back({row.at(2), numberOf(row.at(4)), numberOf(row.at(3))});
    }
    for (const auto& row : referenceRows("states.csv")) {
        const auto number = [&](std::size_t i) { return numberOf(row.at(i)); };
        cases.at(index.at(row.at(0)))
            .states.push_back({std::stoi(row.at(1)),
                               row.at(2),
                               row.at(3),
                               row.at(4) == "1",
                               number(5),
                               number(6),
                               number(7),
                               number(8),
                               number(9),
                               number(10),
                               number(11),
                               number(12),
                               number(13),
                               number(14),
                               number(15),
                               number(16),
                               number(17),
                               {}});
    }
    for (const auto& row : referenceRows("compositions.csv"))
        for (ReferenceState& state : cases.at(index.at(row.at(0))).states)
            if (state.station == std::stoi(row.at(1)))
                state.composition.push_back({row.at(2), row.at(3) == "1", numberOf(row.at(4))});
    return cases;
}

inline const std::vector<ReferenceCase>& referenceCases()
{
    static const std::vector<ReferenceCase> cases = readReferenceCases();
    return cases;
}

/// Adds the binder of the fifth example problem of RP-1311, which no species file holds: a formula
/// and its enthalpy at 298.15 K.
inline void addBinder()
{
    thermo::Database& database = *thermo::Database::getInstance();
    if (database.find("CHOS-Binder")) return;
    thermo::ChemicalFormula formula;
    double M = 0.0;
    for (const auto& [symbol, number] : {std::pair("C", 1.0), std::pair("H", 1.86955),
                                         std::pair("O", 0.031256), std::pair("S", 0.008415)}) {
        const thermo::ChemicalElement element(symbol, number);
        formula.add(&element);
        M += element.M();
    }
    std::string line = "CHOS-Binder       polymer of carbon, hydrogen, oxygen and sulphur";
    auto binder = std::make_unique<thermo::nasa9::NASA9Species>(line, /*reactantOnly=*/true,
                                                                /*withPolynomial=*/true);
    binder->setFormula(&formula);
    binder->setM(M);
    binder->setCondensed(1);
    binder->setDHf298_15(-12548.159088);
    binder->getInterval(0)->setT1(298.15);
    database.addNewSpecies(binder.release());
}

inline std::unique_ptr<thermo::Mixture> chargeOf(const ReferenceCase& c)
{
    useShippedSpecies();
    if (c.holds("CHOS-Binder")) addBinder();
    return mixtureOf(c.reactants);
}

/// A state as the library finds it.
struct FoundState {
    double p, T, rho, h, u, s, M, MW, cp, gamma, a;
    std::map<std::string, double> composition;
    bool transition = false; // a condensed product stands for a phase near its phase change
    bool blend = false;      // and it is a blend of two phases
    verification::EquilibriumCertificate certificate;
};

/// The type of the problem that a state was posed as.
inline reaction::Equilibrium::PROCESS_TYPE typeOf(const ReferenceState& state)
{
    using reaction::Equilibrium;
    if (state.problem == "TP") return Equilibrium::PT;
    if (state.problem == "HP") return Equilibrium::PH;
    if (state.problem == "SP") return Equilibrium::PS;
    if (state.problem == "TV") return Equilibrium::VT;
    if (state.problem == "UV") return Equilibrium::VU;
    throw std::runtime_error("unknown problem " + state.problem);
}

/// Solves a state as a problem of any type. As the reference posed it (\p own), the enthalpy is
/// that of the charge; otherwise all targets are those of the row.
inline FoundState findState(const ReferenceCase& c, const ReferenceState& state,
                            reaction::Equilibrium::PROCESS_TYPE type, bool own)
{
    using reaction::Equilibrium;
    const auto charge = chargeOf(c);
    Equilibrium problem(*charge, true, c.ions);
    const double v = 1.0 / state.rho;
    switch (type) {
    case Equilibrium::PT:
        problem.setPT(state.p, state.T);
        break;
    case Equilibrium::PH:
        if (own)
            problem.setPH(state.p, charge->H());
        else
            problem.setPHspec(state.p, state.h);
        break;
    case Equilibrium::PS:
        problem.setPSspec(state.p, state.s);
        break;
    case Equilibrium::VT:
        problem.setVT(v, state.T);
        break;
    case Equilibrium::VU:
        problem.setVUspec(v, own ? state.given : state.u);
        break;
    case Equilibrium::VS:
        problem.setVSspec(v, state.s);
        break;
    }
    problem.solve(false);

    FoundState found{};
    found.certificate = problem.certificate();
    std::vector<const thermo::Species*> condensed;
    problem.getCondensedSpecies(&condensed);
    for (const thermo::Species* species : condensed) {
        const auto* transition = dynamic_cast<const reaction::TransitionProduct*>(species);
        found.transition = found.transition || transition;
        found.blend = found.blend || (transition && transition->isBlend());
    }
    const std::unique_ptr<reaction::ReactingMixture> products(
        problem.copyReactingMixture(true, true));
    const std::unique_ptr<thermo::Mixture> resulting(products->copyResultingMixture());
    for (int i = 0; i < resulting->size(); ++i)
        found.composition[resulting->getSpecies(i)->getName()] = resulting->getMolarFraction(i);

    found.T = problem.getT();
    found.h = problem.getHspec();
    found.u = problem.getUspec();
    found.s = problem.getSspec();
    reaction::Derivatives derivatives(&problem);
    derivatives.solve(false);
    found.rho = derivatives.getRho();
    found.M = derivatives.getM();
    found.MW = derivatives.getMm() * 1000.0;
    found.cp = derivatives.getCp_spec();
    found.gamma = derivatives.getK();
    found.a = derivatives.getA();
    // At given volume the pressure is that of the gas in it: rho is per kg of the whole.
    found.p = type <= Equilibrium::PT ? problem.getP()
                                      : found.rho * 8.314472 * found.T / (found.M / 1000.0);
    return found;
}

/// How far one quantity is from the reference, and how far it may be.
struct Deviation {
    std::string quantity;
    double value;
    double limit;
};

/// The name of a condensed substance without its phase.
inline std::string substanceOf(const std::string& species)
{
    return species.substr(0, species.find('('));
}

/// All comparable deviations of a state. The limits: what CEA's tight figures and ours can agree
/// to. Air is stated in the two programs by formulas of different digits. Where a blend of two
/// phases is present, a band of temperature stands in place of the melting point.
inline std::vector<Deviation> deviationsOf(const ReferenceCase& c, const ReferenceState& state,
                                           const FoundState& found)
{
    std::vector<Deviation> all;
    const auto relative = [&](const char* quantity, double value, double reference, double limit) {
        if (!std::isnan(reference))
            all.push_back({quantity, std::abs(value / reference - 1.0), limit});
    };
    double worst = 0.0;
    if (found.blend || state.twoPhase) {
        relative("T", found.T, state.T, 2e-2);
        std::map<std::string, double> expected, present;
        for (const auto& fraction : state.composition)
            expected[fraction.condensed ? substanceOf(fraction.species) + "(condensed)"
                                        : fraction.species] += fraction.x;
        for (const auto& [name, x] : found.composition) {
            const std::string whole = substanceOf(name) + "(condensed)";
            present[expected.count(whole) && !expected.count(name) && name != substanceOf(name)
                        ? whole
                        : name] += x;
        }
        for (const auto& [name, x] : expected) worst = std::max(worst, std::abs(present[name] - x));
        all.push_back({"x", worst, 1e-2});
        return all;
    }
    const bool air = c.holds("Air");
    relative("T", found.T, state.T, air ? 5e-5 : 2e-5);
    relative("p", found.p, state.p, air ? 5e-5 : 2e-5);
    relative("rho", found.rho, state.rho, air ? 5e-5 : 2e-5);
    relative("M", found.M, state.M, air ? 3e-5 : 1e-5);
    relative("MW", found.MW, state.MW, air ? 3e-5 : 1e-5);
    relative("cp", found.cp, state.cp, air ? 3e-4 : 1e-4);
    relative("gamma_s", found.gamma, state.gamma, air ? 3e-5 : 1e-5);
    relative("a", found.a, state.a, air ? 5e-5 : 2e-5);
    // Energies against the heat content of the products: h itself passes through 0.
    const double scale = state.cp * state.T;
    all.push_back(
        {"h", std::abs(found.h - state.h) / (std::abs(state.h) + scale), air ? 1e-4 : 2e-5});
    if (!found.transition)
        all.push_back(
            {"u", std::abs(found.u - state.u) / (std::abs(state.u) + scale), air ? 1e-4 : 2e-5});
    relative("s", found.s, state.s, air ? 5e-5 : 2e-5);
    std::map<std::string, double> missing = found.composition;
    for (const auto& fraction : state.composition) {
        worst = std::max(worst, std::abs(found.composition.count(fraction.species)
                                             ? found.composition.at(fraction.species) - fraction.x
                                             : fraction.x));
        missing.erase(fraction.species);
    }
    for (const auto& [name, x] : missing) worst = std::max(worst, x); // below 1e-6 in the reference
    all.push_back({"x", worst, air ? 2e-5 : 1e-5});
    return all;
}

} // namespace ketra_test
