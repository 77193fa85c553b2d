// SPDX-License-Identifier: MIT
#pragma once

// An input of a hardware shader that has a value for each vertex.

#include "host/base/HostApi.h"
#include "host/core/ZString.h"

class ZGeometry;
class ZStatus;

/// An input of a hardware shader that has a value for each vertex, such as position or texture
/// coordinates, or a structure of such inputs, side by side in memory. Copies are independent of
/// each other.
class OPENQUIL_API ZVaryingParameter {
  public:
    /// The type of one value.
    enum ZVaryingParameterType : int {
        /// No values.
        kInvalidParameter = -1,
        /// A structure, whose values are those of its elements.
        kStructure = 0,
        /// 32-bit floating point.
        kFloat = 1,
        /// 64-bit floating point.
        kDouble = 2,
        /// 8-bit integer.
        kChar = 3,
        /// 8-bit unsigned integer.
        kUnsignedChar = 4,
        /// 16-bit integer.
        kInt16 = 5,
        /// 16-bit unsigned integer.
        kUnsignedInt16 = 6,
        /// 32-bit integer.
        kInt32 = 7,
        /// 32-bit unsigned integer.
        kUnsignedInt32 = 8
    };
    /// What the values stand for.
    enum ZVaryingParameterSemantic : int {
        /// Nothing that the host knows.
        kNoSemantic = 0,
        /// Positions in the object's space.
        kPosition = 1,
        /// Unit normals in the object's space.
        kNormal = 2,
        /// Texture coordinates.
        kTexCoord = 3,
        /// Colours.
        kColor = 4,
        /// Weights.
        kWeight = 5,
        /// Unit vectors along growing u.
        kTangent = 7,
        /// Unit vectors along growing v.
        kBinormal = 8
    };

    /// Makes a parameter without name and values.
    ZVaryingParameter();
    /// Makes a parameter of maxDimension values for each vertex; dimensions are kept within 1 to 4.
    /// invertTexCoords turns the second texture coordinate over, v to 1 - v. semanticName is what
    /// the shader calls the semantic.
    ZVaryingParameter(ZString const &name, ZVaryingParameterType type, int minDimension = 1,
                      int maxDimension = 1, ZVaryingParameterSemantic semantic = kNoSemantic,
                      bool invertTexCoords = false, ZString const &semanticName = ZString());
    /// Makes a parameter of `dimension` values for each vertex, which is kept within the least and
    /// greatest dimension. destinationSet is the shader's name for the values. In scripts, six or
    /// seven arguments with a number as the sixth mean the shorter form: give eight, the flag too.
    ZVaryingParameter(ZString const &name, ZVaryingParameterType type, int minDimension,
                      int maxDimension, int dimension,
                      ZVaryingParameterSemantic semantic = kNoSemantic,
                      ZString const &destinationSet = ZString(), bool invertTexCoords = false,
                      ZString const &semanticName = ZString());
    /// Makes a copy, elements included.
    ZVaryingParameter(ZVaryingParameter const &other);
    /// Destroys the parameter.
    ~ZVaryingParameter();
    /// Becomes a copy of the other and returns itself.
    ZVaryingParameter &operator=(ZVaryingParameter const &other);

    /// The name.
    ZString name() const;
    /// The type of one value.
    ZVaryingParameterType type() const;
    /// What the values stand for.
    ZVaryingParameterSemantic semantic() const;
    /// What the shader calls the semantic.
    ZString semanticName() const;
    /// The shader's name for the values.
    ZString destinationSet() const;
    /// The number of values for each vertex; 1 for a structure.
    unsigned int dimension() const;
    /// The number of bytes for each vertex; of a structure, those of its elements together.
    unsigned int getElementSize() const;
    /// The number of bytes for each vertex if all had their greatest dimension.
    unsigned int getMaximumStride() const;

    /// Finds the values for the geometry's vertices: sets `data` to the first one's address, the
    /// number of vertices and the number of bytes from one vertex to the next. Values come as the
    /// parameter's type and dimension: integers stand for 0 to 1 (signed: -1 to 1) by their full
    /// range; missing values are 0, the fourth 1. The memory is good until the parameter's next
    /// getBuffer. Fails with kNotFound where the geometry lacks the source and with
    /// kInvalidParameter when the parameter has no values.
    ZStatus getBuffer(ZGeometry &geometry, void const *&data, unsigned int &elementCount,
                      unsigned int &stride) const;
    /// Chooses the geometry's values to read: their meaning and the name of their set, where empty
    /// stands for the first. Without a call it is the parameter's own semantic. Fails with
    /// kInvalidParameter for a structure and an unknown semantic.
    ZStatus setSource(ZVaryingParameterSemantic semantic, ZString const &setName);
    /// The meaning of the values that are read.
    ZVaryingParameterSemantic getSourceType() const;
    /// The name of the set that is read; empty for the first.
    ZString getSourceSetName() const;

    /// Adds a copy of the element to a structure. Fails with kInvalidParameter when this is no
    /// structure, when the element has no size, and when the structure would have more than 1024
    /// bytes for each vertex or more than 8 levels.
    ZStatus addElement(ZVaryingParameter const &element);
    /// The number of elements of a structure.
    unsigned int numElements() const;
    /// A copy of the element at the index, counted from 0; an empty parameter where there is none.
    ZVaryingParameter getElement(unsigned int index) const;
    /// Takes all elements out. Fails with kInvalidParameter when this is no structure.
    ZStatus removeElements();
    /// A number that changes whenever the source or the elements do.
    unsigned int getUpdateId() const;

  private:
    struct Data;
    Data *data_; // never null
};
