// SPDX-License-Identifier: MIT
#pragma once

// What a render pass computes.

#include "host/base/HostApi.h"

class ZString;

/// What a render pass computes and in which form. The host owns its implementations; a pass names
/// the one that it uses.
class OPENQUIL_API ZPxRenderPassImpl {
  public:
    /// The number formats of frame buffers, which can be combined to a set.
    enum PassTypeBit : int {
        /// Integers of 8 bits, 0 to 255 for the values 0 to 1.
        kUInt8 = 0x1,
        /// Floating-point numbers of 16 bits.
        kFloat16 = 0x2,
        /// Floating-point numbers of 32 bits.
        kFloat32 = 0x4
    };

    virtual ~ZPxRenderPassImpl();
    /// The name that passes choose it by.
    virtual ZString name() const = 0;
    /// The number format of its frame buffer.
    virtual PassTypeBit frameBufferType() const = 0;
    /// The number of values for each pixel.
    virtual unsigned int numChannels() const = 0;
    /// True when the values of neighbouring samples may be mixed.
    virtual bool usesFiltering() const = 0;
};
