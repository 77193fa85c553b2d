#pragma once

// Native bytes as text: "0123456789abcdef", high nibble first, bytes in memory order.

#include <cstddef>

/// Writes 2 * size digits without a terminator and returns the end.
char *SWIG_PackData(char *text, const void *data, size_t size);

/// Writes '_' and the digits of a pointer's own bytes; returns the end.
char *SWIG_PackVoidPtr(char *text, const void *pointer);
