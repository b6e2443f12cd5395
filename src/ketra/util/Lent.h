#pragma once

#include <utility>

namespace util {

/// Owns its object; a copy borrows the same object and must not outlive the owner.
///
/// A copy that shares the data of its source (a product of a database species) gets by with the
/// members the compiler writes, and costs no reference counting in parallel loops.
template <class T> class Lent
{
public:
    /// Takes ownership of \p owned, which may be null.
    explicit Lent(T* owned = nullptr) noexcept : object(owned), owner(owned != nullptr) {}
    /// Borrows what \p other holds.
    Lent(const Lent& other) noexcept : object(other.object), owner(false) {}
    /// Takes over object and ownership; \p other is left empty.
    Lent(Lent&& other) noexcept
        : object(std::exchange(other.object, nullptr)), owner(std::exchange(other.owner, false))
    {
    }
    ~Lent() { drop(); }

    /// Borrows what \p other holds; an owned object is destroyed unless it is the very same.
    Lent& operator=(const Lent& other) noexcept
    {
        if (other.object != object) borrow(other.object);
        return *this;
    }
    /// Takes over object and ownership of \p other, which is left empty.
    Lent& operator=(Lent&& other) noexcept
    {
        if (this != &other) {
            const bool owned = std::exchange(other.owner, false);
            T* const taken = std::exchange(other.object, nullptr);
            if (taken != object) drop();
            owner = owned || (taken == object && owner);
            object = taken;
        }
        return *this;
    }

    /// Takes ownership of \p owned; the object held before is destroyed if it was owned.
    void reset(T* owned = nullptr) noexcept
    {
        if (owned != object) drop();
        object = owned;
        owner = owned != nullptr;
    }
    /// Points to \p lent without owning it; the object held before is destroyed if it was owned.
    void borrow(T* lent) noexcept
    {
        if (lent != object) drop();
        object = lent;
        owner = false;
    }
    /// Gives up the object without destroying it. \returns the object, the caller's if it was
    /// owned.
    T* release() noexcept
    {
        owner = false;
        return std::exchange(object, nullptr);
    }

    T* get() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }
    T* operator->() const noexcept { return object; }
    explicit operator bool() const noexcept { return object != nullptr; }
    /// Whether the object is destroyed with this pointer.
    bool isOwner() const noexcept { return owner; }

private:
    void drop() noexcept
    {
        if (owner) delete object;
        owner = false;
    }

    T* object;
    bool owner;
};

} // namespace util
