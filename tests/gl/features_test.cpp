// SPDX-License-Identifier: MIT
// What a driver's version and extension strings bring.

#include "devhost/gl/GlFeatures.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

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

TEST(GlFeatures, NoReleaseStandsForEntryPointsOfOtherNames) {
    const std::set<std::string> withFunctions = {
#define GL(since, result, member, ...) #since,
#include "host/render/gl_functions.def"
    };
    const std::pair<std::string, std::string> extensions[] = {
#define GL_EXTENSION(name, brought_by) {#name, brought_by},
#include "host/render/gl_extensions.def"
    };
    // Those whose entry points the table has not.
    const std::set<std::string> absent{
        "blend_color",    "histogram",        "color_table",        "convolution",
        "imaging_subset", "ARB_vertex_blend", "ARB_matrix_palette", "ARB_color_buffer_float"};
    int checked = 0;
    for (const auto &[name, broughtBy] : extensions) {
        EXPECT_TRUE(!absent.contains(name) || broughtBy.empty()) << name;
        std::istringstream features(broughtBy);
        for (std::string feature; features >> feature;)
            if (withFunctions.contains(feature) && !feature.starts_with("VERSION")) {
                EXPECT_EQ(broughtBy, feature) << name;
                ++checked;
            }
    }
    EXPECT_GT(checked, 15);
}

TEST(GlFeatures, ANoDriverHasNothing) {
    for (const devhost::GlFeatures &features :
         {devhost::GlFeatures(), devhost::GlFeatures(nullptr, nullptr),
          devhost::GlFeatures("not a version", "GL_ARB_imaging")})
        EXPECT_FALSE(features.hasAny("VERSION_1_1 ARB_imaging"));
}

} // namespace
