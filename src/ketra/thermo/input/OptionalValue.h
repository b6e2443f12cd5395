#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Optional.h>

namespace thermo::input {

/// A scalar key that may be absent, and the words with which the log tells that it is.
template <class T> class KETRA_API OptionalValue : public Optional<DataValue<T>>
{
public:
    /// \p absent says what could not be obtained from an absent member.
    OptionalValue(const char* key, const T& initialValue, const char* absent)
        : Optional<DataValue<T>>(key, initialValue), what(absent)
    {
    }

    /// \throws Exception 2 while the member is absent
    const T& get() const { return this->at(what).get(); }
    /// The value, or \p otherwise while the member is absent.
    T getOr(const T& otherwise) const { return this->isSet() ? get() : otherwise; }
    /// Brings the member up if it is absent.
    void set(const T& value) { this->create().set(value); }

private:
    const char* what;
};

} // namespace thermo::input
