// SPDX-License-Identifier: MIT
#include "devhost/image/TileAssembly.h"

#include "devhost/image/ExrStream.h"
#include "devhost/image/ImageIo.h"
#include "devhost/util/AtomicFile.h"
#include "devhost/util/FileName.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfInputFile.h>
#include <OpenEXR/ImfOutputFile.h>

#include <algorithm>
#include <map>
#include <new>
#include <stdexcept>
#include <tuple>

namespace devhost {
namespace {

struct Tile {
    std::string file;
    Imath::Box2i window;
};

/// Tiles beside each other.
using Row = std::vector<Tile>;

[[noreturn]] void refuse(const Tile &tile, const std::string &why) {
    throw std::runtime_error("'" + tile.file + "' " + why);
}

/// The library's own comparison of channels leaves their names out.
std::map<std::string, Imf::PixelType> channelsOf(const Imf::Header &header) {
    std::map<std::string, Imf::PixelType> types;
    for (auto each = header.channels().begin(); each != header.channels().end(); ++each)
        types[each.name()] = each.channel().type;
    return types;
}

/// The header of the whole picture. The files' windows are told in `tiles`.
Imf::Header readHeaders(std::vector<Tile> &tiles) {
    Imf::Header whole;
    for (Tile &tile : tiles) {
        const Imf::InputFile input(tile.file.c_str());
        tile.window = input.header().dataWindow();
        if (&tile == &tiles.front())
            whole = input.header();
        else if (channelsOf(input.header()) != channelsOf(whole) ||
                 input.header().displayWindow() != whole.displayWindow())
            refuse(tile, "is no part of the same picture: its channels or size differ");
        whole.dataWindow().extendBy(tile.window);
    }
    return whole;
}

/// The rows from the top, each from the left: they have to make up the whole without gaps.
std::vector<Row> rowsOf(std::vector<Tile> tiles, const Imath::Box2i &whole) {
    std::sort(tiles.begin(), tiles.end(), [](const Tile &a, const Tile &b) {
        return std::tie(a.window.min.y, a.window.min.x) < std::tie(b.window.min.y, b.window.min.x);
    });
    std::vector<Row> rows;
    Imath::V2i corner = whole.min; // where the next tile begins
    for (const Tile &tile : tiles) {
        const bool beginsRow = corner.x == whole.min.x;
        if (tile.window.min != corner ||
            (!beginsRow && tile.window.max.y != rows.back().back().window.max.y))
            refuse(tile, "is not beside the other parts of the picture");
        if (beginsRow)
            rows.emplace_back();
        rows.back().push_back(tile);
        const bool endsRow = tile.window.max.x == whole.max.x;
        corner = endsRow ? Imath::V2i(whole.min.x, tile.window.max.y + 1)
                         : Imath::V2i(tile.window.max.x + 1, corner.y);
    }
    if (corner != Imath::V2i(whole.min.x, whole.max.y + 1))
        refuse(tiles.back(), "is the last part, and there is a gap behind it");
    return rows;
}

size_t bytesOf(Imf::PixelType type) {
    return type == Imf::HALF ? 2 : 4;
}

/// The pixels of some lines of the picture, as the files have them.
class Lines {
  public:
    Lines(const Imf::Header &header, int top, int bottom) {
        const Imath::Box2i &window = header.dataWindow();
        const size_t width = size_t(window.max.x) - size_t(window.min.x) + 1;
        for (const auto &[name, type] : channelsOf(header)) {
            const size_t bytes = bytesOf(type);
            auto &values = channels_[name];
            values.resize(bytes * width * (size_t(bottom) - size_t(top) + 1));
            // The library counts from the origin of the image.
            char *const origin = values.data() - std::ptrdiff_t(bytes) * window.min.x -
                                 std::ptrdiff_t(bytes * width) * top;
            frame_.insert(name, Imf::Slice(type, origin, bytes, bytes * width));
        }
    }
    const Imf::FrameBuffer &frame() const { return frame_; }

  private:
    std::map<std::string, std::vector<char>> channels_;
    Imf::FrameBuffer frame_;
};

ZStatus assembleExr(std::vector<Tile> tiles, const std::string &path) {
    Imf::Header header = readHeaders(tiles);
    setExrCompression(header);
    const std::vector<Row> rows = rowsOf(tiles, header.dataWindow());
    AtomicFile file(path);
    if (!file.stream())
        return file.status();
    ExrStream stream(path, file.stream());
    {
        Imf::OutputFile output(stream, header);
        for (const Row &row : rows) {
            const auto &[min, max] = row.front().window;
            const Lines lines(header, min.y, max.y);
            for (const Tile &tile : row) {
                Imf::InputFile input(tile.file.c_str());
                input.setFrameBuffer(lines.frame());
                input.readPixels(min.y, max.y);
            }
            output.setFrameBuffer(lines.frame());
            output.writePixels(max.y - min.y + 1);
        }
    } // The file's line table is written when the writer goes.
    return file.commit();
}

/// What is not clear is in one of the files only.
ZStatus assemblePng(const std::vector<Tile> &tiles, const std::string &path) {
    unsigned width = 0, height = 0;
    std::vector<unsigned char> whole;
    for (const Tile &tile : tiles) {
        unsigned columns = 0, rows = 0;
        std::vector<unsigned char> part;
        if (const ZStatus status = readPng(tile.file, columns, rows, part); status.error())
            return status;
        if (whole.empty())
            std::tie(width, height, whole) = std::tuple(columns, rows, part);
        if (std::tie(columns, rows) != std::tie(width, height))
            refuse(tile, "is no part of the same picture: its size differs");
        std::transform(part.begin(), part.end(), whole.begin(), whole.begin(), std::bit_or<>());
    }
    return writePng(path, width, height, whole.data());
}

} // namespace

ZStatus assembleTiles(const std::vector<std::string> &tiles, const std::string &path) {
    std::vector<Tile> list;
    list.reserve(tiles.size());
    for (const std::string &tile : tiles)
        list.push_back({tile, {}});
    try {
        return lowerExtension(path) == ".exr" ? assembleExr(std::move(list), path)
                                              : assemblePng(list, path);
    } catch (const std::bad_alloc &) {
        return ZStatus::kInsufficientMemory;
    } catch (const std::exception &error) {
        return ZStatus(ZStatus::kFailure, error.what());
    }
}

} // namespace devhost
