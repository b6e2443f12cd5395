#pragma once

#include <vector>

namespace reaction {

class Product;
class ReactingMixture;

namespace detail {

/// The gases of the present list that carry the elements: of each element the most stable ones, a
/// few dozen at most. A problem solved with them alone has a start that no energetic trace spoils.
/// \param T  temperature at which the stability counts, K
std::vector<Product*> mainGases(const ReactingMixture& mixture, double T);

} // namespace detail
} // namespace reaction
