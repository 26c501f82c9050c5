#pragma once

#include "testing/BenchmarkTable.h"

/// What it takes to get a port while 100 others are held by as many living processes, beside a bare look at each of these.
/// They have a name space of their own: nothing of the library may be open in this process.
void addPortRows(brvTesting::BenchmarkTable& table);
