#pragma once

namespace brvUtils {

constexpr double pi = 3.141592653589793;

/// What is smaller counts as zero.
constexpr double tolerance = 1e-6;

} // namespace brvUtils
