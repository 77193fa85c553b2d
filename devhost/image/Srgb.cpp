// SPDX-License-Identifier: MIT
#include "devhost/image/Srgb.h"

#include "devhost/image/ImageIo.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace devhost {

float srgbCode(float light) {
    if (!(light > 0))
        return 0;
    if (light >= 1)
        return 1;
    return light <= 0.0031308f ? light * 12.92f : 1.055f * std::pow(light, 1 / 2.4f) - 0.055f;
}

float srgbLight(float code) {
    return code <= 0.04045f ? code / 12.92f : std::pow((code + 0.055f) / 1.055f, 2.4f);
}

float lightOfByte(unsigned char code) {
    static const std::array<float, 256> lights = [] {
        std::array<float, 256> made;
        for (int each = 0; each < 256; ++each)
            made[size_t(each)] = srgbLight(float(each) / 255);
        return made;
    }();
    return lights[code];
}

unsigned char srgbByte(float light) {
    return toByte(srgbCode(light));
}

void toDisplay(const float pixel[4], unsigned char rgba[4]) {
    const float opacity = pixel[3];
    for (int channel = 0; channel < 3; ++channel)
        rgba[channel] = opacity > 0 ? srgbByte(pixel[channel] / std::min(opacity, 1.0f)) : 0;
    rgba[3] = toByte(opacity);
}

void fromDisplay(const unsigned char rgba[4], float pixel[4]) {
    pixel[3] = float(rgba[3]) / 255;
    for (int channel = 0; channel < 3; ++channel)
        pixel[channel] = lightOfByte(rgba[channel]) * pixel[3];
}

std::vector<unsigned char> displayBytes(const std::vector<float> &pixels) {
    std::vector<unsigned char> bytes(pixels.size());
    for (size_t at = 0; at + 3 < pixels.size(); at += 4)
        toDisplay(&pixels[at], &bytes[at]);
    return bytes;
}

} // namespace devhost
