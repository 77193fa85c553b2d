// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace devhost {

/// A list of at most `Most` items on the stack. Unlike an array it makes only those that are added,
/// which counts where lists are made for every ray.
template <class T, std::size_t Most>
class Few {
    static_assert(std::is_trivially_destructible_v<T>);

  public:
    // The room is left as it is.
    Few() {} // NOLINT(modernize-use-equals-default, cppcoreguidelines-pro-type-member-init)
    Few(const Few &) = delete;

    template <class... Parts>
    T &add(Parts &&...parts) {
        return *new (data() + size_++) T{std::forward<Parts>(parts)...};
    }
    T &operator[](std::size_t at) { return data()[at]; }
    std::size_t size() const { return size_; }
    T *data() { return std::launder(reinterpret_cast<T *>(room_)); }

  private:
    std::size_t size_ = 0;
    alignas(T) std::byte room_[Most * sizeof(T)];
};

} // namespace devhost
