#include <ketra/reaction/Equilibrium.h>

#include <ketra/report/Table.h>

namespace reaction {

namespace {

constexpr const char* processTitles[] = {
    "Process type: (p=const, H=const)", // PH
    "Process type: (p=const, S=const)", // PS
    "Process type: (p=const, T=const)", // PT
    "Process type: (v=const, U=const)", // VU
    "Process type: (v=const, S=const)", // VS
    "Process type: (v=const, T=const)", // VT
};

} // namespace

void Equilibrium::printResults(unsigned int flags) const
{
    const report::Table table(flags);
    table.title(processTitles[processType]);
    table.title("Combustion composition:");
    const std::unique_ptr<thermo::Mixture> products(mixture->copyResultingMixture());
    products->print("Product", flags);

    table.heading("Combustion parameters:");
    table.rule();
    table.row("Temperature", report::temperature(T));
    if (table.english()) table.more(report::fahrenheit(T));
    if (isConstantPressure())
        table.row("Pressure", report::pressure(p));
    else
        table.row("Specific volume", report::specificVolume(v));
    table.row3("Enthalpy", report::molarEnergy(H));
    table.more3(report::specificEnergy(Hspec));
    table.row3("Entropy", report::molarEntropy(S));
    table.more3(report::specificEntropy(Sspec));
    table.row3("Internal energy", report::molarEnergy(U));
    table.more3(report::specificEnergy(Uspec));
    table.row3("Gibbs energy", report::molarEnergy(G));
    table.more3(report::specificEnergy(Gspec));
}

} // namespace reaction
