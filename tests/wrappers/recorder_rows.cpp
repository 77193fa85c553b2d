// SPDX-License-Identifier: MIT
// The recording host as a module: every shape of row that the language knows.

#include "tests/wrappers/recorder.h"
#include "wrappers/rows/constants.h"
#include "wrappers/rows/module_tables.h"

#define ROW_LIST "tests/wrappers/recorder.def"
#define ROW_TABLE recorder_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(recorder_constants, ENUMERATOR(Recorder, kNone), ENUMERATOR(Recorder, kLow),
          ENUMERATOR(Recorder, kHigh))

static constexpr const binding::Rows *row_tables[] = {&recorder_rows};
static constexpr const binding::Constants *constants[] = {&recorder_constants};
constinit const std::span<const binding::Rows *const> binding::method_tables = row_tables;
constinit const std::span<const binding::Constants *const> binding::constant_tables = constants;
