#pragma once

#include <string>

namespace brvTesting {

/// The argument by which this executable is told which child function to run.
constexpr const char* childFlag = "--brv-child=";

/// The path of this executable, UTF-8. Known after runAsChild was called.
const std::string& thisProgram();

} // namespace brvTesting
