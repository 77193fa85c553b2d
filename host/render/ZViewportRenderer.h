// SPDX-License-Identifier: MIT
#pragma once

// The base class of renderers that take over the drawing of viewports.

#include "host/base/HostApi.h"
#include "host/core/ZString.h"

class ZRenderingInfo;
class ZStatus;

/// The base class of native renderers that take over the drawing of viewports. A plug-in derives
/// from it, makes an object and registers it under its name.
class OPENQUIL_API ZViewportRenderer {
  public:
    /// The interfaces to draw with.
    enum RenderingAPI : int {
        /// OpenGL: the target is current while the renderer draws.
        kOpenGL = 0,
        /// Direct3D; the development host never asks for it.
        kDirect3D = 1,
        /// Pixels in memory, written into the target.
        kSoftware = 2
    };
    /// How much of the drawing a renderer takes over.
    enum RenderingOverride : int {
        /// Nothing: the host draws.
        kNoOverride = 0,
        /// All drawing.
        kOverrideAllDrawing = 1,
        /// The renderer draws first, and the host draws into its image what is not excluded.
        kOverrideThenStandard = 2,
        /// The renderer draws first, and the host adds its user interface. The development host's
        /// viewports have none.
        kOverrideThenUI = 3
    };
    /// What the host leaves out after kOverrideThenStandard; bits to be combined.
    enum RenderingExclusion : int {
        kExcludeNone = 0,                     ///< Nothing is left out.
        kExcludeNurbsCurves = 1 << 0,         ///< NURBS curves.
        kExcludeNurbsSurfaces = 1 << 1,       ///< NURBS surfaces.
        kExcludeMeshes = 1 << 2,              ///< Polygon meshes.
        kExcludePlanes = 1 << 3,              ///< Construction planes.
        kExcludeLights = 1 << 4,              ///< The shapes of lights, not their light.
        kExcludeCameras = 1 << 5,             ///< The shapes of cameras.
        kExcludeJoints = 1 << 6,              ///< Joints.
        kExcludeIkHandles = 1 << 7,           ///< Handles of inverse kinematics.
        kExcludeDeformers = 1 << 8,           ///< Deformers.
        kExcludeDynamics = 1 << 9,            ///< Dynamics.
        kExcludeParticleInstancers = 1 << 10, ///< Particle instancers.
        kExcludeLocators = 1 << 11,           ///< Locators.
        kExcludeDimensions = 1 << 12,         ///< Dimensions.
        kExcludeSelectHandles = 1 << 13,      ///< Selection handles.
        kExcludePivots = 1 << 14,             ///< Pivots.
        kExcludeTextures = 1 << 15,           ///< Texture placements.
        kExcludeGrid = 1 << 16,               ///< The grid.
        kExcludeCVs = 1 << 17,                ///< Control vertices.
        kExcludeHulls = 1 << 18,              ///< Hulls.
        kExcludeStrokes = 1 << 19,            ///< Paint strokes.
        kExcludeSubdivSurfaces = 1 << 20,     ///< Subdivision surfaces.
        kExcludeFluids = 1 << 21,             ///< Fluids.
        kExcludeFollicles = 1 << 22,          ///< Follicles.
        kExcludeHairSystems = 1 << 23,        ///< Hair systems.
        kExcludeImagePlane = 1 << 24,         ///< Background images.
        kExcludeNCloths = 1 << 25,            ///< Simulated cloth.
        kExcludeNRigids = 1 << 26,            ///< Simulated rigid bodies.
        kExcludeDynamicConstraints = 1 << 27, ///< Dynamic constraints.
        kExcludeManipulators = 1 << 28,       ///< Manipulators.
        kExcludeNParticles = 1 << 29,         ///< Simulated particles.
        kExcludeMotionTrails = 1 << 30,       ///< Motion trails.
        kExcludePluginShapes = 1 << 31,       ///< Shapes of plug-ins; a negative number.
        kExcludeAll = -1                      ///< Everything.
    };

    /// A renderer of a name that scripts and the host know it by. It takes nothing over yet.
    explicit ZViewportRenderer(ZString const &name);
    /// Destroys the renderer; the host forgets it.
    virtual ~ZViewportRenderer();

    /// Called before the first drawing. A failure keeps the renderer from drawing.
    virtual ZStatus initialize() = 0;
    /// Called when an initialised renderer is deregistered.
    virtual ZStatus uninitialize() = 0;
    /// Draws what the description asks for into its target.
    virtual ZStatus render(ZRenderingInfo const &info) = 0;
    /// True when the renderer can draw with this version of an interface.
    virtual bool nativelySupports(RenderingAPI api, float version) = 0;
    /// True when the renderer can take over this much. Where it cannot, the host draws.
    virtual bool override(RenderingOverride mode) = 0;
    /// What the host leaves out after kOverrideThenStandard: kExclude bits. Only meshes are drawn
    /// by the development host.
    virtual int overrideThenStandardExclusion();

    /// The name that the renderer is registered under.
    ZString name() const;
    /// The name that users see; at first the renderer's name.
    ZString UIname() const;
    /// Sets the name that users see.
    void setUIName(ZString const &name);
    /// How much the renderer takes over at present; at first kNoOverride.
    RenderingOverride renderingOverride() const;
    /// Sets how much the renderer takes over.
    void setRenderingOverride(RenderingOverride mode);
    /// Makes the renderer known to the host. Fails with kInvalidParameter when the name is empty
    /// and with kFailure when a renderer of this name is registered already.
    ZStatus registerRenderer() const;
    /// Makes the host forget the renderer, which is uninitialised before. Fails with kNotFound when
    /// it is not registered, else as uninitialize.
    ZStatus deregisterRenderer() const;

  private:
    ZString name_;
    ZString uiName_;
    RenderingOverride renderingOverride_ = kNoOverride;
};
