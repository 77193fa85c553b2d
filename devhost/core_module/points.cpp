// Places in both precisions, and the box that encloses some.

#include "devhost/core_module/values.h"
#include "host/core/ZBoundingBox.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZMatrix.h"

ROWS_BEGIN

#define POINT(Class, Other, Vector, Matrix, Number)                                     \
    CONSTRUCTOR_CASE(Class, 1, Class())                                                 \
    CONSTRUCTOR_CASE(Class, 2, Class(Class const &))                                    \
    CONSTRUCTOR_CASE(Class, 3, Class(Other const &))                                    \
    CONSTRUCTOR_CASE(Class, 4, Class(Vector const &))                                   \
    CONSTRUCTOR_EXTENSION_CASE(Class, 5, Class(PyObject *), value_from_sequence<Class>) \
    CONSTRUCTOR_CASE(Class, 6, Class(Number, Number, Number, Number), 0, 1)             \
    CONSTRUCTOR_OVERLOADS(Class, &new_##Class##_1, &new_##Class##_2, &new_##Class##_3,  \
                          &new_##Class##_4, &new_##Class##_5, &new_##Class##_6)         \
    MEMBER(Class, x, Number)                                                            \
    MEMBER(Class, y, Number)                                                            \
    MEMBER(Class, z, Number)                                                            \
    MEMBER(Class, w, Number)                                                            \
    EXTENSION(Class, __add__, Class(Vector const &) const, plus)                        \
    EXTENSION_CASE(Class, __sub__, 1, Vector(Class const &) const, minus)               \
    EXTENSION_CASE(Class, __sub__, 2, Class(Vector const &) const, minus)               \
    OVERLOADS(Class, __sub__, &Class##___sub___1, &Class##___sub___2)                   \
    EXTENSION_CASE(Class, __mul__, 1, Class(Matrix const &) const, times)               \
    EXTENSION_CASE(Class, __mul__, 2, Class(Number) const, times)                       \
    OVERLOADS(Class, __mul__, &Class##___mul___1, &Class##___mul___2)                   \
    EXTENSION(Class, __rmul__, Class(Number) const, times)                              \
    METHOD(Class, cartesianize, ZStatus())                                              \
    METHOD(Class, distanceTo, Number(Class const &) const)                              \
    TOLERANT(Class, isEquivalent, Number)                                               \
    VALUE(Class, Number)

POINT(ZPoint, ZFloatPoint, ZVector, ZMatrix, double)
POINT(ZFloatPoint, ZPoint, ZFloatVector, ZFloatMatrix, float)

CONSTRUCTOR_CASE(ZBoundingBox, 1, ZBoundingBox())
CONSTRUCTOR_CASE(ZBoundingBox, 2, ZBoundingBox(ZBoundingBox const &))
CONSTRUCTOR_CASE(ZBoundingBox, 3, ZBoundingBox(ZPoint const &, ZPoint const &))
CONSTRUCTOR_OVERLOADS(ZBoundingBox, &new_ZBoundingBox_1, &new_ZBoundingBox_2, &new_ZBoundingBox_3)
METHOD(ZBoundingBox, clear, void())
METHOD(ZBoundingBox, isEmpty, bool() const)
METHOD_CASE(ZBoundingBox, expand, 1, void(ZPoint const &))
METHOD_CASE(ZBoundingBox, expand, 2, void(ZBoundingBox const &))
OVERLOADS(ZBoundingBox, expand, &ZBoundingBox_expand_1, &ZBoundingBox_expand_2)
METHOD(ZBoundingBox, transformUsing, void(ZMatrix const &))
METHOD(ZBoundingBox, contains, bool(ZPoint const &) const)
METHOD(ZBoundingBox, intersects, bool(ZBoundingBox const &, double) const, 0)
METHOD(ZBoundingBox, min, ZPoint() const)
METHOD(ZBoundingBox, max, ZPoint() const)
METHOD(ZBoundingBox, center, ZPoint() const)
METHOD(ZBoundingBox, width, double() const)
METHOD(ZBoundingBox, height, double() const)
METHOD(ZBoundingBox, depth, double() const)
DESTRUCTOR(ZBoundingBox)
PROXY(ZBoundingBox)

ROWS_END(point_rows)
