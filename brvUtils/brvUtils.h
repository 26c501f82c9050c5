#pragma once

/// \file
/// The whole library in one include.

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/FileSystem.h"
#include "brvUtils/core/LabelledText.h"
#include "brvUtils/core/Network.h"
#include "brvUtils/core/Parsers.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/core/ValuePtr.h"
#include "brvUtils/ipc/CompositeShm.h"
#include "brvUtils/ipc/CriticalSection.h"
#include "brvUtils/ipc/EventGroupWin32.h"
#include "brvUtils/ipc/EventWin32.h"
#include "brvUtils/ipc/IEvent.h"
#include "brvUtils/ipc/IEventGroup.h"
#include "brvUtils/ipc/ISemaphore.h"
#include "brvUtils/ipc/IShm.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/ipc/ShmAble.h"
#include "brvUtils/ipc/ShmVersion.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "brvUtils/startup/ArgParser.h"
#include "brvUtils/startup/InstanceKey.h"
#include "brvUtils/startup/ModulePaths.h"
