#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brvUtils::csv {

/// What a column takes. Of the texts, what a column of numbers would take is refused.
enum class Kind : std::uint8_t { unknown, unwanted, integer, number, textUnlessInteger, textUnlessNumber, text };

/// What is known of the whole table.
struct Table
{
    char separator;
    Kind numbers; ///< integer or number, or text when all fields are texts.
    std::vector<std::string_view> names; ///< Of the columns, up to the last wanted one.
    std::vector<std::atomic<Kind>> kinds; ///< Of the columns: set once, when the first value has come in.

    /// Of a column of texts.
    Kind texts() const
    {
        return numbers == Kind::integer ? Kind::textUnlessInteger : numbers == Kind::number ? Kind::textUnlessNumber : Kind::text;
    }

    /// Whether the separator can be part of a number or of a line end, so that a field's end is to be found first.
    bool needsExactEnds() const
    {
        return (separator >= '0' && separator <= '9') || (separator != '\0' && std::strchr("+-.eE\rINFAinfa", separator) != nullptr);
    }
};

/// The values of a column in a block: integers, doubles or views of texts, one behind the other.
class Column
{
public:
    Kind kind = Kind::unknown;

    template <typename Value>
    void add(const Value& value)
    {
        if (room_ < sizeof value) {
            grow();
        }
        std::memcpy(memory_.get() + used_, &value, sizeof value);
        used_ += sizeof value;
        room_ -= sizeof value;
    }

    void clear(Kind newKind)
    {
        kind = newKind;
        room_ += used_;
        used_ = 0;
    }

    template <typename Value>
    const Value* begin() const { return reinterpret_cast<const Value*>(memory_.get()); }
    template <typename Value>
    const Value* end() const { return reinterpret_cast<const Value*>(memory_.get() + used_); }

private:
    void grow()
    {
        const std::size_t larger = used_ < 32 ? 32 : used_ * 2;
        std::unique_ptr<char[]> memory(new char[larger]); // whose bytes nobody has touched yet
        std::copy_n(memory_.get(), used_, memory.get());
        memory_ = std::move(memory);
        room_ = larger - used_;
    }

    std::unique_ptr<char[]> memory_;
    std::size_t used_ = 0;
    std::size_t room_ = 0;
};

} // namespace brvUtils::csv
