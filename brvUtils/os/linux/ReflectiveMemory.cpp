#include "brvUtils/os/ReflectiveMemory.h"

namespace brvUtils::os {

const char* const reflectiveMemoryLibrary = "librfm2g.so";
const char* const reflectiveMemoryDevicePrefix = "/dev/rfm2g";

} // namespace brvUtils::os
