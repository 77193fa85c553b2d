// SPDX-License-Identifier: MIT
#pragma once

// Small glTF files, written value by value.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

class GltfFile {
  public:
    /// Adds an accessor with a buffer view of its own and returns its index. `more` are further
    /// members of the accessor; elements lie `stride` values apart where that is not 0.
    template <class T>
    int add(const char *type, const std::vector<T> &values, const std::string &more = "",
            size_t stride = 0) {
        const int view = addView(values, stride * sizeof(T));
        const size_t width = stride           ? stride
                             : type[0] == 'S' ? 1
                             : type[0] == 'M' ? 16
                                              : type[3] - '0';
        return addAccessor(std::to_string(componentType(T())) +
                               ", \"bufferView\": " + std::to_string(view),
                           type, values.size() / width, more);
    }
    /// Adds an accessor without a buffer view.
    int addZeros(const char *type, size_t count, const std::string &more) {
        return addAccessor("5126", type, count, more);
    }
    /// Adds a buffer view only.
    template <class T>
    int addView(const std::vector<T> &values, size_t stride = 0) {
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
        const size_t begin = bytes_.size();
        bytes_.resize(begin + values.size() * sizeof(T));
        std::memcpy(&bytes_[begin], values.data(), values.size() * sizeof(T));
        views_ += (viewCount_ ? "," : "") + std::string(R"({"buffer": 0, "byteOffset": )") +
                  std::to_string(begin) +
                  ", \"byteLength\": " + std::to_string(values.size() * sizeof(T)) +
                  (stride ? ", \"byteStride\": " + std::to_string(stride) : "") + "}";
        return viewCount_++;
    }
    /// The whole file, with further members.
    std::string text(const std::string &members) const {
        return header() + R"(, "uri": "data:application/octet-stream;base64,)" + base64() +
               "\"}], " + members + "}";
    }
    /// As text, in the binary form.
    std::string binary(const std::string &members) const {
        std::string json = header() + "}], " + members + "}", buffer = bytes_;
        json.resize((json.size() + 3) / 4 * 4, ' ');
        buffer.resize((buffer.size() + 3) / 4 * 4);
        return "glTF" + word(2) + word(28 + json.size() + buffer.size()) + word(json.size()) +
               "JSON" + json + word(buffer.size()) + std::string("BIN\0", 4) + buffer;
    }

  private:
    static int componentType(int8_t) { return 5120; }
    static int componentType(uint8_t) { return 5121; }
    static int componentType(int16_t) { return 5122; }
    static int componentType(uint16_t) { return 5123; }
    static int componentType(uint32_t) { return 5125; }
    static int componentType(float) { return 5126; }

    int addAccessor(const std::string &component, const char *type, size_t count,
                    const std::string &more) {
        accessors_ += (accessorCount_ ? "," : "") + std::string(R"({"componentType": )") +
                      component + R"(, "type": ")" + type + R"(", "count": )" +
                      std::to_string(count) + (more.empty() ? "" : ", " + more) + "}";
        return accessorCount_++;
    }
    std::string header() const {
        return R"({"asset": {"version": "2.0"}, "bufferViews": [)" + views_ +
               R"(], "accessors": [)" + accessors_ + R"(], "buffers": [{"byteLength": )" +
               std::to_string(bytes_.size());
    }
    static std::string word(size_t value) {
        const auto number = uint32_t(value);
        return {reinterpret_cast<const char *>(&number), 4};
    }
    std::string base64() const {
        static const char digits[] =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        std::string result;
        for (size_t at = 0; at < bytes_.size(); at += 3) {
            unsigned three = 0;
            for (size_t k = 0; k < 3; ++k)
                three = three << 8 | (at + k < bytes_.size() ? uint8_t(bytes_[at + k]) : 0);
            for (unsigned k = 0; k < 4; ++k)
                result += at + k > bytes_.size() ? '=' : digits[three >> (18 - 6 * k) & 63];
        }
        return result;
    }

    std::string bytes_, views_, accessors_;
    int viewCount_ = 0, accessorCount_ = 0;
};
