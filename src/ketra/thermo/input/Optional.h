#pragma once

#include <ketra/thermo/input/OptionalNode.h>

#include <optional>
#include <utility>

namespace thermo::input {

/// An owned member of a section that may be absent. Presence is its meaning: the document has the
/// key exactly when the member is there. Copies are deep.
template <class T> class KETRA_API Optional : public OptionalNode
{
public:
    /// The arguments make the member's initial state: what it is when a setter or the document
    /// brings it up.
    template <class... Args>
    explicit Optional(const char* key, Args&&... args) : initial(key, std::forward<Args>(args)...)
    {
    }
    /// A member that knows its key and its initial state by itself.
    Optional() = default;

    bool isSet() const { return member.has_value(); }
    /// The member, made in its initial state if it is absent.
    T& create()
    {
        if (!member) member.emplace(initial);
        return *member;
    }
    void reset() noexcept override { member.reset(); }

    /// The member; \p what says in the log what could not be obtained.
    /// \throws Exception 2 while the member is absent
    const T& at(const char* what) const
    {
        if (!member) failAbsent(what);
        return *member;
    }
    T& at(const char* what)
    {
        if (!member) failAbsent(what);
        return *member;
    }
    /// The member; nothing is logged.
    /// \throws Exception 2 while the member is absent
    const T& at() const
    {
        if (!member) failAbsent();
        return *member;
    }
    /// \throws Exception 7 as the member's own `validate`; an absent member is valid
    void validate()
    {
        if (member) member->validate();
    }

    const std::string& getKey() const override { return initial.getName(); }
    Node* find() override { return member ? &*member : nullptr; }
    Node& renew() override { return member.emplace(initial); }

protected:
    T initial;
    std::optional<T> member;
};

/// Makes every one of \p members absent: the alternatives of one that is about to be set.
template <class... T> void clear(Optional<T>&... members) { (members.reset(), ...); }

} // namespace thermo::input
