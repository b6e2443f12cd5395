#include <ketra/performance/TheoreticalPerformance.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <string>

namespace performance {

namespace {

constexpr std::size_t nameWidth = 41; // characters, field of the case name in the report

} // namespace

void TheoreticalPerformance::printHeader()
{
    // The length of the title places the name and cuts it: a case without a title shows no name.
    std::string field(nameWidth, ' ');
    if (data != nullptr) {
        const std::string name = data->getName();
        const std::string info = data->getInfo();
        const std::size_t shown = std::min(nameWidth, info.size());
        const std::size_t copied = std::min(shown, name.size());
        field.replace((nameWidth - shown) / 2, copied, name, 0, copied);
    }
    util::Log::printf("THERMO", "%sCase name:%s%s", util::eol, field.c_str(), util::eol);
    util::Log::printf("THERMO", "%s***************************************************%s",
                      util::eol, util::eol);
    util::Log::printf("THERMO", "                 Initial data%s", util::eol);
    util::Log::printf("THERMO", "***************************************************%s", util::eol);
}

void TheoreticalPerformance::printResults(unsigned int flags)
{
    printHeader();
    if (mixture) {
        util::Log::printf("THERMO", "%sPropellant:%s", util::eol, util::eol);
        mixture->print("Species", flags | thermo::Mixture::LONG_TABLE);
    }
    if (propellant) propellant->print(flags);
    if (equilibrium) equilibrium->printResults(flags);
    if (derivatives) derivatives->printResults(flags);
    if (chamber) chamber->printResults(flags);
    if (exitSection) exitSection->printResults(flags);
    if (overExpansionSection) overExpansionSection->printOverexpansionPerformance(flags);
}

} // namespace performance
