#pragma once

#include <string>

namespace performance {
class TheoreticalPerformance;
}

namespace host {

/// The results of a solved problem as JSON text: what was given, the state of the products, their
/// composition. SI units throughout, each named; numbers in full precision, null for one that is
/// not finite. \throws thermo::Exception if a result cannot be had
std::string resultsAsJson(performance::TheoreticalPerformance& performance,
                          const std::string& document);

} // namespace host
