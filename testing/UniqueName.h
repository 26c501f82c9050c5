#pragma once

#include <string>

namespace brvTesting {

/// A name that no other call gives, in this process or any other, so that tests never meet each other's objects.
/// Letters, digits and `-` only, behind the stem. Any thread may call it.
std::string uniqueName(const std::string& stem = "test");

} // namespace brvTesting
