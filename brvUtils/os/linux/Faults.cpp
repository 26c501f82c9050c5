#include "brvUtils/os/Faults.h"

#include <sys/resource.h>

namespace brvUtils::os {

void endWithoutTraces()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

} // namespace brvUtils::os
