// A class of its own file: it is the longest reader, and compiled for speed where the wrappers are
// compiled for size.

#include "wrappers/argument.h"

int StringArgument::read(PyObject *object, int position) {
    const TpythonObjectWithLock<TpythonLock> holder(object);
    if (!holder.getValue(value))
        raise_expected_string(position);
    return SWIG_OK;
}
