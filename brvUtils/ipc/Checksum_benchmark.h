#pragma once

#include "testing/BenchmarkTable.h"

namespace reflective {

/// Rows: the checksum of a part beside the plain ways to sum its bytes, and beside reading them.
void addChecksumRows(brvTesting::BenchmarkTable& table);

} // namespace reflective
