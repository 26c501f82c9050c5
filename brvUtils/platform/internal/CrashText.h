#pragma once

#include <cstddef>
#include <cstring>

namespace brvUtils {

/// Text of limited length that takes nothing from the heap, for what runs in a crash. What does not fit is cut, and that is
/// remembered.
template <std::size_t capacity>
class CrashText
{
public:
    CrashText& add(const char* text)
    {
        for (; *text != '\0'; ++text) {
            add(*text);
        }
        return *this;
    }

    CrashText& add(char letter)
    {
        fits_ = fits_ && length_ < capacity;
        if (fits_) {
            text_[length_++] = letter;
            text_[length_] = '\0';
        }
        return *this;
    }

    /// In decimal digits, filled up with zeros in front.
    CrashText& add(unsigned long number, int digits = 1)
    {
        if (number >= 10 || digits > 1) {
            add(number / 10, digits - 1);
        }
        return add(static_cast<char>('0' + number % 10));
    }

    /// Turns what would divide a path or is no good in a name into "_".
    CrashText& makeName()
    {
        for (char* letter = text_; *letter != '\0'; ++letter) {
            if (std::strchr("\\/ :", *letter) != nullptr) {
                *letter = '_';
            }
        }
        return *this;
    }

    bool fits() const { return fits_; }
    bool operator==(const char* text) const { return std::strcmp(text_, text) == 0; }
    const char* get() const { return text_; }

private:
    char text_[capacity + 1] = "";
    std::size_t length_ = 0;
    bool fits_ = true;
};

} // namespace brvUtils
