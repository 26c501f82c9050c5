#pragma once

#include <unistd.h>

namespace brvUtils::os {

/// Owns a file descriptor. Negative when it owns none, as functions say it.
class Descriptor
{
public:
    Descriptor() = default;
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number_; }
    bool open() const { return number_ >= 0; }
    void take(int number)
    {
        close();
        number_ = number;
    }
    /// The caller owns it from now on.
    int release()
    {
        const int number = number_;
        number_ = -1;
        return number;
    }
    void close()
    {
        if (open()) {
            ::close(number_);
            number_ = -1;
        }
    }

private:
    int number_ = -1;
};

} // namespace brvUtils::os
