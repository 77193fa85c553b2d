// What a driver's version and extension strings bring.

#include "devhost/gl/GlFeatures.h"

#include <gtest/gtest.h>

namespace {

TEST(GlFeatures, ReleasesIncludeEarlierOnesAndExtensionsAreWholeNames) {
    const devhost::GlFeatures features("2.0.4 Some Driver 10.3",
                                       "GL_ARB_imaging GL_EXT_texture3D  WGL_ARB_pbuffer");
    for (const char *feature : {"VERSION_1_1", "VERSION_1_5", "VERSION_2_0", "ARB_imaging"})
        EXPECT_TRUE(features.has(feature)) << feature;
    for (const char *feature : {"VERSION_2_1", "VERSION_10_0", "EXT_texture", "ARB_pbuffer", ""})
        EXPECT_FALSE(features.has(feature)) << feature;
    EXPECT_TRUE(features.hasAny("VERSION_3_0 EXT_texture3D"));
    EXPECT_FALSE(features.hasAny("VERSION_3_0 EXT_bgra"));
    EXPECT_FALSE(features.hasAny(""));
}

TEST(GlFeatures, ANoDriverHasNothing) {
    for (const devhost::GlFeatures &features :
         {devhost::GlFeatures(), devhost::GlFeatures(nullptr, nullptr),
          devhost::GlFeatures("not a version", "GL_ARB_imaging")})
        EXPECT_FALSE(features.hasAny("VERSION_1_1 ARB_imaging"));
}

} // namespace
