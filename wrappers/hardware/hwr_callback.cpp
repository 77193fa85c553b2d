// SPDX-License-Identifier: MIT
// Device callbacks. They have no director: the host never calls methods of a Python class.

#include "host/render/ZHwrCallback.h"

#define ROW_LIST "wrappers/hardware/hwr_callback.def"
#define ROW_TABLE hwr_callback_rows
#include "wrappers/rows/make_rows.h"
