#include <ketra/thermo/input/GeneralOptions.h>

namespace thermo::input {

void GeneralOptions::fields(Fields& walk) { walk.each(multiphase, ions, flowSeparation); }

} // namespace thermo::input
