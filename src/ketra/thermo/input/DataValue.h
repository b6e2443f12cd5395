#pragma once

#include <ketra/thermo/input/Node.h>

#include <string>
#include <type_traits>

namespace thermo::input {

/// One scalar key of the document with its default: a `double`, `bool`, `int` or `std::string`.
///
/// There is no mark for "stated": a value counts as stated when it differs from the default.
template <class T> class KETRA_API DataValue : public Node
{
    static_assert(std::is_same_v<T, int> || std::is_same_v<T, double> || std::is_same_v<T, bool> ||
                  std::is_same_v<T, std::string>);

public:
    /// Selects the type of the setting: 0 integer, 3 float, 4 boolean, 5 string.
    static constexpr int typeCode = std::is_same_v<T, int>      ? 0
                                    : std::is_same_v<T, double> ? 3
                                    : std::is_same_v<T, bool>   ? 4
                                                                : 5;

    DataValue(const char* key, const T& initial) : Node(key), defaultValue(initial), value(initial)
    {
    }
    DataValue(const std::string& key, const T& initial)
        : Node(key), defaultValue(initial), value(initial)
    {
    }

    const T& get() const { return value; }
    void set(const T& newValue) { value = newValue; }
    /// The value that the key has when the document does not state it.
    const T& getDefault() const { return defaultValue; }

    /// Takes the value if the key is there and has exactly the setting type of T. Everything else
    /// is passed over without a word: an integer literal is not a `double`.
    void read(const libconfig::Setting& parent) override;
    /// Writes the value; without \p all only if it differs from the default.
    void write(libconfig::Setting& parent, bool all) override;

private:
    T defaultValue;
    T value;
};

extern template class KETRA_API DataValue<double>;
extern template class KETRA_API DataValue<bool>;
extern template class KETRA_API DataValue<int>;
extern template class KETRA_API DataValue<std::string>;

} // namespace thermo::input
