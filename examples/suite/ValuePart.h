#pragma once

#include <brvUtils/ipc/ShmAble.h>

#include <cstring>
#include <type_traits>

namespace suite {

/// A part of a segment that is copied as it is. Raise the segment's version when a value changes its layout.
template <typename Value, int Id>
class ValuePart : public brvUtils::ShmAble
{
    static_assert(std::is_trivially_copyable_v<Value>);

public:
    int getId() override { return Id; }
    int getSize() override { return sizeof(Value); }
    void put(void* destination) override { std::memcpy(destination, &value, sizeof value); }
    void get(void* source) override { std::memcpy(&value, source, sizeof value); }

    Value value{};
};

} // namespace suite
