#pragma once

#include "brvUtils/ipc/Rfm2g.h"

namespace brvUtils {

/// The functions of a reflective-memory card's driver.
struct ReflectiveDriver
{
    rfm2g::Open* open = nullptr;
    rfm2g::Close* close = nullptr;
    rfm2g::NodeId* nodeId = nullptr;
    rfm2g::Size* size = nullptr;
    rfm2g::First* first = nullptr;
    rfm2g::Read* read = nullptr;
    rfm2g::Write* write = nullptr;
    rfm2g::EnableEvent* enableEvent = nullptr;
    rfm2g::SendEvent* sendEvent = nullptr;
    rfm2g::EnableEventCallback* enableEventCallback = nullptr;
    rfm2g::ClearEvent* clearEvent = nullptr;
    rfm2g::ErrorMsg* errorMsg = nullptr;
    rfm2g::CheckRingCont* checkRingCont = nullptr;
};

/// Loads the driver's library, once per process, and tells how that goes. It stays loaded. Null when it cannot be had: the
/// error stream says why, and the next call tries again.
const ReflectiveDriver* loadReflectiveDriver();

} // namespace brvUtils
