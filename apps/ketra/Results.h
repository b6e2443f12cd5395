#pragma once

#include "Certificate.h"

#include <string>

namespace performance {
class TheoreticalPerformance;
}
namespace thermo {
class Mixture;
}

namespace host {

// Results for programs, as JSON: SI units throughout, each named; numbers in full precision, null
// for one that is not finite or not known. \throws thermo::Exception if a result cannot be had.

/// The head of every results file: program, document, and what the document states.
Json resultsHead(performance::TheoreticalPerformance& performance, const std::string& document);

/// The stations of a solved problem by name, null for one that it does not have; a problem without
/// nozzle flow has a chamber only.
Json stationsOf(performance::TheoreticalPerformance& performance, bool transport);

/// What belongs to the engine as a whole: characteristic velocity, separation, corrections and
/// delivered values. Null without nozzle flow.
Json engineOf(performance::TheoreticalPerformance& performance);

/// The entries of a sample.
Json reactantsOf(const thermo::Mixture& mixture);

/// What the numbers of all results are, and their units.
Json resultsLegend();

/// The text of a results file.
std::string textOf(const Json& results);

/// All results of a solved problem.
Json resultsOf(performance::TheoreticalPerformance& performance, const std::string& document,
               const Certificate& certificate, bool transport);

} // namespace host
