#include <ketra/reaction/detail/MainSpecies.h>

#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Exception.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace reaction::detail {

namespace {

constexpr std::size_t mostGases = 35;
constexpr std::size_t fewestOfElement = 3;

struct Gas {
    Product* product;
    double atoms; // in one molecule
    double G;     // G/(R T)
};

double atomsOf(const Product& product, unsigned int elements)
{
    double atoms = 0.0;
    for (unsigned int i = 0; i < elements; ++i) atoms += std::abs(product.a(i));
    return atoms;
}

} // namespace

// Stability is the Gibbs energy of formation per atom from the most stable gas of each element. Of
// the atoms and molecules of one element all count as stable: they are what is left when one
// element is in excess.
std::vector<Product*> mainGases(const ReactingMixture& mixture, double T)
{
    const unsigned int m = mixture.elSize();
    std::vector<Gas> gases;
    for (unsigned int j = 0; j < mixture.gasSize(); ++j) {
        Product* product = mixture.product(j);
        if (product->isIon() || product->getMinimalT() > T || product->getMaximalT() < T) continue;
        try {
            gases.push_back({product, atomsOf(*product, m), product->G0_tilde(T)});
        } catch (const thermo::Exception&) {
            continue;
        }
    }
    std::vector<double> element(m, std::numeric_limits<double>::infinity()); // G of one atom
    const auto isElement = [&](const Gas& gas, unsigned int i) {
        return gas.product->a(i) == gas.atoms;
    };
    for (const Gas& gas : gases)
        for (unsigned int i = 0; i < m; ++i)
            if (isElement(gas, i)) element[i] = std::min(element[i], gas.G / gas.atoms);
    for (Gas& gas : gases) {
        for (unsigned int i = 0; i < m; ++i)
            if (gas.product->a(i) != 0.0 && std::isfinite(element[i]))
                gas.G -= gas.product->a(i) * element[i];
        gas.G /= gas.atoms;
    }
    std::stable_sort(gases.begin(), gases.end(),
                     [](const Gas& left, const Gas& right) { return left.G < right.G; });

    std::vector<Product*> chosen;
    const auto choose = [&](const Gas& gas) {
        if (std::find(chosen.begin(), chosen.end(), gas.product) == chosen.end())
            chosen.push_back(gas.product);
    };
    for (unsigned int i = 0; i < m; ++i) {
        std::size_t count = 0;
        for (const Gas& gas : gases) {
            if (isElement(gas, i)) choose(gas);
            if (gas.product->a(i) == 0.0 || count == fewestOfElement) continue;
            choose(gas);
            ++count;
        }
    }
    for (const Gas& gas : gases)
        if (chosen.size() < mostGases) choose(gas);
    return chosen;
}

} // namespace reaction::detail
