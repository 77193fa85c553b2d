// SPDX-License-Identifier: MIT
#include "devhost/image/PictureFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace devhost {
namespace {

using namespace std::string_view_literals;

constexpr auto kPngStart = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"sv;
constexpr auto kPngEnd = "\0\0\0\0IEND\xae\x42\x60\x82"sv;
constexpr auto kExrStart = "\x76\x2f\x31\x01"sv;

/// A file that is read in places. Each call of the system counts, as there are many files.
class Reader {
  public:
    explicit Reader(const std::string &path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        constexpr size_t kStart = 1024; // the header of an OpenEXR file of this host
        if (descriptor_ < 0 || fstat(descriptor_, &status_) != 0)
            error_ = errno;
        else if (isRegular())
            start_ = read(0, kStart);
    }
    ~Reader() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    Reader(const Reader &) = delete;

    int error() const { return error_; }
    bool isRegular() const { return S_ISREG(status_.st_mode); }
    uint64_t size() const { return static_cast<uint64_t>(status_.st_size); }
    const std::string &start() const { return start_; }

    /// The bytes from a place on; fewer where the file ends.
    std::string read(uint64_t place, size_t count) const {
        if (place <= start_.size() && count <= start_.size() - place)
            return start_.substr(place, count);
        std::string bytes(place < size() ? std::min<uint64_t>(count, size() - place) : 0, '\0');
        const ssize_t got =
            pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(place));
        bytes.resize(got < 0 ? 0 : static_cast<size_t>(got));
        return bytes;
    }

  private:
    int descriptor_;
    int error_ = 0;
    struct stat status_ = {};
    std::string start_;
};

uint32_t bigEndian(const char *bytes) {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

/// A number of an OpenEXR file, whose bytes are in this machine's order.
template <class Number>
Number littleEndian(std::string_view bytes) {
    static_assert(std::endian::native == std::endian::little);
    Number value = 0;
    std::memcpy(&value, bytes.data(), std::min(sizeof value, bytes.size()));
    return value;
}

PictureFile inspectPng(const Reader &file, std::string_view start) {
    constexpr size_t kSizePlace = kPngStart.size();
    PictureFile picture;
    if (file.size() < kSizePlace + 8 + kPngEnd.size() ||
        file.read(file.size() - kPngEnd.size(), kPngEnd.size()) != kPngEnd) {
        picture.damage = "its end is missing";
        return picture;
    }
    picture.width = bigEndian(&start[kSizePlace]);
    picture.height = bigEndian(&start[kSizePlace + 4]);
    return picture;
}

/// What the header of an OpenEXR file says of its extent.
struct ExrExtent {
    int32_t dataWindow[4] = {0, 0, -1, -1}, displayWindow[4] = {0, 0, -1, -1};
    size_t linesPerBlock = 1;
    /// Where the table of the blocks begins.
    size_t tablePlace = 0;
};

/// Reads the attributes: name, type, size and value each, and an empty name at the end. No table's
/// place where the header goes on behind `bytes`.
ExrExtent readExtent(std::string_view bytes) {
    constexpr size_t kLinesPerBlock[] = {1, 1, 1, 16, 32, 16, 32, 32, 32, 256};
    ExrExtent extent;
    size_t at = kExrStart.size() + 4;
    const auto takeText = [&] {
        const size_t end = std::min(bytes.find('\0', at), bytes.size());
        const std::string_view text = bytes.substr(at, end - at);
        at = std::min(end + 1, bytes.size());
        return text;
    };
    for (std::string_view name = takeText(); !name.empty(); name = takeText()) {
        takeText();
        const auto size = littleEndian<uint32_t>(bytes.substr(at, 4));
        if (bytes.size() - at < 4 + uint64_t{size})
            return extent;
        const std::string_view value = bytes.substr(at + 4, size);
        if (name == "dataWindow" && size == sizeof extent.dataWindow)
            std::memcpy(extent.dataWindow, value.data(), size);
        else if (name == "displayWindow" && size == sizeof extent.displayWindow)
            std::memcpy(extent.displayWindow, value.data(), size);
        else if (name == "compression" && size == 1 &&
                 static_cast<unsigned char>(value[0]) < std::size(kLinesPerBlock))
            extent.linesPerBlock = kLinesPerBlock[static_cast<unsigned char>(value[0])];
        at += 4 + size;
    }
    extent.tablePlace = at < bytes.size() ? at : 0;
    return extent;
}

/// Where the file should end: behind the block that begins last. Zero where a block is missing.
uint64_t expectedEnd(const Reader &file, const ExrExtent &extent, size_t blocks) {
    const std::string table = file.read(extent.tablePlace, 8 * blocks);
    if (table.size() != 8 * blocks)
        return 0;
    uint64_t last = 0;
    for (size_t i = 0; i < blocks; ++i) {
        const auto place = littleEndian<uint64_t>(std::string_view(table).substr(8 * i, 8));
        if (place < extent.tablePlace + table.size())
            return 0;
        last = std::max(last, place);
    }
    const std::string start = file.read(last, 8); // its first line, and its size
    return start.size() == 8 ? last + 8 + littleEndian<uint32_t>(std::string_view(start).substr(4))
                             : 0;
}

PictureFile inspectExr(const Reader &file, std::string_view start) {
    constexpr uint32_t kVersion = 2, kLongNames = 0x400;
    constexpr size_t kLargestHeader = 1 << 20;
    PictureFile picture;
    ExrExtent extent = readExtent(start);
    if (extent.tablePlace == 0 && file.size() > start.size())
        extent = readExtent(file.read(0, kLargestHeader));
    const int64_t lines = int64_t{extent.dataWindow[3]} - extent.dataWindow[1] + 1;
    const uint64_t blocks =
        (static_cast<uint64_t>(std::max<int64_t>(lines, 0)) + extent.linesPerBlock - 1) /
        extent.linesPerBlock;
    if ((littleEndian<uint32_t>(start.substr(4, 4)) & ~kLongNames) != kVersion)
        picture.damage = "it has no plain scan lines";
    else if (extent.tablePlace == 0 || blocks == 0)
        picture.damage = "its header is damaged";
    else if (blocks > file.size() || expectedEnd(file, extent, blocks) != file.size())
        picture.damage = "its end is missing";
    const auto extentOf = [&](int axis) { // of a damaged file, it may be anything
        return static_cast<unsigned>(int64_t{extent.displayWindow[axis + 2]} -
                                     extent.displayWindow[axis] + 1);
    };
    picture.width = extentOf(0);
    picture.height = extentOf(1);
    return picture;
}

} // namespace

PictureFile inspectPicture(const std::string &path) {
    const Reader file(path);
    if (file.error())
        return {std::strerror(file.error())};
    if (!file.isRegular())
        return {"it is no regular file"};
    const std::string &start = file.start();
    if (start.starts_with(kPngStart))
        return inspectPng(file, start);
    if (start.starts_with(kExrStart) && start.size() >= kExrStart.size() + 4)
        return inspectExr(file, start);
    return {start.empty() ? "it is empty" : "it is no picture"};
}

} // namespace devhost
