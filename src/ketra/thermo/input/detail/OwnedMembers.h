#pragma once

#include <ketra/thermo/input/Owned.h>

#include <memory>

namespace thermo::input::detail {

/// Puts a new member, made of \p makings and read from \p group, in place of the present one, which
/// stays if the group cannot be read.
template <class T, class... Makings>
void readOwned(const libconfig::Setting& group, Owned<T>& member, const Makings&... makings)
{
    auto read = std::make_unique<T>(makings...);
    read->read(group);
    member.set(std::move(read));
}

/// Writes the member into \p group, if there is one.
template <class T> void writeOwned(libconfig::Setting& group, Owned<T>& member, bool all)
{
    if (member.isSet()) member.find()->write(group, all);
}

} // namespace thermo::input::detail
