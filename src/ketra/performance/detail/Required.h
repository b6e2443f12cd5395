#pragma once

#include <ketra/thermo/Exception.h>

namespace performance::detail {

/// A station of a chamber that must have been solved. \throws thermo::Exception 0 if it is not
/// there
template <class Object> Object& required(Object* station)
{
    if (station == nullptr) throw thermo::Exception(0);
    return *station;
}

} // namespace performance::detail
