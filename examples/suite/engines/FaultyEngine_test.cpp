// Plug-ins that are no engines, each in its own way: the build says in which.
#include "EngineModel.h"

#include <stdexcept>

#if defined(ENGINE_IS_UNMADE)
extern "C" std::uint32_t suiteEngineInterface() { return suite::engineInterface; }
#elif defined(ENGINE_IS_FOREIGN)
extern "C" std::uint32_t somethingElse() { return suite::engineInterface; }
#else

#if defined(ENGINE_IS_LATE)
extern "C" std::uint32_t suiteEngineInterface() { return suite::engineInterface + 1; }
#else
extern "C" std::uint32_t suiteEngineInterface() { return suite::engineInterface; }
#endif

extern "C" suite::EngineModel* suiteMakeEngine()
{
#if defined(ENGINE_IS_THROWING)
    struct Fault : std::runtime_error // goes with the plug-in
    {
        using runtime_error::runtime_error;
    };
    throw Fault("the tank is empty");
#else
    return nullptr;
#endif
}

extern "C" void suiteDestroyEngine(suite::EngineModel*) {}

#endif
