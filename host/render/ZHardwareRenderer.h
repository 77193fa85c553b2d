// SPDX-License-Identifier: MIT
#pragma once

// The host's hardware renderer.

#include "host/base/HostApi.h"
#include "host/core/ZColor.h"

class ZDrawProcedureBase;
class ZGLFunctionTable;
class ZGeometryData;
class ZImage;
class ZStatus;
class ZString;
class ZStringArray;

/// The hardware renderer: lists of draw procedures that are executed at four places of a frame, the
/// contexts and buffers that it draws in, and what swatches (small pictures of materials) are drawn
/// with. There is one, which theRenderer returns.
///
/// Operations that take the name of a back end accept backEndString(), and an empty text for the
/// back end in use. With any other name they fail.
class OPENQUIL_API ZHardwareRenderer {
  public:
    /// What operations on the lists of draw procedures return.
    enum DrawProcedureReturnCode : int {
        kSuccess = 0,         ///< It was done.
        kFailure = 1,         ///< There is no such back end, or no procedure was given.
        kItemExists = 2,      ///< The procedure is in the list already.
        kItemNotFound = 3,    ///< The procedure, or the position, is not in the list.
        kLocationNotFound = 4 ///< The location is none of the four.
    };
    /// The format of a buffer's pixels.
    enum BufferPixelFormat : int {
        kRGBA_Fix8 = 0,     ///< Four channels of 8 bits.
        kRGBA_Float16 = 1,  ///< Four channels of 16-bit floating point.
        kDepth_Float32 = 2, ///< Depth in 32 bits of floating point.
    };
    /// Where in a frame draw procedures are executed. A frame is drawn in one or more exposures,
    /// each through another place of the pixels, and is their mean. The development host has one
    /// for each of the samples, and draws the meshes, lit and without shadows, in each.
    enum CallLocation : int {
        kPreRendering = 0,  ///< Before the first exposure: what all of them begin with.
        kPreExposure = 1,   ///< In each exposure, before the meshes.
        kPostExposure = 2,  ///< In each exposure, behind the meshes.
        kPostRendering = 3, ///< On the mean of the exposures.
    };
    /// The shapes that swatches are drawn on.
    enum GeometricShape : int {
        kDefaultSphere = 0, ///< A sphere of radius 1.
        kDefaultPlane = 1,  ///< A square from -1 to 1 that faces the camera.
        kDefaultCube = 2,   ///< A cube from -1 to 1.
    };

    /// Returns the hardware renderer.
    static ZHardwareRenderer *theRenderer();

    /// Returns the name of the back end in use.
    ZString backEndString() const;

    /// Adds a procedure at the end of a location's list. The procedure stays the caller's. Returns
    /// kItemExists when it is in the list already.
    DrawProcedureReturnCode addDrawProcedure(ZString const &backEnd, ZDrawProcedureBase *procedure,
                                             CallLocation location);
    /// Takes a procedure out of a location's list. Returns kItemNotFound when it is not there.
    DrawProcedureReturnCode removeDrawProcedure(ZString const &backEnd,
                                                ZDrawProcedureBase *procedure,
                                                CallLocation location);
    /// Puts a procedure before, or with insertAfter behind, the one that stands at the position,
    /// counted from 0. The position behind the last puts it at the end; any further one returns
    /// kItemNotFound. Returns kItemExists when the procedure is in the list already.
    DrawProcedureReturnCode insertDrawProcedure(ZString const &backEnd,
                                                ZDrawProcedureBase *procedure,
                                                CallLocation location, unsigned int position,
                                                bool insertAfter = false);
    /// Gives the number of procedures in a location's list.
    DrawProcedureReturnCode getDrawProcedureCount(ZString const &backEnd, CallLocation location,
                                                  unsigned int &count) const;
    /// Gives the names of the procedures in a location's list, in the order of execution. When it
    /// fails, the names stay as they are.
    DrawProcedureReturnCode getDrawProcedureListNames(ZString const &backEnd, CallLocation location,
                                                      ZStringArray &names) const;
    /// Returns the first procedure with the name in a location's list, or null.
    ZDrawProcedureBase *findDrawProcedure(ZString const &backEnd, CallLocation location,
                                          ZString const &procedureName) const;

    /// Makes the context current that owns textures, buffers and programs, for making such things
    /// outside drawing. restoreCurrent ends it. Fails with kFailure when there is no OpenGL, or
    /// another thread has it.
    ZStatus makeResourceContextCurrent(ZString const &backEnd);
    /// Gives the size in pixels of the buffers that frames are drawn in: that of the frame going
    /// on, else that of the render settings.
    ZStatus getBufferSize(ZString const &backEnd, unsigned int &width, unsigned int &height) const;
    /// Gives the format of the colour buffer.
    ZStatus getColorBufferPixelFormat(ZString const &backEnd, BufferPixelFormat &format) const;
    /// Gives the format of the depth buffer.
    ZStatus getDepthBufferPixelFormat(ZString const &backEnd, BufferPixelFormat &format) const;
    /// Gives the number of the exposure that is being drawn, counted from 0; 0 between frames.
    ZStatus getCurrentExposureNumber(ZString const &backEnd, unsigned int &number) const;
    /// Gives the number of exposures of the frame that is being drawn; 1 between frames.
    ZStatus getTotalExposureCount(ZString const &backEnd, unsigned int &count) const;
    /// Undoes the last makeResourceContextCurrent or makeSwatchContextCurrent of this thread that
    /// has not been undone: what was current before is current again. When none is left, other
    /// threads can have OpenGL; they can, too, when a thread ends.
    ZStatus restoreCurrent(ZString const &backEnd) const;

    /// Makes the context current that swatches are drawn in. The arguments hold the size that is
    /// wanted, or 0 for 128 pixels, and get the size of the swatch: no side is longer than 4096
    /// pixels. Its buffer starts as it was when the size is that of the last swatch, else clear.
    /// restoreCurrent ends it. Fails with kFailure when there is no OpenGL, or another thread has
    /// it.
    ZStatus makeSwatchContextCurrent(ZString const &backEnd, unsigned int &width,
                                     unsigned int &height);
    /// Replaces the image by the pixels of the swatch: four channels of bytes. Fails with kFailure
    /// when the swatch context is not current.
    ZStatus readSwatchContextPixels(ZString const &backEnd, ZImage &image);

    /// Returns the vertices of a default shape: an array of numberOfData streams, which are the
    /// positions, normals and texture coordinates, and gives its triangles as numberOfIndices
    /// indices, three for each. Everything stays the host's and lives until it has been given back
    /// with dereferenceGeometry as often as it was taken. Returns null when there is no such shape.
    ZGeometryData *referenceDefaultGeometry(GeometricShape shape, unsigned int &numberOfData,
                                            unsigned int *&indices, unsigned int &numberOfIndices);
    /// Gives back what referenceDefaultGeometry returned. Fails with kInvalidParameter when it is
    /// not in use or when numberOfData is not that of the shape.
    ZStatus dereferenceGeometry(ZGeometryData *data, unsigned int numberOfData);

    /// Gives the camera for swatches without perspective, as the six values of glOrtho; it stands
    /// at the origin.
    void getSwatchOrthoCameraSetting(double &left, double &right, double &bottom, double &top,
                                     double &nearPlane, double &farPlane) const;
    /// Gives the camera for swatches with perspective, as the six values of glFrustum.
    void getSwatchPerspectiveCameraSetting(double &left, double &right, double &bottom, double &top,
                                           double &nearPlane, double &farPlane) const;
    /// Gives the translation that moves a default shape in front of the perspective camera; w is 1.
    void getSwatchPerspectiveCameraTranslation(float &x, float &y, float &z, float &w) const;
    /// Gives the unit vector from a shape towards the light of swatches; w is 0, so that the four
    /// values are the position of a directional light in OpenGL.
    void getSwatchLightDirection(float &x, float &y, float &z, float &w) const;
    /// Fills the viewport of the current context, whatever else is set: with the colour or, when
    /// textured, with a checkerboard of the colour and one of half its brightness that has the
    /// given number of squares along each side. That may be the context of swatches, of a frame or
    /// of a viewport's target, or a framebuffer object that is bound, with its first draw buffer.
    /// Does nothing when nothing is there to draw into or OpenGL cannot be had.
    void drawSwatchBackGroundQuads(ZColor const &color = ZColor(0.5f, 0.5f, 0.5f, 1.0f),
                                   bool textured = false, unsigned int numberOfRepeats = 8) const;

    /// Returns the table of the OpenGL functions.
    ZGLFunctionTable *glFunctionTable() const;

  private:
    ZHardwareRenderer();
    ~ZHardwareRenderer();
};
