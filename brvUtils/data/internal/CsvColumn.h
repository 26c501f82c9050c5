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
};

/// The values of a column in a block: integers, doubles or views of texts, one behind the other.
class Column
{
public:
    Kind kind = Kind::unknown;

    template <typename Value>
    void add(const Value& value)
    {
        if (static_cast<std::size_t>(roomEnd_ - next_) < sizeof value) {
            grow();
        }
        std::memcpy(next_, &value, sizeof value);
        next_ += sizeof value;
    }

    void clear(Kind newKind)
    {
        kind = newKind;
        next_ = memory_.get();
    }

    template <typename Value>
    const Value* begin() const { return reinterpret_cast<const Value*>(memory_.get()); }
    template <typename Value>
    const Value* end() const { return reinterpret_cast<const Value*>(next_); }

private:
    void grow()
    {
        const auto used = static_cast<std::size_t>(next_ - memory_.get());
        const std::size_t larger = used < 32 ? 32 : used * 2;
        std::unique_ptr<char[]> memory(new char[larger]); // whose bytes nobody has touched yet
        std::copy_n(memory_.get(), used, memory.get());
        memory_ = std::move(memory);
        next_ = memory_.get() + used;
        roomEnd_ = memory_.get() + larger;
    }

    std::unique_ptr<char[]> memory_;
    char* next_ = nullptr; ///< Where the next value goes.
    char* roomEnd_ = nullptr;
};

} // namespace brvUtils::csv
