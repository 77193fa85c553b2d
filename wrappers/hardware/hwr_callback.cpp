// Device callbacks. They have no director: the host never calls methods of a Python class.

#include "host/render/ZHwrCallback.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR(ZHwrCallback, ZHwrCallback())
DESTRUCTOR(ZHwrCallback)
METHOD(ZHwrCallback, deviceNew, void())
METHOD(ZHwrCallback, deviceLost, void())
METHOD(ZHwrCallback, deviceReset, void())
METHOD(ZHwrCallback, deviceDeleted, void())
STATIC(ZHwrCallback, addCallback, void(ZHwrCallback *, int), 0)
STATIC(ZHwrCallback, removeCallback, void(ZHwrCallback *))
PROXY(ZHwrCallback)

ROWS_END(hwr_callback_rows)
