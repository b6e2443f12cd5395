#pragma once

#include <ketra/thermo/input/Node.h>

namespace thermo::input {

/// The document's side of a list of groups, whatever its elements are.
class KETRA_API ListNode : public Node
{
public:
    using Node::Node;

    /// Number of elements.
    virtual unsigned int size() const = 0;
    /// Appends an element for each one of the document's list. Something else under the key is
    /// passed over, and so is the absent key.
    void read(const libconfig::Setting& parent) override;
    /// Writes the list, also an empty one, each element into a group of its own.
    void write(libconfig::Setting& parent, bool all) override;

protected:
    ListNode(const ListNode&) = default;
    ListNode(ListNode&&) noexcept = default;
    ListNode& operator=(const ListNode&) = default;
    ListNode& operator=(ListNode&&) noexcept = default;

    /// Logs that no \p element can be appended since there is none, and throws.
    /// \throws Exception 2
    [[noreturn]] static void failNull(const char* element);

private:
    virtual void readElement(const libconfig::Setting& group) = 0;
    virtual Node& getElement(unsigned int i) = 0;
};

} // namespace thermo::input
