#include "brvUtils/core/Errors.h"

#include "brvUtils/os/Error.h"

#include <cstdio>

namespace brvUtils {

std::string GetLastSystemError()
{
    return os::lastSystemErrorText();
}

} // namespace brvUtils

void AssertAbort(const char* text, int line)
{
    char message[256];
    std::snprintf(message, sizeof message, "Assertion failed: %s-%d\n", text, line);
    throw brvUtils::ProgrammingError(message);
}
