#pragma once

#include <utility>

namespace brvUtils {

/// Owning pointer with the value semantics of its pointee: copying clones it through its `clone() const`, which returns
/// a new object; destruction destroys it. May be null. As safe between threads as a plain value.
template <typename T>
class ValuePtr
{
public:
    ValuePtr() = default;

    /// Takes ownership of `pointee`, which may be null.
    explicit ValuePtr(T* pointee) noexcept : pointee_(pointee) {}

    ValuePtr(const ValuePtr& other) : pointee_(other.pointee_ != nullptr ? other.pointee_->clone() : nullptr) {}
    ValuePtr(ValuePtr&& other) noexcept : pointee_(std::exchange(other.pointee_, nullptr)) {}
    ~ValuePtr() { delete pointee_; }

    ValuePtr& operator=(ValuePtr other) noexcept
    {
        std::swap(pointee_, other.pointee_);
        return *this;
    }

    /// The pointee, still owned by this pointer.
    T* get() const noexcept { return pointee_; }
    T& operator*() const noexcept { return *pointee_; }
    T* operator->() const noexcept { return pointee_; }
    explicit operator bool() const noexcept { return pointee_ != nullptr; }

private:
    T* pointee_ = nullptr;
};

} // namespace brvUtils
