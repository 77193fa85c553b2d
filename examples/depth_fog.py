# SPDX-License-Identifier: MIT
"""Grades the finished image by its depth: what is far fades into fog.

    quilhost MODEL.obj --python examples/depth_fog.py --output picture.png

A subclass of ZRenderCallback receives the host's own render with its colours and its depth buffer
and changes the colours in place.
"""
from OpenQuilRender import ZRenderCallback

FOG = (216, 222, 232)
INFINITE = float("inf")


class DepthFog(ZRenderCallback):
    def postProcessCallback(self, data):
        depths = data.depthArr[:]
        colors = bytearray(data.rgbaArr[:])
        seen = [depth for depth in depths if depth < INFINITE]
        if not seen:
            return False
        near, far = min(seen), max(seen)
        span = (far - near) or 1.0
        for i, depth in enumerate(depths):
            amount = 1.0 if depth == INFINITE else min(max((depth - near) / span, 0.0), 1.0) ** 1.5
            pixel = 4 * i
            for channel in range(3):
                color = colors[pixel + channel]
                colors[pixel + channel] = int(color + (FOG[channel] - color) * amount)
            colors[pixel + 3] = 255
        data.rgbaArr[:] = colors
        return True


ZRenderCallback.addCallback(DepthFog(), 0)
