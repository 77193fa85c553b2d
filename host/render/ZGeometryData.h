// SPDX-License-Identifier: MIT
#pragma once

// One stream of vertex values or indices.

#include "host/base/HostApi.h"

/// One stream of vertex values, or of numbers that describe the geometry: so many elements of one
/// to four values each, side by side in memory. The object is a handle: copies share the stream.
class OPENQUIL_API ZGeometryData {
  public:
    /// How many values make one element.
    enum ElementSize : int {
        /// There are no elements.
        kInvalidElementSize = 0,
        /// One value.
        kOne = 1,
        /// Two values, such as texture coordinates.
        kTwo = 2,
        /// Three values, such as positions.
        kThree = 3,
        /// Four values.
        kFour = 4
    };
    /// The type of one value.
    enum ElementType : int {
        /// There are no values.
        kInvalidElementType = -1,
        /// 32-bit floating point.
        kFloat = 0,
        /// 64-bit floating point.
        kDouble = 1,
        /// 8-bit integer.
        kChar = 2,
        /// 8-bit unsigned integer.
        kUnsignedChar = 3,
        /// 16-bit integer.
        kInt16 = 4,
        /// 16-bit unsigned integer.
        kUnsignedInt16 = 5,
        /// 32-bit integer.
        kInt32 = 6,
        /// 32-bit unsigned integer.
        kUnsignedInt32 = 7
    };
    /// What the values stand for.
    enum DataType : int {
        /// Nothing: the geometry has no such stream.
        kInvalidDataType = 0,
        /// Vertex positions in the object's space.
        kPosition = 1,
        /// Unit vertex normals in the object's space.
        kNormal = 2,
        /// Texture coordinates.
        kTexCoord = 3,
        /// Vertex colours.
        kColor = 4,
        /// Weights.
        kWeight = 5,
        /// Whatever the rendering interface supports.
        kAPISupported = 6,
        /// Unit vectors along growing u.
        kTangent = 7,
        /// Unit vectors along growing v.
        kBiNormal = 8,
        /// Vertex velocities.
        kVelocity = 9,
        /// The centres of the primitives.
        kPrimitiveCenter = 10,
        /// Colour masks.
        kColorMask = 11,
        /// Other values, told apart by the stream's name.
        kUserData = 12,
        /// One beyond the last data type.
        kMaxDataTypeIndex = 13
    };

    /// Describes the elements that lie at pData. With ownsData they are the stream's, to be freed
    /// with its last handle. From Python, pData is the address of the object given itself, not of
    /// what it points to: give None, or ownsData False. The development host, which cannot know how
    /// the memory was made, frees none.
    ZGeometryData(char const *name, DataType dataType, ElementType elementType,
                  ElementSize elementSize, unsigned int elementCount, void *pData = nullptr,
                  bool ownsData = true);
    /// Makes another handle to the other's stream.
    ZGeometryData(ZGeometryData const &other);
    /// Drops the handle; the stream goes with its last one.
    ~ZGeometryData();
    /// Becomes a handle to the other's stream and returns this one.
    ZGeometryData &operator=(ZGeometryData const &other);

    /// The stream's name: "position", "normal", "componentId", "faceOffsets", or that of the set
    /// of texture coordinates. Empty when the geometry has no such stream.
    char const *objectName() const;
    /// A number that no other stream of the process has; 0 when the geometry has no such stream.
    int uniqueID() const;
    /// What the values stand for.
    DataType dataType() const;
    /// The type of one value.
    ElementType elementType() const;
    /// The number of bytes of one value; 0 when its type is not valid.
    int elementTypeSize() const;
    /// The number of values of one element.
    ElementSize elementSize() const;
    /// The number of elements.
    unsigned int elementCount() const;
    /// The address of the first value, null where there is none. That of the host's own streams is
    /// valid while some handle to the stream lives, and to be read only.
    void *data() const;
    /// The collection that the stream was put into, 0 at first.
    int collectionNumber() const;
    /// Puts the stream, for all its handles, into a collection. The number is the caller's; the
    /// host makes no use of it.
    void setCollectionNumber(int number);
    /// Tells whether the elements go with the stream, for all its handles.
    void setObjectOwnsData(bool ownsData);
    /// True when the elements go with the stream.
    bool objectOwnsData() const;

    struct Stream; // the host's own
    /// A handle to a stream of the host's.
    explicit ZGeometryData(Stream const &stream);

  private:
    Stream *stream_; // never null, shared by copies
};
