// Matrices in both precisions.

#include "devhost/core_module/items.h"
#include "devhost/core_module/operators.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZMatrix.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

/// From sixteen numbers, row by row, or four sequences of four.
template <class Matrix>
PyObject *matrix_from_sequence(PyObject *sequence) {
    const swig::SwigPtr_PyObject items(PySequence_Tuple(sequence));
    if (!items)
        return nullptr;
    Matrix matrix;
    const Py_ssize_t count = PyTuple_GET_SIZE(items.get());
    if (count == 16) {
        if (!read_items(items.get(), &matrix.matrix[0][0]))
            return nullptr;
        return constructed(new Matrix(matrix));
    }
    bool fits = count == 4;
    for (Py_ssize_t i = 0; fits && i < 4; ++i) {
        const swig::SwigPtr_PyObject row(PySequence_Tuple(PyTuple_GET_ITEM(items.get(), i)));
        if (!row)
            return nullptr;
        fits = PyTuple_GET_SIZE(row.get()) == 4;
        if (fits && !read_items(row.get(), matrix.matrix[i]))
            return nullptr;
    }
    if (fits)
        return constructed(new Matrix(matrix));
    PyErr_Format(PyExc_ValueError, "%s takes 16 numbers or 4 rows of 4",
                 type_of<Matrix>()->name + 3);
    return nullptr;
}

template <class Matrix>
PyObject *element(Matrix &self, long row, long column) {
    if (!find_index(row, 4) || !find_index(column, 4))
        return nullptr;
    return PyFloat_FromDouble(self.matrix[row][column]);
}

template <class Matrix, class Number>
PyObject *set_element(Matrix &self, long row, long column, Number value) {
    if (!find_index(row, 4) || !find_index(column, 4))
        return nullptr;
    self.matrix[row][column] = value;
    Py_RETURN_NONE;
}

template <class Matrix>
PyObject *row_list(Matrix &self, long row) {
    if (!find_index(row, 4))
        return nullptr;
    return make_list(4, [&](Py_ssize_t column) { return self.matrix[row][column]; });
}

template <class Matrix>
PyObject *rows(Matrix &self) {
    return make_list(4, [&](Py_ssize_t row) { return row_list(self, row); });
}

template <class Matrix>
PyObject *matrix_representation(Matrix &self) {
    return represent(type_of<Matrix>(), rows(self));
}

template <class Matrix>
unsigned int row_count(Matrix &) {
    return 4;
}

#define MATRIX(Class, Other, Number)                                                     \
    CONSTRUCTOR_CASE(Class, 1, Class())                                                  \
    CONSTRUCTOR_CASE(Class, 2, Class(Class const &))                                     \
    CONSTRUCTOR_CASE(Class, 3, Class(Other const &))                                     \
    CONSTRUCTOR_EXTENSION_CASE(Class, 4, Class(PyObject *), matrix_from_sequence<Class>) \
    CONSTRUCTOR_OVERLOADS(Class, &new_##Class##_1, &new_##Class##_2, &new_##Class##_3,   \
                          &new_##Class##_4)                                              \
    EXTENSION(Class, __call__, Number(long, long) const, element<Class>)                 \
    EXTENSION(Class, getElement, Number(long, long) const, element<Class>)               \
    EXTENSION(Class, setElement, void(long, long, Number), (set_element<Class, Number>)) \
    EXTENSION(Class, __len__, unsigned int() const, row_count)                           \
    EXTENSION(Class, __getitem__, PyObject *(long) const, row_list<Class>)               \
    EXTENSION(                                                                           \
        Class, setToIdentity, void(), +[](Class &self) { self.setToIdentity(); })        \
    EXTENSION(                                                                           \
        Class, setToProduct, void(Class const &, Class const &),                         \
        +[](Class &self, Class const &left, Class const &right) {                        \
            self.setToProduct(left, right);                                              \
        })                                                                               \
    EXTENSION_CASE(Class, __mul__, 1, Class(Class const &) const, times)                 \
    EXTENSION_CASE(Class, __mul__, 2, Class(Number) const, times)                        \
    OVERLOADS(Class, __mul__, &Class##___mul___1, &Class##___mul___2)                    \
    EXTENSION(Class, __rmul__, Class(Number) const, times)                               \
    EXTENSION(Class, __add__, Class(Class const &) const, plus)                          \
    EXTENSION(Class, __sub__, Class(Class const &) const, minus)                         \
    METHOD(Class, transpose, Class() const)                                              \
    METHOD(Class, inverse, Class() const)                                                \
    METHOD(Class, isSingular, bool() const)                                              \
    METHOD(Class, det4x4, Number() const)                                                \
    METHOD(Class, det3x3, Number() const)                                                \
    EXTENSION_CASE(                                                                      \
        Class, isEquivalent, 1, bool(Class const &) const,                               \
        +[](Class &self, Class const &other) { return self.isEquivalent(other); })       \
    METHOD_CASE(Class, isEquivalent, 2, bool(Class const &, Number) const)               \
    OVERLOADS(Class, isEquivalent, &Class##_isEquivalent_1, &Class##_isEquivalent_2)     \
    EXTENSION(Class, __repr__, PyObject *() const, matrix_representation<Class>)         \
    EQUALITY(Class)                                                                      \
    DESTRUCTOR(Class)                                                                    \
    PROXY(Class)

MATRIX(ZMatrix, ZFloatMatrix, double)
MATRIX(ZFloatMatrix, ZMatrix, float)

ROWS_END(matrix_rows)
