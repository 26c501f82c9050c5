// A plug-in that fails while it is loaded.

#include <stdexcept>

namespace {

struct Engine
{
    Engine() { throw std::runtime_error("no engine for the plug-in"); }
} engine;

} // namespace
