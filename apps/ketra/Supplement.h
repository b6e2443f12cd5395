#pragma once

namespace performance {
class TheoreticalPerformance;
}

namespace host {

/// Prints into the log, behind the library's report, what it does not say: what the nozzle delivers
/// at the ambient pressures of the document, and, with \p corrections, what the losses of a real
/// engine leave of the ideal one. Nothing where the document states none and asks for none.
void printSupplement(performance::TheoreticalPerformance& performance, bool english,
                     bool corrections);

} // namespace host
