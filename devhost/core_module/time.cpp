// Times of the animation.

#include "devhost/core_module/items.h"
#include "devhost/core_module/operators.h"
#include "host/core/ZTime.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

static PyObject *time_representation(ZTime &self) {
    return represent(type_of<ZTime>(), Py_BuildValue("(di)", self.value(), int(self.unit())));
}

// The unit 0 (kInvalid) of the constructor stands for the unit of the user interface.
CONSTRUCTOR_CASE(ZTime, 1, ZTime())
CONSTRUCTOR_CASE(ZTime, 2, ZTime(ZTime const &))
CONSTRUCTOR_CASE(ZTime, 3, ZTime(double, ZTime::Unit), 0)
CONSTRUCTOR_OVERLOADS(ZTime, &new_ZTime_1, &new_ZTime_2, &new_ZTime_3)
METHOD(ZTime, value, double() const)
METHOD(ZTime, unit, ZTime::Unit() const)
METHOD(ZTime, asUnits, double(ZTime::Unit) const)
METHOD(ZTime, setValue, ZStatus(double))
METHOD(ZTime, setUnit, ZStatus(ZTime::Unit))
STATIC(ZTime, uiUnit, ZTime::Unit())
STATIC(ZTime, setUIUnit, ZStatus(ZTime::Unit))
EXTENSION_CASE(ZTime, __add__, 1, ZTime(ZTime const &) const, plus)
EXTENSION_CASE(ZTime, __add__, 2, ZTime(double) const, plus)
OVERLOADS(ZTime, __add__, &ZTime___add___1, &ZTime___add___2)
EXTENSION_CASE(ZTime, __sub__, 1, ZTime(ZTime const &) const, minus)
EXTENSION_CASE(ZTime, __sub__, 2, ZTime(double) const, minus)
OVERLOADS(ZTime, __sub__, &ZTime___sub___1, &ZTime___sub___2)
EXTENSION(ZTime, __mul__, ZTime(double) const, times)
EXTENSION(ZTime, __rmul__, ZTime(double) const, times)
EXTENSION(ZTime, __div__, ZTime(double) const, divided_by)
EXTENSION(ZTime, __truediv__, ZTime(double) const, divided_by)
EXTENSION(
    ZTime, __lt__, bool(ZTime const &) const,
    +[](ZTime &self, ZTime const &other) { return self < other; })
EXTENSION(
    ZTime, __le__, bool(ZTime const &) const,
    +[](ZTime &self, ZTime const &other) { return self <= other; })
EXTENSION(
    ZTime, __gt__, bool(ZTime const &) const,
    +[](ZTime &self, ZTime const &other) { return self > other; })
EXTENSION(
    ZTime, __ge__, bool(ZTime const &) const,
    +[](ZTime &self, ZTime const &other) { return self >= other; })
EXTENSION(ZTime, __repr__, PyObject *() const, time_representation)
EQUALITY(ZTime)
DESTRUCTOR(ZTime)
PROXY(ZTime)

ROWS_END(time_rows)

CONSTANTS(time_constants, ENUMERATOR(ZTime, kInvalid), ENUMERATOR(ZTime, kHours),
          ENUMERATOR(ZTime, kMinutes), ENUMERATOR(ZTime, kSeconds),
          ENUMERATOR(ZTime, kMilliseconds), ENUMERATOR(ZTime, kGames), ENUMERATOR(ZTime, kFilm),
          ENUMERATOR(ZTime, kPALFrame), ENUMERATOR(ZTime, kNTSCFrame), ENUMERATOR(ZTime, kShowScan),
          ENUMERATOR(ZTime, kPALField), ENUMERATOR(ZTime, kNTSCField), ENUMERATOR(ZTime, kLast))
