// SPDX-License-Identifier: MIT
#pragma once

// Conversion between UTF-8 and Unicode code points.

#include <string>
#include <string_view>

namespace devhost {

/// Decodes UTF-8; each byte that begins no valid sequence becomes U+FFFD. Surrogates are let
/// through in both directions, as the interpreter's own codec does, so that every script text
/// round-trips.
std::wstring decodeUtf8(std::string_view bytes);

/// Encodes code points as UTF-8; values that are no code points become U+FFFD.
std::string encodeUtf8(std::wstring_view text);

} // namespace devhost
