#include <ketra/thermo/input/FilmSlot.h>

namespace thermo::input {

void FilmSlot::fields(Fields& walk) { walk.each(location, coolant, mdot); }

} // namespace thermo::input
