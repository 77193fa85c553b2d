# SPDX-License-Identifier: MIT
@property
def currentFrame(self):
    # type: () -> OpenQuil.ZTime
    """The time of the frame that is rendered now, as OpenQuil.Frames.current() tells it."""
    from OpenQuil import Frames
    return Frames.current()
