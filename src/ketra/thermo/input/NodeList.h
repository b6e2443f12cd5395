#pragma once

#include <ketra/thermo/input/List.h>
#include <ketra/thermo/input/ListNode.h>

#include <utility>

namespace thermo::input {

/// An owned list of sections or components with its key in the document. Copies are deep.
template <class T> class KETRA_API NodeList : public ListNode
{
public:
    /// The arguments make the state in which an element is before it is read.
    template <class... Args>
    explicit NodeList(const char* key, Args&&... args)
        : ListNode(key), initial(std::forward<Args>(args)...)
    {
    }

    unsigned int size() const override { return items.size(); }
    bool isEmpty() const { return items.isEmpty(); }
    /// \throws std::out_of_range
    T& at(unsigned int i) { return items.at(i); }
    const T& at(unsigned int i) const { return items.at(i); }
    /// Appends an element in its initial state.
    T& add() { return items.add(std::make_unique<T>(initial)); }
    /// Appends \p element and takes ownership of it; \p what names it in the log.
    /// \throws Exception 2 if it is null
    void add(T* element, const char* what)
    {
        if (element == nullptr) failNull(what);
        items.add(std::unique_ptr<T>(element));
    }
    void clear() noexcept { items.clear(); }
    template <class Less> void sort(Less less) { items.sort(less); }

    /// \throws Exception 7 as the first element's `validate` that fails
    void validate() override
    {
        for (unsigned int i = 0; i < size(); ++i) at(i).validate();
    }

private:
    // An element is in the list when it is complete, or not at all.
    void readElement(const libconfig::Setting& group) override
    {
        auto element = std::make_unique<T>(initial);
        element->read(group);
        items.add(std::move(element));
    }
    Node& getElement(unsigned int i) override { return at(i); }

    T initial;
    List<T> items;
};

} // namespace thermo::input
