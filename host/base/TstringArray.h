// SPDX-License-Identifier: MIT
#pragma once

// The base library's array of texts.

#include "host/base/HostApi.h"
#include "host/base/TobjArray.h"
#include "host/base/Tstring.h"

extern template class TobjArray<Tstring>;

/// A growable array of texts.
class OPENQUIL_API TstringArray : public TobjArray<Tstring> {};
