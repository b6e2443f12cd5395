#pragma once

#include <ketra/thermo/input/OptionalNode.h>

namespace thermo::input {

class ListNode;

/// One walk over the members of a section in the order of the document, either reading or writing
/// them. A section describes its members once, and both directions follow the description.
class KETRA_API Fields
{
public:
    virtual ~Fields() = default;

    /// A member that is always there.
    virtual void field(Node& member) = 0;
    /// A member that may be absent: it is read if the document has its key, written if it is set.
    /// \returns whether it was there
    bool field(OptionalNode& member) { return field(member.getKey().c_str(), member); }
    /// The same for a member that is there if the document has the key \p sought, though its value
    /// stands under the member's own key.
    virtual bool field(const char* sought, OptionalNode& member) = 0;
    /// A member that is always there, but whose group may be missing from the document.
    virtual void ifThere(Node& member) = 0;
    /// A list that is written only if it has elements. \returns whether it was there
    virtual bool ifAny(ListNode& member) = 0;
    /// Members that are written as with `all` false, however the rest of the document is written.
    virtual void sparse(Node& member) = 0;
    virtual bool sparse(OptionalNode& member) = 0;
    /// A member that is written as with `all` true, however the rest of the document is written.
    virtual void always(Node& member) = 0;
    /// Several members in the order of the document, each as with `field`.
    template <class... Members> void each(Members&... members)
    {
        (static_cast<void>(field(members)), ...);
    }
    /// Alternatives: the first key found is the one that is read, the first member set the one that
    /// is written, and the others are not looked at.
    template <class... Members> void oneOf(Members&... members)
    {
        static_cast<void>((field(members) || ...));
    }
    /// The members are being read; otherwise they are written. For a section that takes more out of
    /// a document than it puts into one.
    virtual bool isReading() const = 0;

protected:
    Fields() = default;
    Fields(const Fields&) = default;
    Fields& operator=(const Fields&) = default;
};

/// A group of the document. Its members are listed in `fields`; from this list it is read and
/// written. What a group does beyond that it does in its own `read` and `write`.
class KETRA_API Section : public Node
{
public:
    using Node::Node;

    /// \throws libconfig::SettingNotFoundException if \p parent has no such group
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;
    void write(libconfig::Setting& parent, bool all) override;

protected:
    /// Reads and writes the members in the very group that is given.
    void readMembers(const libconfig::Setting& group);
    void writeMembers(libconfig::Setting& group, bool all);

private:
    /// Shows every member to \p walk.
    virtual void fields(Fields& walk) = 0;
};

} // namespace thermo::input
