#include <ketra/thermo/input/CombustionChamberConditions.h>

namespace thermo::input {

void CombustionChamberConditions::fields(Fields& walk) { walk.field(pressure); }

} // namespace thermo::input
