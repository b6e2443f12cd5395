#include <ketra/thermo/Exception.h>

#include <ketra/runtime/detail/MessageTable.h>

namespace thermo {

namespace {

constexpr runtime::detail::Message messages[] = {
    // 3, 15: an atom or a source id out of sequence, without a text of their own.
    // 18: the thrower gives the name of the condensed species that made the matrix singular.
    {0, "Invalid state"},
    {1, "Invalid temperature"},
    {2, "Invalid pressure"},
    {4, "Unknown species"},
    {5, "Invalid mass fraction"},
    {6, "Invalid molar fraction"},
    {7, "Condensed species in gas mixture"},
    {8, "Could not find equilibrium"},
    {9, "Could not find chamber end conditions"},
    {10, "Could not find throat conditions"},
    {11, "Could not find nozzle section equilibrium"},
    {12, "Could not obtain thermodynamic derivatives"},
    {13, "Could not find nozzle section frozen conditions"},
    {14, "Could not solve problem"},
};

} // namespace

Exception::Exception(unsigned int code) : runtime::Exception(code, getMessage(code)) {}

Exception::Exception(unsigned int code, const char* text) : runtime::Exception(code, text) {}

const char* Exception::getMessage(unsigned int code)
{
    return runtime::detail::messageOf(messages, code);
}

} // namespace thermo
