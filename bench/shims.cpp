// SPDX-License-Identifier: MIT
// Plain C functions over the host's classes: what a script would load with ctypes, and the loops
// that stand for a host that calls its callbacks.
#include "host/core/ZFloatVector.h"
#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderCallback.h"
#include "host/render/ZRenderUtil.h"
#include "host/render/ZRenderView.h"

extern "C" {

struct FloatVector {
    float x, y, z;
};

OPENQUIL_API unsigned int noise_table_size() {
    return ZRenderUtil::noiseTableSize();
}

OPENQUIL_API float noise1(float x) {
    return ZRenderUtil::noise1(x);
}

OPENQUIL_API float noise4(float x, float y, float z, float t, unsigned short prime) {
    return ZRenderUtil::noise4(x, y, z, t, prime);
}

OPENQUIL_API RV_PIXEL *new_pixel() {
    return new RV_PIXEL;
}
OPENQUIL_API float pixel_r_get(const RV_PIXEL *pixel) {
    return pixel->r;
}

OPENQUIL_API RV_AOV *new_aov() {
    return new RV_AOV;
}
OPENQUIL_API void aov_channels_set(RV_AOV *layer, unsigned int channels) {
    layer->numberOfChannels = channels;
}

// The text stays valid until the next call; null on failure.
OPENQUIL_API const wchar_t *relative_file_name(const wchar_t *name) {
    static ZString result;
    ZStatus status;
    result = ZRenderUtil::relativeFileName(ZString(name), &status);
    return status.error() ? nullptr : result.asW();
}

OPENQUIL_API FloatVector maximum_specular_reflection(const void *opaque, const ZFloatVector *light,
                                                     const ZFloatVector *point,
                                                     const ZFloatVector *normal,
                                                     const ZFloatVector *ray) {
    const ZFloatVector v =
        ZRenderUtil::maximumSpecularReflection(opaque, *light, *point, *normal, *ray);
    return {v.x, v.y, v.z};
}

OPENQUIL_API ZGLFunctionTable *function_table() {
    return ZHardwareRenderer::theRenderer()->glFunctionTable();
}
OPENQUIL_API void gl_color3f(ZGLFunctionTable *table, float red, float green, float blue) {
    table->glColor3f(red, green, blue);
}
OPENQUIL_API void gl_vertex3fv(ZGLFunctionTable *table, const float *vertex) {
    table->glVertex3fv(vertex);
}
OPENQUIL_API void gl_get_integerv(ZGLFunctionTable *table, unsigned int name, int *values) {
    table->glGetIntegerv(name, values);
}
OPENQUIL_API void gl_uniform4f(ZGLFunctionTable *table, int location, float x, float y, float z,
                               float w) {
    table->glUniform4fARB(location, x, y, z, w);
}

// Both loops return how often the answer was true.
OPENQUIL_API unsigned int call_render_callback(ZRenderCallback *callback, unsigned int count) {
    const ZRenderData data;
    unsigned int answers = 0;
    for (unsigned int i = 0; i < count; ++i)
        answers += callback->renderCallback(data);
    return answers;
}

OPENQUIL_API unsigned int call_function(bool (*function)(const void *), unsigned int count) {
    const ZRenderData data;
    unsigned int answers = 0;
    for (unsigned int i = 0; i < count; ++i)
        answers += function(&data);
    return answers;
}
}
