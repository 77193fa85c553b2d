// SPDX-License-Identifier: MIT
#pragma once

// Vertex values on their way from a geometry's stream into the types and dimensions that a shader
// asks for.

#include "host/render/ZGeometryData.h"
#include "host/render/ZVaryingParameter.h"

namespace devhost {

/// The values that a shader asks for.
struct VertexFormat {
    ZVaryingParameter::ZVaryingParameterType type = ZVaryingParameter::kInvalidParameter;
    unsigned dimension = 1;
    /// Turns the second value over, v to 1 - v.
    bool invertSecond = false;
};

/// The number of bytes of one value; 0 for structures and invalid types.
unsigned valueSize(ZVaryingParameter::ZVaryingParameterType type);

/// Whether the stream's values can be used as they are.
bool isStoredAs(const ZGeometryData &stream, const VertexFormat &format);

/// Writes all of the stream's elements, `stride` bytes apart. Integers hold fractions of their
/// greatest value; values that the stream lacks are 0, the fourth 1.
void convertElements(const ZGeometryData &stream, const VertexFormat &format,
                     unsigned char *destination, unsigned stride);

} // namespace devhost
