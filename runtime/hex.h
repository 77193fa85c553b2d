// SPDX-License-Identifier: MIT
#pragma once

// Native bytes as text: "0123456789abcdef", high nibble first, bytes in memory order.

#include <cstddef>

/// Writes 2 * size digits without a terminator and returns the end.
char *SWIG_PackData(char *text, const void *data, size_t size);

/// Writes '_' and the digits of a pointer's own bytes; returns the end.
char *SWIG_PackVoidPtr(char *text, const void *pointer);

/// Reads 2 * size digits and returns what follows them; null when they are not all there. Capital
/// digits are none.
const char *SWIG_UnpackData(const char *text, void *data, size_t size);

/// Reads what SWIG_PackVoidPtr writes and returns what follows it; null when it is something else.
const char *SWIG_UnpackVoidPtr(const char *text, void **pointer);
