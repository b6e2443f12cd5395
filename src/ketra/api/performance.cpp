#include <ketra/api/ketra.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/thermo/Exception.h>

#include <memory>
#include <utility>

using performance::TheoreticalPerformance;
using performance::ThrottlingPerformance;
using performance::efficiency::CorrectionFactors;

namespace {

template <class Performance> Performance* releaseIfValid(std::unique_ptr<Performance> solved)
{
    return solved->isValid() ? solved.release() : nullptr;
}

} // namespace

TheoreticalPerformance* newPerformance(thermo::input::ConfigFile* config, bool ownsConfig)
{
    return std::make_unique<TheoreticalPerformance>(config, ownsConfig).release();
}

TheoreticalPerformance* run(thermo::input::ConfigFile* config)
try {
    auto performance = std::make_unique<TheoreticalPerformance>(config, false);
    performance->solve(/*calculateTransport=*/true);
    return releaseIfValid(std::move(performance));
} catch (const thermo::Exception&) {
    return nullptr;
}

ThrottlingPerformance* run(TheoreticalPerformance* design, double ratio, bool calculateTransport)
try {
    return releaseIfValid(
        std::make_unique<ThrottlingPerformance>(design, ratio, calculateTransport));
} catch (const thermo::Exception&) {
    return nullptr;
}

CorrectionFactors* getCorrectionFactors(TheoreticalPerformance* performance)
{
    return std::make_unique<CorrectionFactors>(performance).release();
}
