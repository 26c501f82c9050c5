#include "testing/UniqueName.h"

#include <atomic>
#include <cstdio>
#include <random>

namespace brvTesting {

std::string uniqueName(const std::string& stem)
{
    // Numbers of processes come again soon; random ones do not.
    static const std::string process = [] {
        std::random_device random;
        char text[17];
        std::snprintf(text, sizeof text, "%08x%08x", random(), random());
        return std::string(text);
    }();
    static std::atomic<unsigned> calls{0};
    return stem + "-" + process + "-" + std::to_string(++calls);
}

} // namespace brvTesting
