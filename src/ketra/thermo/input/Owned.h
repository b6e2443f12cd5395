#pragma once

#include <ketra/thermo/input/OptionalNode.h>

#include <memory>

namespace thermo::input {

/// An owned member of a section that may be absent and is handed over as a whole. Copies are deep.
template <class T> class Owned
{
public:
    Owned() = default;
    Owned(const Owned& other) : member(other.member ? std::make_unique<T>(*other.member) : nullptr)
    {
    }
    Owned(Owned&&) noexcept = default;
    Owned& operator=(const Owned& other)
    {
        Owned copy(other);
        member.swap(copy.member);
        return *this;
    }
    Owned& operator=(Owned&&) noexcept = default;
    ~Owned() = default;

    bool isSet() const { return member != nullptr; }
    /// Takes ownership of \p given, which replaces the present member; null makes it absent.
    void set(T* given)
    {
        if (given != member.get()) member.reset(given);
    }
    void set(std::unique_ptr<T> given) { member = std::move(given); }
    void reset() noexcept { member.reset(); }

    /// The member; \p what says in the log what could not be obtained.
    /// \throws Exception 2 while the member is absent
    const T& at(const char* what) const
    {
        if (!member) OptionalNode::failAbsent(what);
        return *member;
    }
    T& at(const char* what)
    {
        if (!member) OptionalNode::failAbsent(what);
        return *member;
    }
    /// The member, or null while it is absent. The member stays this object's.
    T* find() { return member.get(); }

private:
    std::unique_ptr<T> member;
};

/// Makes every one of \p members absent.
template <class... T> void clear(Owned<T>&... members) { (members.reset(), ...); }

} // namespace thermo::input
