// SPDX-License-Identifier: MIT
// Times of the animation.

#include "devhost/core_module/items.h"
#include "devhost/core_module/operators.h"
#include "host/core/ZTime.h"
#include "wrappers/rows/constants.h"

namespace {

using namespace binding;

PyObject *time_representation(ZTime &self) {
    return represent(type_of<ZTime>(), Py_BuildValue("(di)", self.value(), int(self.unit())));
}

} // namespace

#define ROW_LIST "devhost/core_module/time.def"
#define ROW_TABLE time_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(time_constants, ENUMERATOR(ZTime, kInvalid), ENUMERATOR(ZTime, kHours),
          ENUMERATOR(ZTime, kMinutes), ENUMERATOR(ZTime, kSeconds),
          ENUMERATOR(ZTime, kMilliseconds), ENUMERATOR(ZTime, kGames), ENUMERATOR(ZTime, kFilm),
          ENUMERATOR(ZTime, kPALFrame), ENUMERATOR(ZTime, kNTSCFrame), ENUMERATOR(ZTime, kShowScan),
          ENUMERATOR(ZTime, kPALField), ENUMERATOR(ZTime, kNTSCField), ENUMERATOR(ZTime, kLast))
