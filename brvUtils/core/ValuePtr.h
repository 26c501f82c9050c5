#pragma once

#include <utility>

namespace brvUtils {

/// Owning pointer with the value semantics of its pointee: copying clones it through its `clone() const`, which returns
/// a new object; destruction destroys it. May be null. As safe between threads as a plain value.
template <typename T>
class ValuePtr
{
public:
    /// Null.
    ValuePtr() = default;

    /// Takes ownership of `pointee`, which may be null.
    explicit ValuePtr(T* pointee) noexcept : pointee_(pointee) {}

    /// Clones.
    ValuePtr(const ValuePtr& other) : pointee_(other.pointee_ != nullptr ? other.pointee_->clone() : nullptr) {}
    /// Leaves `other` null.
    ValuePtr(ValuePtr&& other) noexcept : pointee_(std::exchange(other.pointee_, nullptr)) {}
    ~ValuePtr() { delete pointee_; }

    /// Destroys its own pointee and takes the clone, or what was moved.
    ValuePtr& operator=(ValuePtr other) noexcept
    {
        std::swap(pointee_, other.pointee_);
        return *this;
    }

    /// The pointee, still owned by this pointer.
    T* get() const noexcept { return pointee_; }
    /// The pointee, which must be there.
    T& operator*() const noexcept { return *pointee_; }
    /// The same.
    T* operator->() const noexcept { return pointee_; }
    /// Whether there is a pointee.
    explicit operator bool() const noexcept { return pointee_ != nullptr; }

private:
    T* pointee_ = nullptr;
};

} // namespace brvUtils
