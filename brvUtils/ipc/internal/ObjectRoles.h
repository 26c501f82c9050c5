#pragma once

#include "brvUtils/ipc/NamedObjects.h"

namespace brvUtils {

/// Finds out by the rules of naming what each object serves for, and which locks belong to which segment.
void assignRoles(std::vector<NamedObject>& objects);

} // namespace brvUtils
