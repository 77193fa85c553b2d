// SPDX-License-Identifier: MIT
#include "devhost/api/render/VertexValues.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace devhost {

namespace {

using Parameter = ZVaryingParameter;

/// Calls `use` with a value of the C++ type that the type stands for; false where there is none.
template <class Use>
bool withType(Parameter::ZVaryingParameterType type, Use use) {
    switch (type) {
    case Parameter::kFloat: // NOLINT(bugprone-branch-clone): of as many types as there are branches
        return use(float()), true;
    case Parameter::kDouble:
        return use(double()), true;
    case Parameter::kChar:
        return use(int8_t()), true;
    case Parameter::kUnsignedChar:
        return use(uint8_t()), true;
    case Parameter::kInt16:
        return use(int16_t()), true;
    case Parameter::kUnsignedInt16:
        return use(uint16_t()), true;
    case Parameter::kInt32:
        return use(int32_t()), true;
    case Parameter::kUnsignedInt32:
        return use(uint32_t()), true;
    case Parameter::kInvalidParameter:
    case Parameter::kStructure:
        break;
    }
    return false;
}

/// The type of a stream's values. Both enumerations have the same types in the same order.
Parameter::ZVaryingParameterType typeOf(const ZGeometryData &stream) {
    static_assert(ZGeometryData::kUnsignedInt32 + 1 == int(Parameter::kUnsignedInt32));
    if (stream.elementType() == ZGeometryData::kInvalidElementType)
        return Parameter::kInvalidParameter;
    return static_cast<Parameter::ZVaryingParameterType>(stream.elementType() + 1);
}

template <class T>
double fraction(T value) {
    if constexpr (std::is_floating_point_v<T>)
        return value;
    else
        return std::max(-1.0, double(value) / std::numeric_limits<T>::max());
}

template <class T>
T fromFraction(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        return T(value);
    } else {
        constexpr double greatest = std::numeric_limits<T>::max();
        constexpr double least = std::is_signed_v<T> ? -greatest : 0.0;
        if (std::isnan(value))
            return 0;
        return T(std::clamp(std::round(value * greatest), least, greatest));
    }
}

} // namespace

unsigned valueSize(Parameter::ZVaryingParameterType type) {
    unsigned size = 0;
    withType(type, [&size](auto value) { size = sizeof(value); });
    return size;
}

bool isStoredAs(const ZGeometryData &stream, const VertexFormat &format) {
    return typeOf(stream) == format.type && unsigned(stream.elementSize()) == format.dimension &&
           !format.invertSecond;
}

void convertElements(const ZGeometryData &stream, const VertexFormat &format,
                     unsigned char *destination, unsigned stride) {
    const auto given = unsigned(stream.elementSize());
    withType(typeOf(stream), [&](auto from) {
        using From = decltype(from);
        withType(format.type, [&](auto to) {
            using To = decltype(to);
            const auto *source = static_cast<const From *>(stream.data());
            for (unsigned i = 0; i < stream.elementCount(); ++i, source += given) {
                for (unsigned k = 0; k < format.dimension; ++k) {
                    double value = k < given ? fraction(source[k]) : k == 3 ? 1.0 : 0.0;
                    if (k == 1 && format.invertSecond)
                        value = 1 - value;
                    const To stored = fromFraction<To>(value);
                    // A structure's elements need not be aligned.
                    std::memcpy(destination + size_t(i) * stride + k * sizeof(To), &stored,
                                sizeof(To));
                }
            }
        });
    });
}

} // namespace devhost
