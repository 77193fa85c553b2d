// Counts the memory allocations of the test program and of the libraries it uses.
#pragma once

#include <cstddef>

/// How often operator new was called so far.
std::size_t allocationCount();
