// SPDX-License-Identifier: MIT
// Matrices in both precisions.

#include "devhost/core_module/items.h"
#include "devhost/core_module/operators.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZMatrix.h"

namespace {

using namespace binding;

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

} // namespace

#define ROW_LIST "devhost/core_module/matrices.def"
#define ROW_TABLE matrix_rows
#include "wrappers/rows/make_rows.h"
