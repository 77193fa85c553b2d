// SPDX-License-Identifier: MIT
#pragma once

// Code of plug-ins that draws while the host's hardware renderer draws.

#include "host/base/HostApi.h"
#include "host/core/ZString.h"

/// The base of draw procedures: native code derives from it, and the hardware renderer executes
/// the instances in its lists at their places in the frame. Scripts find procedures by name, turn
/// them on and off, and move them between lists.
class OPENQUIL_API ZDrawProcedureBase {
  public:
    /// Makes an enabled procedure without a name.
    ZDrawProcedureBase();
    /// Takes the procedure out of every list of the hardware renderer.
    virtual ~ZDrawProcedureBase();

    /// Draws into the frame, whose framebuffer is bound; a procedure that binds another one leaves
    /// no trace of that. OpenGL's projection and model-view matrices are those of the camera, so
    /// that coordinates are the scene's, and its depths are comparable with those of the meshes.
    /// Returns false when the drawing failed; the frame goes on.
    virtual bool execute() = 0;

    /// Turns the procedure on or off. The renderer skips a procedure that is off, but keeps it in
    /// its lists.
    void setEnabled(bool value);
    /// Returns true unless the procedure was turned off.
    bool enabled() const;
    /// Gives the procedure the name by which findDrawProcedure finds it.
    void setName(ZString const &name);
    /// Returns the procedure's name.
    ZString name() const;

  private:
    ZString name_;
    bool enabled_ = true;
};
