// Directions and displacements in both precisions.

#include "devhost/core_module/values.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZMatrix.h"

ROWS_BEGIN

#define VECTOR(Class, Other, Point, Matrix, Number)                                       \
    CONSTRUCTOR_CASE(Class, 1, Class())                                                   \
    CONSTRUCTOR_CASE(Class, 2, Class(Class const &))                                      \
    CONSTRUCTOR_CASE(Class, 3, Class(Other const &))                                      \
    CONSTRUCTOR_CASE(Class, 4, Class(Point const &))                                      \
    CONSTRUCTOR_EXTENSION_CASE(Class, 5, Class(PyObject *), value_from_sequence<Class>)   \
    CONSTRUCTOR_CASE(Class, 6, Class(Number, Number, Number), 0)                          \
    CONSTRUCTOR_OVERLOADS(Class, &new_##Class##_1, &new_##Class##_2, &new_##Class##_3,    \
                          &new_##Class##_4, &new_##Class##_5, &new_##Class##_6)           \
    MEMBER(Class, x, Number)                                                              \
    MEMBER(Class, y, Number)                                                              \
    MEMBER(Class, z, Number)                                                              \
    EXTENSION(Class, __add__, Class(Class const &) const, plus)                           \
    EXTENSION(Class, __sub__, Class(Class const &) const, minus)                          \
    EXTENSION(Class, __neg__, Class() const, negative)                                    \
    EXTENSION_CASE(Class, __mul__, 1, Number(Class const &) const, times)                 \
    EXTENSION_CASE(Class, __mul__, 2, Class(Matrix const &) const, times)                 \
    EXTENSION_CASE(Class, __mul__, 3, Class(Number) const, times)                         \
    OVERLOADS(Class, __mul__, &Class##___mul___1, &Class##___mul___2, &Class##___mul___3) \
    EXTENSION(Class, __rmul__, Class(Number) const, times)                                \
    EXTENSION(Class, __div__, Class(Number) const, divided_by)                            \
    EXTENSION(Class, __truediv__, Class(Number) const, divided_by)                        \
    EXTENSION(Class, __xor__, Class(Class const &) const, cross)                          \
    METHOD(Class, length, Number() const)                                                 \
    METHOD(Class, normal, Class() const)                                                  \
    METHOD(Class, normalize, ZStatus())                                                   \
    METHOD(Class, angle, Number(Class const &) const)                                     \
    METHOD(Class, transformAsNormal, Class(Matrix const &) const)                         \
    TOLERANT(Class, isEquivalent, Number)                                                 \
    TOLERANT(Class, isParallel, Number)                                                   \
    VALUE(Class, Number)

VECTOR(ZVector, ZFloatVector, ZPoint, ZMatrix, double)
METHOD(ZVector, rotateBy, ZVector(ZQuaternion const &) const)
VECTOR(ZFloatVector, ZVector, ZFloatPoint, ZFloatMatrix, float)

ROWS_END(vector_rows)
