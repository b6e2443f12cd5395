#include <ketra/api/ketra.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/thermo/Exception.h>

#include <memory>

using performance::TheoreticalPerformance;

TheoreticalPerformance* newPerformance(thermo::input::ConfigFile* config, bool ownsConfig)
{
    return std::make_unique<TheoreticalPerformance>(config, ownsConfig).release();
}

TheoreticalPerformance* run(thermo::input::ConfigFile* config)
{
    try {
        auto performance = std::make_unique<TheoreticalPerformance>(config, false);
        performance->solve(/*calculateTransport=*/true);
        return performance->isValid() ? performance.release() : nullptr;
    } catch (const thermo::Exception&) {
        return nullptr;
    }
}
