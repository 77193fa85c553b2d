// The function sets of render layers, render passes and image sources.

#include "host/core/ZPlug.h"
#include "host/render/ZFnImageSource.h"
#include "host/render/ZFnRenderLayer.h"
#include "host/render/ZFnRenderPass.h"
#include "wrappers/rows/wrapper_table.h"

ROWS_BEGIN

CONSTRUCTOR_CASE(ZFnRenderLayer, 1, ZFnRenderLayer())
CONSTRUCTOR_CASE(ZFnRenderLayer, 2, ZFnRenderLayer(ZObject &, ZStatus *))
CONSTRUCTOR_OVERLOADS(ZFnRenderLayer, &new_ZFnRenderLayer_1, &new_ZFnRenderLayer_2)
DESTRUCTOR(ZFnRenderLayer)
STATIC(ZFnRenderLayer, className, char const *())
METHOD(ZFnRenderLayer, inLayer, bool(ZObject const &, ZStatus *))
METHOD(ZFnRenderLayer, layerChildren, ZStatus(ZObjectArray &, bool), false)
METHOD(ZFnRenderLayer, inCurrentRenderLayer, bool(ZDagPath const &, ZStatus *))
METHOD(ZFnRenderLayer, listMembers, ZStatus(ZObjectArray &) const)
METHOD(ZFnRenderLayer, isPlugAdjusted, bool(ZPlug const &, ZStatus *) const)
METHOD(ZFnRenderLayer, adjustmentPlug, ZPlug(ZPlug const &, ZStatus *) const)
METHOD(ZFnRenderLayer, externalRenderPasses, ZStatus(ZObjectArray &) const)
METHOD(ZFnRenderLayer, passHasObject, bool(ZObject const &, ZDagPath const &, ZStatus *) const)
METHOD(ZFnRenderLayer, passHasLight, bool(ZObject const &, ZObject const &, ZStatus *) const)
STATIC(ZFnRenderLayer, findLayerByName, ZObject(ZString const &, ZStatus *))
STATIC(ZFnRenderLayer, defaultRenderLayer, ZObject(ZStatus *))
STATIC(ZFnRenderLayer, listAllRenderLayers, ZStatus(ZObjectArray &))
STATIC(ZFnRenderLayer, currentLayer, ZObject(ZStatus *))
PROXY(ZFnRenderLayer)

CONSTRUCTOR_CASE(ZFnRenderPass, 1, ZFnRenderPass())
CONSTRUCTOR_CASE(ZFnRenderPass, 2, ZFnRenderPass(ZObject &, ZStatus *))
CONSTRUCTOR_OVERLOADS(ZFnRenderPass, &new_ZFnRenderPass_1, &new_ZFnRenderPass_2)
DESTRUCTOR(ZFnRenderPass)
STATIC(ZFnRenderPass, className, char const *())
METHOD(ZFnRenderPass, setImplementation, ZPxRenderPassImpl *(ZString const &, ZStatus *))
METHOD(ZFnRenderPass, getImplementation, ZPxRenderPassImpl *(ZStatus *) const)

// An enumeration that crosses as a pointer object to a copy of the value, as the interface has it:
// to scripts it is a buffer of one item.
DESCRIBE(ZFnRenderPass_frameBufferType, Method, (Pack<ZFnRenderPass *>()), ZFnRenderPass,
         "ZFnRenderPass_frameBufferType", "ZPxRenderPassImpl::PassTypeBit *() const")
PyObject *_wrap_ZFnRenderPass_frameBufferType(PyObject *, PyObject *argument) {
    return with_arguments<METH_O, ZFnRenderPass *, ZStatus *>(
        ZFnRenderPass_frameBufferType, argument,
        [](Argument<ZFnRenderPass *> &self, Argument<ZStatus *> &status) {
            auto *copy =
                new ZPxRenderPassImpl::PassTypeBit(self.get()->frameBufferType(status.get()));
            PyObject *object = SWIG_Python_NewPointerObj(
                copy, type_of<OpaqueType<k_p_ZPxRenderPassImpl__PassTypeBit>>(), kOwned);
            if (!object)
                delete copy;
            return object;
        });
}
ROW(ZFnRenderPass_frameBufferType)

METHOD(ZFnRenderPass, frameBufferChannels, unsigned int(ZStatus *) const)
METHOD(ZFnRenderPass, usesFiltering, bool(ZStatus *) const)
METHOD(ZFnRenderPass, passID, ZString(ZStatus *) const)
METHOD(ZFnRenderPass, customTokenString, ZString(ZStatus *) const)
PROXY(ZFnRenderPass)

CONSTRUCTOR_CASE(ZFnImageSource, 1, ZFnImageSource())
CONSTRUCTOR_CASE(ZFnImageSource, 2, ZFnImageSource(ZObject &, ZStatus *))
CONSTRUCTOR_OVERLOADS(ZFnImageSource, &new_ZFnImageSource_1, &new_ZFnImageSource_2)
DESTRUCTOR(ZFnImageSource)
STATIC(ZFnImageSource, className, char const *())
METHOD(ZFnImageSource, getImageName,
       ZString(ZCommonRenderSettingsData::ZpathType, double, ZString const &, ZObject const,
               ZObject const, ZString *, ZStatus *) const,
       0)
METHOD(ZFnImageSource, sourceLayer, ZObject(ZObject const &, ZStatus *))
METHOD(ZFnImageSource, sourceCamera, ZObject(ZObject const &, ZStatus *))
PROXY(ZFnImageSource)

ROWS_END(layer_rows)
