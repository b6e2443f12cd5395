#pragma once

#include "Table.h"

namespace host {

// Columns of the tables: a name, and the units of the quantity in both systems.

Column plainColumn(const std::string& name, int decimals);
Column pressureColumn(const std::string& name);
Column velocityColumn(const std::string& name);
Column temperatureColumn(const std::string& name);
Column densityColumn(const std::string& name);
Column massFluxColumn(const std::string& name);
Column molarMassColumn(const std::string& name);

} // namespace host
