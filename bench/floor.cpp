// SPDX-License-Identifier: MIT
// The floor that the module's wrappers are measured against: the same calls written by hand for
// the interpreter's own interface, with the same checks and nothing that can be left out.
#include "host/core/ZFloatVector.h"
#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderCallback.h"
#include "host/render/ZRenderUtil.h"
#include "host/render/ZRenderView.h"

#include <Python.h>

#include <cfloat>
#include <climits>
#include <initializer_list>
#include <new>

namespace {

// ---- pointer objects: one Python type per host class ------------------------------------------

template <typename T>
struct Pointer {
    PyObject_HEAD T *address;
    bool owned;

    static PyTypeObject type;

    static PyObject *make(T *address, bool owned) {
        Pointer *self = PyObject_New(Pointer, &type);
        if (!self)
            return nullptr;
        self->address = address;
        self->owned = owned;
        return reinterpret_cast<PyObject *>(self);
    }

    static void destroy(PyObject *object) {
        Pointer *self = reinterpret_cast<Pointer *>(object);
        if (self->owned)
            delete self->address;
        PyObject_Del(object);
    }

    static PyObject *address_of(PyObject *object) {
        return PyLong_FromVoidPtr(const_cast<void *>(
            static_cast<const void *>(reinterpret_cast<Pointer *>(object)->address)));
    }

    static T *get(PyObject *object) {
        if (Py_TYPE(object) == &type)
            return reinterpret_cast<Pointer *>(object)->address;
        PyErr_Format(PyExc_TypeError, "expected %s, not %s", type.tp_name,
                     Py_TYPE(object)->tp_name);
        return nullptr;
    }
};

template <typename T>
PyTypeObject make_type(const char *name) {
    static PyNumberMethods numbers{};
    numbers.nb_long = Pointer<T>::address_of;
    PyTypeObject type{};
    Py_REFCNT(&type) = 1;
    type.tp_name = name;
    type.tp_basicsize = sizeof(Pointer<T>);
    type.tp_dealloc = Pointer<T>::destroy;
    type.tp_as_number = &numbers;
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    return type;
}

template <>
PyTypeObject Pointer<RV_PIXEL>::type = make_type<RV_PIXEL>("_floor.RV_PIXEL");
template <>
PyTypeObject Pointer<RV_AOV>::type = make_type<RV_AOV>("_floor.RV_AOV");
template <>
PyTypeObject Pointer<ZFloatVector>::type = make_type<ZFloatVector>("_floor.ZFloatVector");
template <>
PyTypeObject Pointer<const ZRenderData>::type = make_type<const ZRenderData>("_floor.ZRenderData");
template <>
PyTypeObject Pointer<ZRenderCallback>::type = make_type<ZRenderCallback>("_floor.ZRenderCallback");
template <>
PyTypeObject Pointer<ZGLFunctionTable>::type = make_type<ZGLFunctionTable>("_floor.FunctionTable");
template <>
PyTypeObject Pointer<ZGLfloat>::type = make_type<ZGLfloat>("_floor.ZGLfloat");
template <>
PyTypeObject Pointer<ZGLint>::type = make_type<ZGLint>("_floor.ZGLint");

// ---- numbers ----------------------------------------------------------------------------------

bool read(PyObject *object, float &value) {
    double wide;
    if (PyFloat_CheckExact(object)) {
        wide = PyFloat_AS_DOUBLE(object);
    } else {
        wide = PyFloat_AsDouble(object);
        if (wide == -1.0 && PyErr_Occurred())
            return false;
    }
    if (wide < -FLT_MAX || wide > FLT_MAX) {
        PyErr_SetString(PyExc_OverflowError, "number out of range for float");
        return false;
    }
    value = static_cast<float>(wide);
    return true;
}

bool read(PyObject *object, long least, long most, long &value) {
    if (PyInt_CheckExact(object)) {
        value = PyInt_AS_LONG(object);
    } else {
        value = PyInt_AsLong(object);
        if (value == -1 && PyErr_Occurred())
            return false;
    }
    if (value < least || value > most) {
        PyErr_SetString(PyExc_OverflowError, "integer out of range");
        return false;
    }
    return true;
}

bool has_count(PyObject *arguments, Py_ssize_t count) {
    if (PyTuple_GET_SIZE(arguments) == count)
        return true;
    PyErr_Format(PyExc_TypeError, "expected %zd arguments, got %zd", count,
                 PyTuple_GET_SIZE(arguments));
    return false;
}

PyObject *raise(const ZStatus &status) {
    PyErr_SetString(PyExc_RuntimeError, status.errorString().asChar());
    return nullptr;
}

// ---- the measured functions -------------------------------------------------------------------

PyObject *noise_table_size(PyObject *, PyObject *) {
    return PyInt_FromSize_t(ZRenderUtil::noiseTableSize());
}

PyObject *noise1(PyObject *, PyObject *argument) {
    float x;
    if (!read(argument, x))
        return nullptr;
    return PyFloat_FromDouble(ZRenderUtil::noise1(x));
}

PyObject *noise4(PyObject *, PyObject *arguments) {
    float x, y, z, t;
    long prime;
    if (!has_count(arguments, 5) || !read(PyTuple_GET_ITEM(arguments, 0), x) ||
        !read(PyTuple_GET_ITEM(arguments, 1), y) || !read(PyTuple_GET_ITEM(arguments, 2), z) ||
        !read(PyTuple_GET_ITEM(arguments, 3), t) ||
        !read(PyTuple_GET_ITEM(arguments, 4), 0, USHRT_MAX, prime))
        return nullptr;
    return PyFloat_FromDouble(ZRenderUtil::noise4(x, y, z, t, static_cast<unsigned short>(prime)));
}

PyObject *pixel_r_get(PyObject *, PyObject *argument) {
    RV_PIXEL *pixel = Pointer<RV_PIXEL>::get(argument);
    return pixel ? PyFloat_FromDouble(pixel->r) : nullptr;
}

PyObject *aov_channels_set(PyObject *, PyObject *arguments) {
    RV_AOV *layer;
    long channels;
    if (!has_count(arguments, 2) ||
        !(layer = Pointer<RV_AOV>::get(PyTuple_GET_ITEM(arguments, 0))) ||
        !read(PyTuple_GET_ITEM(arguments, 1), 0, UINT_MAX, channels))
        return nullptr;
    layer->numberOfChannels = static_cast<unsigned int>(channels);
    Py_RETURN_NONE;
}

PyObject *relative_file_name(PyObject *, PyObject *argument) {
    if (!PyUnicode_Check(argument)) {
        PyErr_Format(PyExc_TypeError, "expected unicode, not %s", Py_TYPE(argument)->tp_name);
        return nullptr;
    }
    static_assert(sizeof(Py_UNICODE) == sizeof(wchar_t));
    const ZString name(reinterpret_cast<const wchar_t *>(PyUnicode_AS_UNICODE(argument)),
                       static_cast<unsigned>(PyUnicode_GET_SIZE(argument)));
    ZStatus status;
    const ZString result = ZRenderUtil::relativeFileName(name, &status);
    if (status.error())
        return raise(status);
    return PyUnicode_FromUnicode(reinterpret_cast<const Py_UNICODE *>(result.asW()),
                                 result.numChars());
}

// The class whose instances carry by-value results as "this", as the module's proxy classes do.
PyTypeObject *vector_proxy;
PyObject *this_name;
PyObject *no_arguments;

PyObject *in_proxy(PyObject *pointer) {
    PyObject *instance = vector_proxy->tp_new(vector_proxy, no_arguments, nullptr);
    if (instance && PyObject_SetAttr(instance, this_name, pointer) < 0)
        Py_CLEAR(instance);
    Py_DECREF(pointer);
    return instance;
}

PyObject *maximum_specular_reflection(PyObject *, PyObject *arguments) {
    const ZFloatVector *light, *point, *normal, *ray;
    if (!has_count(arguments, 5) ||
        !(light = Pointer<ZFloatVector>::get(PyTuple_GET_ITEM(arguments, 1))) ||
        !(point = Pointer<ZFloatVector>::get(PyTuple_GET_ITEM(arguments, 2))) ||
        !(normal = Pointer<ZFloatVector>::get(PyTuple_GET_ITEM(arguments, 3))) ||
        !(ray = Pointer<ZFloatVector>::get(PyTuple_GET_ITEM(arguments, 4))))
        return nullptr;
    PyObject *opaque = PyTuple_GET_ITEM(arguments, 0);
    ZStatus status;
    const ZFloatVector result = ZRenderUtil::maximumSpecularReflection(
        opaque == Py_None ? nullptr : opaque, *light, *point, *normal, *ray, &status);
    if (status.error())
        return raise(status);
    return Pointer<ZFloatVector>::make(new ZFloatVector(result), true);
}

PyObject *maximum_specular_reflection_in_proxy(PyObject *module, PyObject *arguments) {
    PyObject *pointer = maximum_specular_reflection(module, arguments);
    return pointer ? in_proxy(pointer) : nullptr;
}

ZGLFunctionTable *table_in(PyObject *arguments) {
    return Pointer<ZGLFunctionTable>::get(PyTuple_GET_ITEM(arguments, 0));
}

PyObject *gl_color3f(PyObject *, PyObject *arguments) {
    ZGLFunctionTable *table;
    float red, green, blue;
    if (!has_count(arguments, 4) || !(table = table_in(arguments)) ||
        !read(PyTuple_GET_ITEM(arguments, 1), red) ||
        !read(PyTuple_GET_ITEM(arguments, 2), green) || !read(PyTuple_GET_ITEM(arguments, 3), blue))
        return nullptr;
    table->glColor3f(red, green, blue);
    Py_RETURN_NONE;
}

PyObject *gl_vertex3fv(PyObject *, PyObject *arguments) {
    ZGLFunctionTable *table;
    const ZGLfloat *vertex;
    if (!has_count(arguments, 2) || !(table = table_in(arguments)) ||
        !(vertex = Pointer<ZGLfloat>::get(PyTuple_GET_ITEM(arguments, 1))))
        return nullptr;
    table->glVertex3fv(vertex);
    Py_RETURN_NONE;
}

PyObject *gl_get_integerv(PyObject *, PyObject *arguments) {
    ZGLFunctionTable *table;
    long name;
    ZGLint *values;
    if (!has_count(arguments, 3) || !(table = table_in(arguments)) ||
        !read(PyTuple_GET_ITEM(arguments, 1), 0, UINT_MAX, name) ||
        !(values = Pointer<ZGLint>::get(PyTuple_GET_ITEM(arguments, 2))))
        return nullptr;
    table->glGetIntegerv(static_cast<ZGLenum>(name), values);
    Py_RETURN_NONE;
}

PyObject *gl_uniform4f(PyObject *, PyObject *arguments) {
    ZGLFunctionTable *table;
    long location;
    float x, y, z, w;
    if (!has_count(arguments, 6) || !(table = table_in(arguments)) ||
        !read(PyTuple_GET_ITEM(arguments, 1), INT_MIN, INT_MAX, location) ||
        !read(PyTuple_GET_ITEM(arguments, 2), x) || !read(PyTuple_GET_ITEM(arguments, 3), y) ||
        !read(PyTuple_GET_ITEM(arguments, 4), z) || !read(PyTuple_GET_ITEM(arguments, 5), w))
        return nullptr;
    table->glUniform4fARB(static_cast<ZGLint>(location), x, y, z, w);
    Py_RETURN_NONE;
}

// ---- the callback that forwards to Python -----------------------------------------------------

PyObject *render_callback_name;

/// Calls a Python method, the usual one without what is only needed for others.
PyObject *call_method(PyObject *self, PyObject *name, PyObject *argument) {
    PyObject *method = PyObject_GetAttr(self, name);
    if (!method)
        return nullptr;
    PyObject *function = PyMethod_Check(method) ? PyMethod_GET_FUNCTION(method) : nullptr;
    PyObject *result;
    if (function && PyMethod_GET_SELF(method) && PyFunction_Check(function) &&
        !PyFunction_GET_CLOSURE(function)) {
        PyObject *arguments[] = {PyMethod_GET_SELF(method), argument};
        result = PyEval_EvalCodeEx(reinterpret_cast<PyCodeObject *>(PyFunction_GET_CODE(function)),
                                   PyFunction_GET_GLOBALS(function), nullptr, arguments, 2, nullptr,
                                   0, nullptr, 0, nullptr);
    } else {
        result = PyObject_CallFunctionObjArgs(method, argument, nullptr);
    }
    Py_DECREF(method);
    return result;
}

class ForwardingCallback : public ZRenderCallback {
  public:
    explicit ForwardingCallback(PyObject *self) : self_(self) {}

    // The host may call from any of its threads, so the lock is asked for as it must be.
    bool renderCallback(ZRenderData const &data) override {
        const PyGILState_STATE state = PyGILState_Ensure();
        bool answer = false;
        if (PyObject *argument = Pointer<const ZRenderData>::make(&data, false)) {
            PyObject *result = call_method(self_, render_callback_name, argument);
            Py_DECREF(argument);
            if (result) {
                answer = PyObject_IsTrue(result) == 1;
                Py_DECREF(result);
            }
        }
        if (PyErr_Occurred())
            PyErr_Print();
        PyGILState_Release(state);
        return answer;
    }

  private:
    PyObject *self_; // not counted: the Python side owns this object
};

// ---- making the arguments ---------------------------------------------------------------------

PyObject *new_pixel(PyObject *, PyObject *) {
    return Pointer<RV_PIXEL>::make(new RV_PIXEL, true);
}

PyObject *new_aov(PyObject *, PyObject *) {
    return Pointer<RV_AOV>::make(new RV_AOV, true);
}

PyObject *new_vector(PyObject *, PyObject *arguments) {
    float x, y, z;
    if (!PyArg_ParseTuple(arguments, "fff", &x, &y, &z))
        return nullptr;
    return Pointer<ZFloatVector>::make(new ZFloatVector(x, y, z), true);
}

PyObject *vector_tuple(PyObject *, PyObject *argument) {
    const ZFloatVector *vector = Pointer<ZFloatVector>::get(argument);
    return vector ? Py_BuildValue("fff", vector->x, vector->y, vector->z) : nullptr;
}

PyObject *new_callback(PyObject *, PyObject *self) {
    return Pointer<ZRenderCallback>::make(new ForwardingCallback(self), true);
}

PyObject *function_table(PyObject *, PyObject *) {
    return Pointer<ZGLFunctionTable>::make(ZHardwareRenderer::theRenderer()->glFunctionTable(),
                                           false);
}

// The memory is never freed: a few numbers, once in a process.
PyObject *new_floats(PyObject *, PyObject *arguments) {
    float x, y, z;
    if (!PyArg_ParseTuple(arguments, "fff", &x, &y, &z))
        return nullptr;
    return Pointer<ZGLfloat>::make(new ZGLfloat[3]{x, y, z}, false);
}

PyObject *new_integers(PyObject *, PyObject *) {
    return Pointer<ZGLint>::make(new ZGLint[4]{}, false);
}

PyObject *integers_tuple(PyObject *, PyObject *argument) {
    const ZGLint *values = Pointer<ZGLint>::get(argument);
    return values ? Py_BuildValue("iiii", values[0], values[1], values[2], values[3]) : nullptr;
}

PyObject *set_vector_proxy(PyObject *, PyObject *proxy) {
    if (!PyType_Check(proxy)) {
        PyErr_SetString(PyExc_TypeError, "expected a class");
        return nullptr;
    }
    Py_INCREF(proxy);
    vector_proxy = reinterpret_cast<PyTypeObject *>(proxy);
    Py_RETURN_NONE;
}

PyMethodDef methods[] = {
    {"noise_table_size", noise_table_size, METH_NOARGS, nullptr},
    {"noise1", noise1, METH_O, nullptr},
    {"noise4", noise4, METH_VARARGS, nullptr},
    {"pixel_r_get", pixel_r_get, METH_O, nullptr},
    {"aov_channels_set", aov_channels_set, METH_VARARGS, nullptr},
    {"relative_file_name", relative_file_name, METH_O, nullptr},
    {"maximum_specular_reflection", maximum_specular_reflection, METH_VARARGS, nullptr},
    {"maximum_specular_reflection_in_proxy", maximum_specular_reflection_in_proxy, METH_VARARGS,
     nullptr},
    {"gl_color3f", gl_color3f, METH_VARARGS, nullptr},
    {"gl_vertex3fv", gl_vertex3fv, METH_VARARGS, nullptr},
    {"gl_get_integerv", gl_get_integerv, METH_VARARGS, nullptr},
    {"gl_uniform4f", gl_uniform4f, METH_VARARGS, nullptr},
    {"new_pixel", new_pixel, METH_NOARGS, nullptr},
    {"new_aov", new_aov, METH_NOARGS, nullptr},
    {"new_vector", new_vector, METH_VARARGS, nullptr},
    {"vector_tuple", vector_tuple, METH_O, nullptr},
    {"new_callback", new_callback, METH_O, nullptr},
    {"function_table", function_table, METH_NOARGS, nullptr},
    {"new_floats", new_floats, METH_VARARGS, nullptr},
    {"new_integers", new_integers, METH_NOARGS, nullptr},
    {"integers_tuple", integers_tuple, METH_O, nullptr},
    {"set_vector_proxy", set_vector_proxy, METH_O, nullptr},
    {nullptr, nullptr, 0, nullptr}};

} // namespace

extern "C" OPENQUIL_API void init_floor() {
    for (PyTypeObject *type :
         {&Pointer<RV_PIXEL>::type, &Pointer<RV_AOV>::type, &Pointer<ZFloatVector>::type,
          &Pointer<const ZRenderData>::type, &Pointer<ZRenderCallback>::type,
          &Pointer<ZGLFunctionTable>::type, &Pointer<ZGLfloat>::type, &Pointer<ZGLint>::type})
        if (PyType_Ready(type) < 0)
            return;
    this_name = PyString_InternFromString("this");
    render_callback_name = PyString_InternFromString("renderCallback");
    no_arguments = PyTuple_New(0);
    if (this_name && render_callback_name && no_arguments)
        Py_InitModule("_floor", methods);
}
