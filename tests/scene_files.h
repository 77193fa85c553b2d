// SPDX-License-Identifier: MIT
#pragma once

// What the scene tests share: a folder of files written for one test, and comparisons.

#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZObject.h"
#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "tests/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

class SceneTest : public testing::Test {
  protected:
    SceneTest() { devhost::newScene(); }

    std::string write(const std::string &name, const std::string &contents) const {
        return files.write(name, contents);
    }
    void load(const std::string &name, const std::string &contents) const {
        const ZStatus status = devhost::loadScene(write(name, contents));
        ASSERT_TRUE(status) << status.errorString().asChar();
    }
    static ZObject object(const char *name) {
        return devhost::scene().object(devhost::scene().find(name));
    }
    static ZDagPath path(const char *name) {
        ZDagPath result;
        ZDagPath::getAPathTo(object(name), result);
        return result;
    }
    static const devhost::Node &node(const std::string &name) {
        const devhost::Node *found = devhost::scene().node(devhost::scene().find(name));
        if (!found)
            throw std::runtime_error("no node " + name);
        return *found;
    }

    TemporaryFolder files;
    const std::filesystem::path &folder = files.path;
};

/// The bytes of numbers as they lie in memory.
template <class T>
std::string bytesOf(std::initializer_list<T> numbers) {
    std::string bytes(numbers.size() * sizeof(T), '\0');
    std::memcpy(bytes.data(), numbers.begin(), bytes.size());
    return bytes;
}

inline testing::AssertionResult near(const ZVector &got, const ZVector &wanted,
                                     double tolerance = 1e-5) {
    if ((got - wanted).length() <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "(" << got.x << ", " << got.y << ", " << got.z << ") instead of (" << wanted.x << ", "
           << wanted.y << ", " << wanted.z << ")";
}

inline ZVector vertex(const std::vector<float> &flat, unsigned index) {
    return ZVector(flat.at(index * 3), flat.at(index * 3 + 1), flat.at(index * 3 + 2));
}

/// A cube from -1 to 1 without normals, its six sides as quads.
inline const char *const kCubeObj = "o cube\n"
                                    "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\n"
                                    "v -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
                                    "f 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\n"
                                    "f 3 4 8 7\nf 2 3 7 6\nf 1 5 8 4\n";
