#pragma once

#include <stdexcept>

namespace rfm2gCard {

/// A command cannot be done; the text tells a user why, in one line.
struct Fault : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

} // namespace rfm2gCard
