// Draw procedures. They are abstract and have no director: scripts only handle native ones.

#include "host/render/ZDrawProcedureBase.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

DESTRUCTOR(ZDrawProcedureBase)
METHOD(ZDrawProcedureBase, execute, bool())
METHOD(ZDrawProcedureBase, setEnabled, void(bool))
METHOD(ZDrawProcedureBase, enabled, bool() const)
METHOD(ZDrawProcedureBase, setName, void(ZString const &))
METHOD(ZDrawProcedureBase, name, ZString() const)
REGISTRATION(ZDrawProcedureBase)

ROWS_END(draw_procedure_rows)
