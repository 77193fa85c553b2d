# SPDX-License-Identifier: MIT
# cython: language_level=2
# distutils: language=c++
"""The measured calls as one would write them for Cython."""
from cpython.unicode cimport PyUnicode_AS_UNICODE, PyUnicode_GET_SIZE
from libcpp cimport bool as bool_t
from libc.stddef cimport wchar_t
from libc.stdint cimport uintptr_t

cdef extern from "Python.h":
    unicode PyUnicode_FromWideChar(const wchar_t *text, Py_ssize_t length)

cdef extern from "host/core/ZStatus.h":
    cppclass ZStatus:
        ZStatus()
        bool_t error()
        ZString errorString()

cdef extern from "host/core/ZString.h":
    cppclass ZString:
        ZString()
        ZString(const wchar_t *text, unsigned int count)
        const char *asChar()
        const wchar_t *asW()
        unsigned int numChars()

cdef extern from "host/core/ZFloatVector.h":
    cppclass ZFloatVector:
        float x, y, z
        ZFloatVector()
        ZFloatVector(float, float, float)
        ZFloatVector(const ZFloatVector &)

cdef extern from "host/render/ZRenderView.h":
    cppclass RV_PIXEL:
        float r, g, b, a
    cppclass RV_AOV:
        unsigned int numberOfChannels

cdef extern from "host/render/ZRenderUtil.h" namespace "ZRenderUtil":
    unsigned int noiseTableSize()
    float c_noise1 "ZRenderUtil::noise1"(float)
    float c_noise4 "ZRenderUtil::noise4"(float, float, float, float, unsigned short)
    ZString relativeFileName(const ZString &, ZStatus *)
    ZFloatVector maximumSpecularReflection(const void *, const ZFloatVector &,
                                           const ZFloatVector &, const ZFloatVector &,
                                           const ZFloatVector &, ZStatus *)

cdef extern from "host/render/ZRenderCallback.h":
    cppclass ZRenderData:
        pass
    cppclass ZRenderCallback:
        pass

cdef extern from *:
    """
    class CythonCallback : public ZRenderCallback {
      public:
        using Call = bool (*)(PyObject *, const ZRenderData &);
        CythonCallback(void *self, Call call)
            : self_(static_cast<PyObject *>(self)), call_(call) {}
        bool renderCallback(const ZRenderData &data) override { return call_(self_, data); }

      private:
        PyObject *self_;
        Call call_;
    };
    """
    cppclass CythonCallback:
        CythonCallback(void *self, bool_t (*call)(object, const ZRenderData &))


cdef extern from "host/core/ZVector.h":
    cppclass ZVector:
        double x, y, z
        ZVector()
        ZVector(double, double, double)
        ZVector operator+(const ZVector &)
        ZVector operator*(double)
        double length()


cdef class Pixel:
    cdef RV_PIXEL *pointer

    def __cinit__(self):
        self.pointer = new RV_PIXEL()

    def __dealloc__(self):
        del self.pointer

    @property
    def r(self):
        return self.pointer.r

    @r.setter
    def r(self, float value):
        self.pointer.r = value


cdef class ScriptVector:
    cdef ZVector vector

    def __init__(self, double x=0, double y=0, double z=0):
        self.vector = ZVector(x, y, z)

    def length(self):
        return self.vector.length()

    def __add__(ScriptVector self, ScriptVector other):
        cdef ScriptVector result = ScriptVector.__new__(ScriptVector)
        result.vector = self.vector + other.vector
        return result

    def __mul__(ScriptVector self, double factor):
        cdef ScriptVector result = ScriptVector.__new__(ScriptVector)
        result.vector = self.vector * factor
        return result


class Util(object):
    @staticmethod
    def noise_size():
        return noiseTableSize()

    @staticmethod
    def noise4(float x, float y, float z, float t, unsigned short prime):
        return c_noise4(x, y, z, t, prime)


cdef class Aov:
    cdef RV_AOV *pointer

    def __cinit__(self):
        self.pointer = new RV_AOV()

    def __dealloc__(self):
        del self.pointer


cdef class Vector:
    cdef ZFloatVector *pointer

    def __dealloc__(self):
        del self.pointer


cdef class RenderData:
    cdef const ZRenderData *pointer


cdef bool_t forward(object self, const ZRenderData &data) with gil:
    cdef RenderData argument = RenderData.__new__(RenderData)
    argument.pointer = &data
    return self.renderCallback(argument)


cdef class Callback:
    cdef CythonCallback *pointer

    def __cinit__(self, target):
        self.pointer = new CythonCallback(<void *>target, forward)

    def __dealloc__(self):
        del self.pointer

    def __long__(self):
        return <uintptr_t>self.pointer


cdef raise_status(ZStatus &status):
    raise RuntimeError(status.errorString().asChar())


def noise_table_size():
    return noiseTableSize()


def noise1(float x):
    return c_noise1(x)


def noise4(float x, float y, float z, float t, unsigned short prime):
    return c_noise4(x, y, z, t, prime)


def pixel_r_get(Pixel pixel not None):
    return pixel.pointer.r


def aov_channels_set(Aov layer not None, unsigned int channels):
    layer.pointer.numberOfChannels = channels


def relative_file_name(unicode name not None):
    cdef ZStatus status
    cdef ZString result = relativeFileName(
        ZString(<const wchar_t *>PyUnicode_AS_UNICODE(name), PyUnicode_GET_SIZE(name)), &status)
    if status.error():
        raise_status(status)
    return PyUnicode_FromWideChar(result.asW(), result.numChars())


def maximum_specular_reflection(opaque, Vector light not None, Vector point not None,
                                Vector normal not None, Vector ray not None):
    cdef ZStatus status
    cdef Vector result = Vector.__new__(Vector)
    result.pointer = new ZFloatVector(maximumSpecularReflection(
        NULL if opaque is None else <void *>opaque, light.pointer[0], point.pointer[0],
        normal.pointer[0], ray.pointer[0], &status))
    if status.error():
        raise_status(status)
    return result


new_pixel = Pixel
new_aov = Aov
new_callback = Callback


def new_vector(float x, float y, float z):
    cdef Vector vector = Vector.__new__(Vector)
    vector.pointer = new ZFloatVector(x, y, z)
    return vector


def vector_tuple(Vector vector not None):
    return vector.pointer.x, vector.pointer.y, vector.pointer.z
