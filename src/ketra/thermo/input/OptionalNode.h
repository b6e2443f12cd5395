#pragma once

#include <ketra/thermo/input/Node.h>

namespace thermo::input {

/// What a section's walk over its members needs to know of an optional member.
class KETRA_API OptionalNode
{
public:
    virtual ~OptionalNode() = default;

    /// The key of the member, present or not.
    virtual const std::string& getKey() const = 0;
    /// The member, or null while it is absent. The member stays this object's.
    virtual Node* find() = 0;
    /// Puts a new member in its initial state in place of the present one.
    virtual Node& renew() = 0;
    /// Makes the member absent.
    virtual void reset() noexcept = 0;

    /// Logs "Could not obtain " and \p what, and throws.
    /// \throws Exception 2
    [[noreturn]] static void failAbsent(const char* what);

protected:
    OptionalNode() = default;
    OptionalNode(const OptionalNode&) = default;
    OptionalNode(OptionalNode&&) noexcept = default;
    OptionalNode& operator=(const OptionalNode&) = default;
    OptionalNode& operator=(OptionalNode&&) noexcept = default;

    /// The same for the unit of the member that \p what names.
    /// \throws Exception 2
    [[noreturn]] static void failAbsentUnit(const char* what);
    /// \throws Exception 2, without a line in the log
    [[noreturn]] static void failAbsent();
};

} // namespace thermo::input
