#pragma once

#include "Station.h"

#include <nlohmann/json.hpp>

namespace host {

using Json = nlohmann::ordered_json; // keys stay in the order of writing

/// State and composition of a station, how the gas flows there, and with \p transport its transport
/// properties; SI units. Null for what is not known there.
Json stationResults(const Station& station, bool transport);

/// Name, phase and fractions of the entries of a mixture, the most plentiful first.
Json compositionOf(const thermo::Mixture& mixture);

/// Name and unit of every number of a station, by group.
Json stationLegend();

} // namespace host
