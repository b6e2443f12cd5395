#pragma once

#include <ketra/export.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace thermo::input {

/// An owned list of the sections or components that a list of the document holds. Copies are deep;
/// an item of a class derived from T is copied as what it is.
template <class T> class List
{
public:
    List() = default;
    List(const List& other)
    {
        items.reserve(other.items.size());
        for (const Item& item : other.items) items.push_back({item.copy(*item.object), item.copy});
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
    T& at(unsigned int i) { return *items.at(i).object; }
    const T& at(unsigned int i) const { return *items.at(i).object; }
    /// Appends \p item, whose copies are of the class U.
    template <class U> U& add(std::unique_ptr<U> item)
    {
        U& added = *item;
        items.push_back({std::move(item), &copyOf<U>});
        return added;
    }
    void clear() noexcept { items.clear(); }
    /// Brings the items into the order of \p less; equal ones stay as they are.
    template <class Less> void sort(Less less)
    {
        std::stable_sort(items.begin(), items.end(), [less](const Item& a, const Item& b) {
            return less(std::as_const(*a.object), std::as_const(*b.object));
        });
    }

private:
    struct Item {
        std::unique_ptr<T> object;
        std::unique_ptr<T> (*copy)(const T&);
    };
    template <class U> static std::unique_ptr<T> copyOf(const T& item)
    {
        return std::make_unique<U>(static_cast<const U&>(item));
    }

    std::vector<Item> items;
};

} // namespace thermo::input
