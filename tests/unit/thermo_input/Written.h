#pragma once

#include <ketra/thermo/input/Element.h>

#include <unit/thermo_input/Settings.h>

#include <string>
#include <type_traits>
#include <vector>

namespace ketra_test {

using Keys = std::vector<std::string>;

/// The keys of a group in their order.
inline Keys keysOf(const libconfig::Setting& group)
{
    Keys keys;
    for (int i = 0; i < group.getLength(); ++i) keys.emplace_back(group[i].getName());
    return keys;
}

/// What a section writes, and the group in which its members stand.
class Written
{
public:
    template <class S> Written(S section, bool all)
    {
        section.write(settings.root(), all);
        if constexpr (!std::is_base_of_v<thermo::input::Element, S>) key = section.getName();
    }
    libconfig::Setting& group()
    {
        return key.empty() ? settings.root() : settings.root()[key.c_str()];
    }

private:
    Settings settings;
    std::string key;
};

} // namespace ketra_test
