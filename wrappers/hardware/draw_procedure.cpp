// SPDX-License-Identifier: MIT
// Draw procedures. They are abstract and have no director: scripts only handle native ones.

#include "host/render/ZDrawProcedureBase.h"

#define ROW_LIST "wrappers/hardware/draw_procedure.def"
#define ROW_TABLE draw_procedure_rows
#include "wrappers/rows/make_rows.h"
