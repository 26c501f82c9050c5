#include "brvUtils/os/ReflectiveMemory.h"

namespace brvUtils::os {

const char* const reflectiveMemoryLibrary = "rfm2gdll_stdc_64.dll";
const char* const reflectiveMemoryDevicePrefix = "\\\\.\\rfm2g";

} // namespace brvUtils::os
