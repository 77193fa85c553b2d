// SPDX-License-Identifier: MIT
#pragma once

// Which items are numbers side by side, and how many of them.

#include "devhost/core_module/components.h"
#include "devhost/core_module/raw_items.h"
#include "host/core/ZMatrix.h"

#include <array>
#include <utility>

namespace binding {

/// The type of an item's numbers, and the lengths of its dimensions. Others are one of themselves.
template <class T>
struct Numbers {
    using Number = T;
    static constexpr std::array<int, 0> shape{};
};

template <HasComponents T>
struct Numbers<T> {
    using Number = std::remove_cvref_t<decltype(std::declval<T &>().*Components<T>::members[0])>;
    static constexpr std::array<int, 1> shape{component_count<T>};
};

template <>
struct Numbers<ZMatrix> {
    using Number = double;
    static constexpr std::array<int, 2> shape{4, 4};
};

template <class T>
using NumberOf = typename Numbers<T>::Number;

template <class T>
concept HasNumbers = format_of<NumberOf<T>>()
!= 0;

template <class T>
inline constexpr int numbers_in_item = sizeof(T) / sizeof(NumberOf<T>);

} // namespace binding
