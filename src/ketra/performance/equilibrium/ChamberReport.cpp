#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/util/Log.h>

namespace performance::equilibrium {

using reaction::Derivatives;
using reaction::Equilibrium;
using util::eol;
using util::Log;

namespace {

void printStation(const char* title, const Equilibrium* problem, const Derivatives* derivatives,
                  unsigned int flags)
{
    if (!problem || !derivatives) return; // not solved
    Log::printf("THERMO", "%s***************************************************%s", eol, eol);
    Log::printf("THERMO", "%s%s", title, eol);
    Log::printf("THERMO", "***************************************************%s", eol);
    problem->printResults(flags);
    derivatives->printResults(flags);
}

} // namespace

void Chamber::printResults(unsigned int flags) const
{
    printStation("                Combustion chamber", getReaction(), getDerivatives(), flags);
    if (endKind == End::OWN)
        printStation("              Combustion chamber end", end.problem.get(),
                     end.derivatives.get(), flags);
    printStation("                      Throat", throatStation.problem.get(),
                 throatStation.derivatives.get(), flags);
}

void Chamber::printBlcResults(unsigned int flags) const
{
    printStation("                Combustion chamber (BLC)", layer.problem.get(),
                 layer.derivatives.get(), flags);
    if (layerEndKind == End::OWN)
        printStation("              Combustion chamber end (BLC)", layerEnd.problem.get(),
                     layerEnd.derivatives.get(), flags);
    printStation("                      Throat (BLC)", layerThroat.problem.get(),
                 layerThroat.derivatives.get(), flags);
}

} // namespace performance::equilibrium
