#include "Work.h"

#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Mixture.h>

namespace ketra_bench {

namespace {

/// Finds all products of the solid propellant, the charge with the most elements.
Body construct()
{
    useShippedSpecies();
    const std::shared_ptr<thermo::Mixture> mixture = charges().back().mixture();
    const auto once = [mixture] {
        const reaction::ReactingMixture products(*mixture, /*multiphase=*/true, /*ions=*/false);
        return products.elSize();
    };
    requireClose("elements of the charge", once(), 6.0, 0.0); // C H N O Cl Al
    return [once] { once(); };
}

} // namespace

std::vector<Work> mixtureWorks() { return {{"ReactingMixture/Construct", construct}}; }

} // namespace ketra_bench
