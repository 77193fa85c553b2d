// SPDX-License-Identifier: MIT
// CPU seconds for loading scene files of a million triangles, beside what parsing libraries take
// for the same files: the least of three runs each.
#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"
#include "tests/scene/gltf_file.h"
#include "tests/temporary_folder.h"

#include <sys/resource.h>
#include <tiny_gltf.h>
#include <tiny_obj_loader.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <stdexcept>

namespace {

constexpr unsigned kSide = 708; // squares of the grid each way

struct Grid {
    std::vector<float> positions, normals, uvs;
    std::vector<unsigned> corners;

    Grid() {
        for (unsigned y = 0; y <= kSide; ++y)
            for (unsigned x = 0; x <= kSide; ++x) {
                const float u = float(x) / kSide, v = float(y) / kSide;
                positions.insert(positions.end(), {u, v, 0.1f * std::sin(9 * u) * std::cos(7 * v)});
                normals.insert(normals.end(), {0, 0, 1});
                uvs.insert(uvs.end(), {u, v});
            }
        for (unsigned y = 0; y < kSide; ++y)
            for (unsigned x = 0; x < kSide; ++x) {
                const unsigned a = y * (kSide + 1) + x, b = a + kSide + 1;
                corners.insert(corners.end(), {a, a + 1, b + 1, a, b + 1, b});
            }
    }
};

void addLines(std::string &text, const char *word, const std::vector<float> &values, size_t width) {
    char number[32];
    for (size_t at = 0; at < values.size(); ++at) {
        text += at % width ? " " : std::string("\n") + word + " ";
        std::snprintf(number, sizeof number, "%.6f", double(values[at]));
        text += number;
    }
}

std::string objText(const Grid &grid, bool all) {
    std::string text;
    addLines(text, "v", grid.positions, 3);
    if (all) {
        addLines(text, "vn", grid.normals, 3);
        addLines(text, "vt", grid.uvs, 2);
    }
    for (size_t at = 0; at < grid.corners.size(); ++at) {
        const std::string index = std::to_string(grid.corners[at] + 1);
        text.append(at % 3 ? " " : "\nf ").append(index);
        if (all)
            text.append("/").append(index).append("/").append(index);
    }
    return text + "\n";
}

std::string glbText(const Grid &grid) {
    GltfFile file;
    file.add("VEC3", grid.positions);
    file.add("VEC3", grid.normals);
    file.add("VEC2", grid.uvs);
    file.add("SCALAR", grid.corners);
    return file.binary(R"("nodes": [{"mesh": 0}], "meshes": [{"primitives": [{"attributes":
        {"POSITION": 0, "NORMAL": 1, "TEXCOORD_0": 2}, "indices": 3}]}])");
}

double cpuSeconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return double(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           1e-6 * double(used.ru_utime.tv_usec + used.ru_stime.tv_usec);
}

double least(const std::function<bool()> &load) {
    double result = 1e9;
    for (int run = 0; run < 3; ++run) {
        const double start = cpuSeconds();
        if (!load())
            throw std::runtime_error("the file cannot be loaded");
        result = std::min(result, cpuSeconds() - start);
    }
    return result;
}

void compare(const char *what, const std::string &file, const std::function<bool()> &library) {
    const double alone = least(library);
    const double host = least([&] { return !devhost::loadScene(file).error(); });
    const auto triangles = devhost::scene().node(devhost::scene().meshes().at(0))->mesh();
    std::printf("%-34s%9.3f%9.3f%10.2f%14.3f\n", what, host, alone, host / alone,
                host / triangles->triangleCount() * 1e6);
}

} // namespace

// A file that cannot be written ends it. NOLINTNEXTLINE(bugprone-exception-escape)
int main() {
    const TemporaryFolder folder;
    const Grid grid;
    const std::string all = folder.write("all.obj", objText(grid, true));
    const std::string bare = folder.write("bare.obj", objText(grid, false));
    const std::string binary = folder.write("all.glb", glbText(grid));
    const auto obj = [](const std::string &file) {
        return [file] {
            tinyobj::ObjReader reader;
            return reader.ParseFromFile(file);
        };
    };
    const auto glb = [&] {
        tinygltf::Model model;
        std::string error, warning;
        return tinygltf::TinyGLTF().LoadBinaryFromFile(&model, &error, &warning, binary);
    };
    std::printf("\n%-34s%9s%9s%10s%14s\n", "loading, CPU seconds", "host", "library", "/ library",
                "a million");
    compare("OBJ with normals and coordinates", all, obj(all));
    compare("OBJ with positions only", bare, obj(bare));
    compare("GLB", binary, glb);
}
