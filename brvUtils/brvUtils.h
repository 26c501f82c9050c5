#pragma once

/// \file
/// The whole library in one include.

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/LabelledText.h"
#include "brvUtils/core/Network.h"
#include "brvUtils/core/Parsers.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/core/ValuePtr.h"
#include "brvUtils/startup/ArgParser.h"
#include "brvUtils/startup/InstanceKey.h"
#include "brvUtils/startup/ModulePaths.h"
