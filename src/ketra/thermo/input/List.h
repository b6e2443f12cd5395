#pragma once

#include <ketra/export.h>

#include <memory>
#include <utility>
#include <vector>

namespace thermo::input {

/// An owned list of the sections or components that a list of the document holds. Copies are deep.
template <class T> class List
{
public:
    List() = default;
    List(const List& other)
    {
        items.reserve(other.items.size());
        for (const auto& item : other.items) items.push_back(std::make_unique<T>(*item));
    }
    List(List&&) noexcept = default;
    List& operator=(const List& other)
    {
        List copy(other);
        items.swap(copy.items);
        return *this;
    }
    List& operator=(List&&) noexcept = default;
    ~List() = default;

    unsigned int size() const { return static_cast<unsigned int>(items.size()); }
    bool isEmpty() const { return items.empty(); }
    /// \throws std::out_of_range
    T& at(unsigned int i) { return *items.at(i); }
    const T& at(unsigned int i) const { return *items.at(i); }
    /// Appends \p item.
    T& add(std::unique_ptr<T> item)
    {
        items.push_back(std::move(item));
        return *items.back();
    }
    void clear() noexcept { items.clear(); }

private:
    std::vector<std::unique_ptr<T>> items;
};

} // namespace thermo::input
