// Rotations: quaternions and angles around the axes.

#include "devhost/core_module/values.h"
#include "host/core/ZMatrix.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZQuaternion, 1, ZQuaternion())
CONSTRUCTOR_CASE(ZQuaternion, 2, ZQuaternion(ZQuaternion const &))
CONSTRUCTOR_CASE(ZQuaternion, 3, ZQuaternion(ZMatrix const &))
CONSTRUCTOR_EXTENSION_CASE(ZQuaternion, 4, ZQuaternion(PyObject *),
                           value_from_sequence<ZQuaternion>)
CONSTRUCTOR_CASE(ZQuaternion, 5, ZQuaternion(ZVector const &, ZVector const &))
CONSTRUCTOR_CASE(ZQuaternion, 6, ZQuaternion(double, ZVector const &))
CONSTRUCTOR_CASE(ZQuaternion, 7, ZQuaternion(double, double, double, double))
CONSTRUCTOR_OVERLOADS(ZQuaternion, &new_ZQuaternion_1, &new_ZQuaternion_2, &new_ZQuaternion_3,
                      &new_ZQuaternion_4, &new_ZQuaternion_5, &new_ZQuaternion_6,
                      &new_ZQuaternion_7)
MEMBER(ZQuaternion, x, double)
MEMBER(ZQuaternion, y, double)
MEMBER(ZQuaternion, z, double)
MEMBER(ZQuaternion, w, double)
EXTENSION(
    ZQuaternion, setAxisAngle, void(ZVector const &, double),
    +[](ZQuaternion &self, ZVector const &axis, double angle) { self.setAxisAngle(axis, angle); })
METHOD(ZQuaternion, getAxisAngle, bool(ZVector &, double &) const)
METHOD(ZQuaternion, asMatrix, ZMatrix() const)
EXTENSION(ZQuaternion, __mul__, ZQuaternion(ZQuaternion const &) const, times)
METHOD(ZQuaternion, conjugate, ZQuaternion() const)
METHOD(ZQuaternion, inverse, ZQuaternion() const)
METHOD(ZQuaternion, normal, ZQuaternion() const)
METHOD(ZQuaternion, normalize, ZStatus())
TOLERANT(ZQuaternion, isEquivalent, double)
STATIC(ZQuaternion, slerp, ZQuaternion(ZQuaternion const &, ZQuaternion const &, double))
VALUE(ZQuaternion, double)

CONSTRUCTOR_CASE(ZEulerRotation, 1, ZEulerRotation())
CONSTRUCTOR_CASE(ZEulerRotation, 2, ZEulerRotation(ZEulerRotation const &))
CONSTRUCTOR_CASE(ZEulerRotation, 3, ZEulerRotation(ZVector const &, ZEulerRotation::RotationOrder),
                 0)
CONSTRUCTOR_CASE(ZEulerRotation, 4,
                 ZEulerRotation(double, double, double, ZEulerRotation::RotationOrder), 0)
CONSTRUCTOR_OVERLOADS(ZEulerRotation, &new_ZEulerRotation_1, &new_ZEulerRotation_2,
                      &new_ZEulerRotation_3, &new_ZEulerRotation_4)
MEMBER(ZEulerRotation, x, double)
MEMBER(ZEulerRotation, y, double)
MEMBER(ZEulerRotation, z, double)
MEMBER(ZEulerRotation, order, ZEulerRotation::RotationOrder)
METHOD(ZEulerRotation, asMatrix, ZMatrix() const)
METHOD(ZEulerRotation, asQuaternion, ZQuaternion() const)
METHOD(ZEulerRotation, asVector, ZVector() const)
METHOD(ZEulerRotation, reorder, ZEulerRotation(ZEulerRotation::RotationOrder) const)
STATIC(ZEulerRotation, decompose, ZEulerRotation(ZMatrix const &, ZEulerRotation::RotationOrder))
TOLERANT(ZEulerRotation, isEquivalent, double)
VALUE(ZEulerRotation, double)

ROWS_END(rotation_rows)

CONSTANTS(rotation_constants, ENUMERATOR(ZEulerRotation, kXYZ), ENUMERATOR(ZEulerRotation, kYZX),
          ENUMERATOR(ZEulerRotation, kZXY), ENUMERATOR(ZEulerRotation, kXZY),
          ENUMERATOR(ZEulerRotation, kYXZ), ENUMERATOR(ZEulerRotation, kZYX))
