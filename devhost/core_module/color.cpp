// Colours.

#include "devhost/core_module/values.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZColor, 1, ZColor())
CONSTRUCTOR_CASE(ZColor, 2, ZColor(ZColor const &))
CONSTRUCTOR_EXTENSION_CASE(ZColor, 3, ZColor(PyObject *), value_from_sequence<ZColor>)
CONSTRUCTOR_CASE(ZColor, 4, ZColor(float, float, float, float), 1)
CONSTRUCTOR_OVERLOADS(ZColor, &new_ZColor_1, &new_ZColor_2, &new_ZColor_3, &new_ZColor_4)
MEMBER(ZColor, r, float)
MEMBER(ZColor, g, float)
MEMBER(ZColor, b, float)
MEMBER(ZColor, a, float)
EXTENSION(ZColor, __add__, ZColor(ZColor const &) const, plus)
EXTENSION(ZColor, __sub__, ZColor(ZColor const &) const, minus)
EXTENSION_CASE(ZColor, __mul__, 1, ZColor(ZColor const &) const, times)
EXTENSION_CASE(ZColor, __mul__, 2, ZColor(float) const, times)
OVERLOADS(ZColor, __mul__, &ZColor___mul___1, &ZColor___mul___2)
EXTENSION(ZColor, __rmul__, ZColor(float) const, times)
EXTENSION(ZColor, __div__, ZColor(float) const, divided_by)
EXTENSION(ZColor, __truediv__, ZColor(float) const, divided_by)
VALUE(ZColor, float)

ROWS_END(color_rows)
