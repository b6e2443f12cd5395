#pragma once

#include "Document.h"

namespace host {

/// Holds the nozzle flow of a document against gas dynamics: sections narrower than the throat,
/// pressures that no expansion leads to, conditions that are asked for but not stated. To be run
/// after the format check has passed.
class FlowCheck
{
public:
    FlowCheck(const Document& checkedDocument, Findings& foundSoFar)
        : document(checkedDocument), findings(foundSoFar)
    {
    }
    void run();

private:
    using Setting = libconfig::Setting;

    void checkOptimum(const Setting* flow);
    void checkFreezing(const Setting& group);
    void checkSection(const Setting& group);
    void checkAmbient(const Setting& group);
    void checkEfficiencies(const Setting& group);

    /// A number that must lie above \p least, if it is stated.
    void requireAbove(const Setting& group, const char* key, double least, const char* why);
    void requirePressure(const Setting& group, const char* key, bool orZero);

    const Document& document;
    Findings& findings;
};

} // namespace host
