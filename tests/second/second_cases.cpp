// Poses cases of chemical equilibrium to the library and writes what it answers, for the comparison
// with the second solution.
//
//     second_cases SPECIES-FILE [--literal] < cases > answers
//
// A case is a line of words, molar values being for one mole of charge, SI units:
//
//     number type first second phases ions species fraction species fraction ...
//
// type is PT, PH, PS, VT, VU or VS, first the pressure or the volume in m3; phases and ions are 1
// where condensed phases or ions may form, else 0; fractions are by mole. The answer is an object
// of JSON in one line.

#include <ConstantVolume.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Mixture.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <locale>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// One case, as its line states it.
struct Case {
    std::string number, type;
    double first = 0.0;  // Pa, or m3 per mole of charge
    double second = 0.0; // K, J or J/K per mole of charge
    bool phases = true, ions = false;
    std::unique_ptr<thermo::Mixture> charge;
};

bool readCase(const std::string& line, Case& read)
{
    std::istringstream words(line);
    words.imbue(std::locale::classic());
    words >> read.number >> read.type >> read.first >> read.second >> read.phases >> read.ions;
    if (!words) return false;
    read.charge = std::make_unique<thermo::Mixture>(thermo::_Species::MOLE_FRACTION);
    std::string name;
    double fraction = 0.0;
    while (words >> name >> fraction) {
        const thermo::Species* species = thermo::Mixture::findSpecies(name);
        read.charge->addSpecies(species, species->getT0(), fraction);
    }
    return true;
}

void pose(reaction::Equilibrium& problem, const Case& given)
{
    const double v = given.first / given.charge->mm(); // m3/kg
    if (given.type == "PT") problem.setPT(given.first, given.second);
    if (given.type == "PH") problem.setPH(given.first, given.second);
    if (given.type == "PS") problem.setPS(given.first, given.second);
    if (given.type == "VT") problem.setVT(v, given.second);
    if (given.type == "VU") problem.setVU(v, given.second);
    if (given.type == "VS") problem.setVS(v, given.second);
}

void writeElements(const thermo::Mixture& charge)
{
    const std::unique_ptr<thermo::ChemicalFormula> formula(charge.copyFormula());
    std::map<std::string, double> elements;
    for (unsigned int k = 0; k < formula->size(); ++k)
        elements[thermo::ChemicalElement::getName((*formula)[k]->getType())] +=
            (*formula)[k]->getNumber();
    const char* comma = "";
    std::printf(", \"elements\": {");
    for (const auto& [name, moles] : elements) {
        std::printf("%s\"%s\": %.17g", comma, name.c_str(), moles);
        comma = ", ";
    }
    std::printf("}");
}

/// Moles of each product for one mole of charge. A blend counts as its two phases, and is named.
void writeProducts(const reaction::Equilibrium& problem)
{
    std::vector<const thermo::Species*> products;
    problem.getAllSpecies(&products, 0.0);
    std::map<std::string, double> moles;
    std::string blends;
    for (const thermo::Species* species : products) {
        const auto* product = dynamic_cast<const reaction::Product*>(species);
        const auto* transition = dynamic_cast<const reaction::TransitionProduct*>(species);
        if (transition && transition->isBlend()) {
            moles[transition->getPhase1()->getName()] += transition->phase1N();
            moles[transition->getPhase2()->getName()] += transition->phase2N();
            blends += (blends.empty() ? "\"" : ", \"") + transition->getPhase1()->getName() + "\"";
        } else if (product->n() > 0.0) {
            moles[product->getName()] += product->n();
        }
    }
    const char* comma = "";
    std::printf(", \"blends\": [%s], \"moles\": {", blends.c_str());
    for (const auto& [name, n] : moles) {
        std::printf("%s\"%s\": %.17g", comma, name.c_str(), n);
        comma = ", ";
    }
    std::printf("}");
}

/// A substance that can melt is among the products; it has no internal energy in the equations.
bool canMelt(const reaction::Equilibrium& problem)
{
    std::vector<const thermo::Species*> condensed;
    problem.getCondensedSpecies(&condensed);
    return std::any_of(condensed.begin(), condensed.end(), [](const thermo::Species* species) {
        return dynamic_cast<const reaction::TransitionProduct*>(species) != nullptr;
    });
}

std::unique_ptr<reaction::Equilibrium> problemOf(const Case& given, bool literal)
{
    auto problem = std::make_unique<reaction::Equilibrium>(*given.charge, given.phases, given.ions);
    problem->setPersistent(!literal);
    problem->setWarmStart(!literal);
    return problem;
}

/// Solves the case as it is posed, as the command line does: with a search for the temperature
/// where energy and volume are given and substances can melt.
std::unique_ptr<reaction::Equilibrium> solve(const Case& given, bool literal)
{
    auto problem = problemOf(given, literal);
    pose(*problem, given);
    const bool vessel = given.type == "VU" && !literal;
    try {
        problem->solve(/*expectCondensed=*/false);
        if (!vessel || !canMelt(*problem)) return problem;
    } catch (const runtime::Exception&) {
        if (!vessel) throw;
    }
    problem = problemOf(given, literal);
    const double mm = given.charge->mm();
    static_cast<void>(host::solveAtConstantVolume(*problem, host::Kept::ENERGY, given.first / mm,
                                                  given.second / mm,
                                                  /*calculateTransport=*/false));
    return problem;
}

void answer(const Case& given, bool literal)
{
    std::printf("{\"number\": %s", given.number.c_str());
    writeElements(*given.charge);
    try {
        const auto problem = solve(given, literal);
        std::printf(", \"T\": %.17g, \"grade\": \"%c\"", problem->getT(),
                    verification::letter(problem->certificate().grade));
        writeProducts(*problem);
    } catch (const runtime::Exception& e) {
        std::printf(", \"failure\": \"code %u\"", e.getType());
    } catch (const std::exception& e) {
        std::printf(", \"failure\": \"%s\"", e.what());
    }
    std::printf("}\n");
}

} // namespace

int main(int argc, char** argv)
{
    const bool literal = argc == 3 && std::strcmp(argv[2], "--literal") == 0;
    if (argc != 2 && !literal) {
        std::fprintf(stderr, "usage: second_cases SPECIES-FILE [--literal] < cases > answers\n");
        return 2;
    }
    thermo::ChemicalElement::initAtoms();
    thermo::Database::loadDatabase(argv[1], /*clear=*/true);
    std::string line;
    while (std::getline(std::cin, line)) {
        Case given;
        if (!readCase(line, given)) {
            std::fprintf(stderr, "second_cases: cannot read the case: %s\n", line.c_str());
            return 1;
        }
        answer(given, literal);
        std::fflush(stdout);
    }
    return 0;
}
