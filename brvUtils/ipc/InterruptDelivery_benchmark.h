#pragma once

#include "testing/BenchmarkTable.h"

namespace reflective {

/// Rows: how long after a put of 64 B has begun its reader on another node, in another process, has the part.
void addDeliveryRows(brvTesting::BenchmarkTable& table);

} // namespace reflective
