// SPDX-License-Identifier: MIT
#pragma once

// One swatch in the making.

#include "host/base/HostApi.h"
#include "host/core/ZImage.h"
#include "host/core/ZObject.h"

/// One swatch in the making: the small picture that shows what a shading node looks like. Swatch
/// generators derive from it; the host calls doIteration() until the picture is finished.
class OPENQUIL_API ZSwatchRenderBase {
  public:
    /// Begins the swatch of a node with a clear picture that is `resolution` pixels wide and high,
    /// or without a picture when the resolution is none. The swatch node is what the picture is
    /// drawn for, the node what it shows; mostly they are the same.
    ZSwatchRenderBase(ZObject swatchNode, ZObject node, int resolution);
    ZSwatchRenderBase(const ZSwatchRenderBase &) = delete;
    ZSwatchRenderBase &operator=(const ZSwatchRenderBase &) = delete;
    virtual ~ZSwatchRenderBase();

    /// Does one step of the work; between steps the host can show the picture and stop. Returns
    /// true when the picture is finished. A swatch without a generator is finished as it is.
    virtual bool doIteration();
    /// Does all the work that is left on several threads. Returns false when the generator does not
    /// work in this way, or was cancelled; doIteration() then goes on.
    virtual bool renderParallel();
    /// Makes renderParallel() stop soon, or the next one when none is going on. May be called from
    /// any thread.
    virtual void cancelParallelRendering();

    /// Returns the node that the picture is drawn for.
    ZObject swatchNode() const;
    /// Returns the node that the picture shows.
    ZObject node() const;
    /// Returns the width and height asked for, in pixels.
    int resolution() const;
    /// Returns the picture, which belongs to the swatch: it must not be used when the swatch is
    /// gone.
    ZImage &image();

    /// Sets how good the picture is to be. 0 is a draft, 1 the default; what higher values improve
    /// is up to the generator. Set it before the first step.
    void setRenderQuality(int quality);
    /// Returns the quality asked for.
    int renderQuality() const;

    /// Stops the swatch that the host is rendering, if there is one, after its current step.
    static void cancelCurrentSwatchRender();
    /// Switches the host's rendering of swatches off or on again; it is on at first.
    static void enableSwatchRender(bool enable);

  private:
    ZImage image_;
    int quality_ = 1;
    ZObject swatchNode_, node_;
    int resolution_;
};
