// SPDX-License-Identifier: MIT
#pragma once

// An input of a hardware shader that has one value while an object is drawn.

#include "host/base/HostApi.h"

class ZGeometryList;
class ZPlug;
class ZString;

namespace ZHWRender {
class ZDrawContext;
}

/// An input of a hardware shader that has one value while an object is drawn: numbers, a text, a
/// choice, or the file of a texture. Copies are independent of each other.
///
/// Where the value comes from, in this order: a matrix parameter of 16 floats, the time, the frame
/// number and the picture's size from what is being drawn, as the semantic says; a parameter whose
/// name is that of a scene node's attribute, such as "headlight.intensity", from that attribute;
/// any other from what was set last, at first zeros and empty texts.
class OPENQUIL_API ZUniformParameter {
  public:
    /// What the parameter holds.
    enum DataType : int {
        /// Nothing.
        kTypeUnknown = 0,
        /// Truth values.
        kTypeBool = 1,
        /// Integers.
        kTypeInt = 2,
        /// Floating point numbers, among them vectors, colours and matrices.
        kTypeFloat = 3,
        /// The file of a one-dimensional texture.
        kType1DTexture = 4,
        /// The file of a picture.
        kType2DTexture = 5,
        /// The file of a volume.
        kType3DTexture = 6,
        /// The file of a cube map.
        kTypeCubeTexture = 7,
        /// The file of an environment map.
        kTypeEnvTexture = 8,
        /// A text.
        kTypeString = 9,
        /// One of the fields that setEnumFieldNames names, as its number.
        kTypeEnum = 10
    };
    /// What the value stands for.
    enum DataSemantic : int {
        /// No meaning that the host knows.
        kSemanticUnknown = 0,
        /// A direction in the object's space.
        kSemanticObjectDir = 1,
        /// A direction in world space.
        kSemanticWorldDir = 2,
        /// A direction in the camera's space.
        kSemanticViewDir = 3,
        /// A direction in the picture's space.
        kSemanticProjectionDir = 4,
        /// A position in the object's space.
        kSemanticObjectPos = 5,
        /// A position in world space.
        kSemanticWorldPos = 6,
        /// A position in the camera's space.
        kSemanticViewPos = 7,
        /// A position in the picture's space.
        kSemanticProjectionPos = 8,
        /// A colour.
        kSemanticColor = 9,
        /// A normal.
        kSemanticNormal = 10,
        /// A bump height.
        kSemanticBump = 11,
        /// An environment.
        kSemanticEnvironment = 12,
        /// From the object's space to world space.
        kSemanticWorldMatrix = 13,
        /// The inverse of kSemanticWorldMatrix.
        kSemanticWorldInverseMatrix = 14,
        /// The transposed inverse of kSemanticWorldMatrix.
        kSemanticWorldInverseTransposeMatrix = 15,
        /// From world space to the camera's space.
        kSemanticViewMatrix = 16,
        /// The inverse of kSemanticViewMatrix.
        kSemanticViewInverseMatrix = 17,
        /// The transposed inverse of kSemanticViewMatrix.
        kSemanticViewInverseTransposeMatrix = 18,
        /// From the camera's space to the picture's.
        kSemanticProjectionMatrix = 19,
        /// The inverse of kSemanticProjectionMatrix.
        kSemanticProjectionInverseMatrix = 20,
        /// The transposed inverse of kSemanticProjectionMatrix.
        kSemanticProjectionInverseTransposeMatrix = 21,
        /// From the object's space to the camera's.
        kSemanticWorldViewMatrix = 22,
        /// The inverse of kSemanticWorldViewMatrix.
        kSemanticWorldViewInverseMatrix = 23,
        /// The transposed inverse of kSemanticWorldViewMatrix.
        kSemanticWorldViewInverseTransposeMatrix = 24,
        /// From the object's space to the picture's.
        kSemanticWorldViewProjectionMatrix = 25,
        /// The inverse of kSemanticWorldViewProjectionMatrix.
        kSemanticWorldViewProjectionInverseMatrix = 26,
        /// The transposed inverse of kSemanticWorldViewProjectionMatrix.
        kSemanticWorldViewProjectionInverseTransposeMatrix = 27,
        /// A texture of colours.
        kSemanticColorTexture = 28,
        /// A texture of normals.
        kSemanticNormalTexture = 29,
        /// A texture of heights.
        kSemanticBumpTexture = 30,
        /// A texture of unit vectors.
        kSemanticNormalizationTexture = 31,
        /// A texture of the depths of transparent objects.
        kSemanticTranspDepthTexture = 32,
        /// A texture of the depths of opaque objects.
        kSemanticOpaqueDepthTexture = 33,
        /// The time of the current frame in seconds.
        kSemanticTime = 34,
        /// kSemanticWorldMatrix transposed.
        kSemanticWorldTransposeMatrix = 35,
        /// kSemanticViewMatrix transposed.
        kSemanticViewTransposeMatrix = 36,
        /// kSemanticProjectionMatrix transposed.
        kSemanticProjectionTransposeMatrix = 37,
        /// kSemanticWorldViewMatrix transposed.
        kSemanticWorldViewTransposeMatrix = 38,
        /// kSemanticWorldViewProjectionMatrix transposed.
        kSemanticWorldViewProjectionTransposeMatrix = 39,
        /// From world space to the picture's.
        kSemanticViewProjectionMatrix = 40,
        /// The inverse of kSemanticViewProjectionMatrix.
        kSemanticViewProjectionInverseMatrix = 41,
        /// kSemanticViewProjectionMatrix transposed.
        kSemanticViewProjectionTransposeMatrix = 42,
        /// The transposed inverse of kSemanticViewProjectionMatrix.
        kSemanticViewProjectionInverseTransposeMatrix = 43,
        /// Whether highlights are computed for the viewer's place.
        kSemanticLocalViewer = 44,
        /// The picture's width and height in pixels.
        kSemanticViewportPixelSize = 45,
        /// The colour behind all objects.
        kSemanticBackgroundColor = 46,
        /// The number of the current frame.
        kSemanticFrameNumber = 47
    };

    /// Makes a parameter without a name that holds nothing.
    ZUniformParameter();
    /// Makes a parameter of rows x columns values. A shape without values, or with more than 2^24
    /// or than there is memory for, becomes 1 x 1, of which a line on standard error tells.
    /// userData is the caller's own and is only handed back by userData.
    ZUniformParameter(ZString const &name, DataType type, DataSemantic semantic,
                      unsigned int rows = 1, unsigned int columns = 1, void *userData = nullptr);
    /// Makes a copy with a value of its own.
    ZUniformParameter(ZUniformParameter const &other);
    /// Destroys the parameter.
    ~ZUniformParameter();
    /// Becomes a copy of the other and returns itself.
    ZUniformParameter &operator=(ZUniformParameter const &other);

    /// The name.
    ZString name() const;
    /// What the parameter holds.
    DataType type() const;
    /// What the value stands for.
    DataSemantic semantic() const;
    /// The number of rows of the value.
    unsigned int numRows() const;
    /// The number of columns of the value.
    unsigned int numColumns() const;
    /// The number of values: rows times columns.
    unsigned int numElements() const;
    /// What the constructor was given, null at default.
    void *userData() const;

    /// Sets the least value of an int or float parameter: lesser ones read as this.
    void setRangeMin(double value);
    /// Sets the greatest value of an int or float parameter: greater ones read as this.
    void setRangeMax(double value);
    /// Sets the lower end of the slider that a user interface shows. Values may be less.
    void setSoftRangeMin(double value);
    /// Sets the upper end of the slider that a user interface shows. Values may be greater.
    void setSoftRangeMax(double value);
    /// Tells whether a user interface leaves the parameter out.
    void setUIHidden(bool value);
    /// True when a user interface leaves the parameter out; at first false.
    bool UIHidden() const;
    /// Names the fields of an enumeration, separated by ":", as in "low:medium:high". The first has
    /// the number 0.
    void setEnumFieldNames(ZString const &names);
    /// Tells whether the parameter may be animated.
    void setKeyable(bool value);
    /// True when the parameter may be animated; at first true.
    bool keyable() const;
    /// True when the parameter holds a texture of any kind.
    bool isATexture() const;

    /// True when the value, as it is for the list's current object, is another than the last one
    /// that a getAs function returned, before the first such call, and after setDirty.
    bool hasChanged(ZGeometryList const &geometryList) const;
    /// As the other form, for what a viewport is drawing.
    bool hasChanged(ZHWRender::ZDrawContext const &context) const;
    /// The values, numElements of them, rows one after the other, for the list's current object.
    /// Zeros where the parameter holds no numbers. The memory is the parameter's and good until its
    /// next getAsFloatArray.
    float const *getAsFloatArray(ZGeometryList const &geometryList) const;
    /// As the other form, for what a viewport is drawing.
    float const *getAsFloatArray(ZHWRender::ZDrawContext const &context) const;
    /// Sets the first `count` values, numElements at most. Integers lose fractions.
    void setAsFloatArray(float const *values, unsigned int count);
    /// The first value, for the list's current object; zero where the parameter holds no numbers.
    float getAsFloat(ZGeometryList const &geometryList) const;
    /// As the other form, for what a viewport is drawing.
    float getAsFloat(ZHWRender::ZDrawContext const &context) const;
    /// Sets the first value of a parameter that holds numbers. An integer loses the fraction.
    void setAsFloat(float value);
    /// The text, the texture's file or the name of the enumeration's field; empty for others.
    ZString getAsString(ZGeometryList const &geometryList) const;
    /// As the other form, for what a viewport is drawing.
    ZString getAsString(ZHWRender::ZDrawContext const &context) const;
    /// Sets the text, the texture's file, or an enumeration to the field of that name. Does nothing
    /// when the parameter holds none of them or has no such field.
    void setAsString(ZString const &value);
    /// True when the first value is not zero; for the list's current object.
    bool getAsBool(ZGeometryList const &geometryList) const;
    /// As the other form, for what a viewport is drawing.
    bool getAsBool(ZHWRender::ZDrawContext const &context) const;
    /// Sets the first value of a parameter that holds numbers to 0 or 1.
    void setAsBool(bool value);
    /// The first value without its fraction, for the list's current object; beyond the range of
    /// integers the nearest one.
    int getAsInt(ZGeometryList const &geometryList) const;
    /// As the other form, for what a viewport is drawing.
    int getAsInt(ZHWRender::ZDrawContext const &context) const;
    /// Sets the first value of a parameter that holds numbers.
    void setAsInt(int value);

    /// Sets the name that a user interface shows.
    void setUINiceName(ZString const &name);
    /// The attribute of a scene node that the parameter's name stands for, such as
    /// "headlight.intensity"; a plug without an attribute when there is none.
    ZPlug getPlug() const;
    /// What drives that attribute: the file name of the texture on a material's diffuse colour. A
    /// plug without an attribute when nothing does.
    ZPlug getSource() const;
    /// Makes hasChanged true until the value is read again.
    void setDirty();

  private:
    struct Data;
    Data *data_; // never null
};
