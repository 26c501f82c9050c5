#pragma once

#include "EngineModel.h"

/// Makes a plug-in of a class of engines: once in its source, outside all namespaces.
#define SUITE_ENGINE(Engine)                                                                  \
    extern "C" std::uint32_t suiteEngineInterface() { return suite::engineInterface; }        \
    extern "C" suite::EngineModel* suiteMakeEngine() { return new Engine; }                   \
    extern "C" void suiteDestroyEngine(suite::EngineModel* engine) { delete engine; }
