// SPDX-License-Identifier: MIT
#pragma once

// Integer constants.

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace binding {

/// One integer constant.
struct Constant {
    const char *name;
    int value;
};

/// A family's constants, in the order in which they are installed. They are kept as one text of
/// names, each with its zero, and an array of values: a pointer to each name would take the room of
/// the name once more, and have to be relocated whenever the module is loaded.
class Constants {
  public:
    class Iterator {
      public:
        constexpr Iterator(const char *name, const int *value) : name_(name), value_(value) {}
        Constant operator*() const { return {name_, *value_}; }
        Iterator &operator++() {
            name_ += std::strlen(name_) + 1;
            ++value_;
            return *this;
        }
        bool operator==(const Iterator &other) const { return value_ == other.value_; }

      private:
        const char *name_;
        const int *value_;
    };

    template <std::size_t size, std::size_t count>
    constexpr Constants(const std::array<char, size> &names, const std::array<int, count> &values)
        : names_(names.data()), values_(values.data()), count_(count) {}

    Iterator begin() const { return {names_, values_}; }
    Iterator end() const { return {nullptr, values_ + count_}; }

  private:
    const char *names_;
    const int *values_;
    std::size_t count_;
};

/// The names and values of what `list()` returns, which is an array of Constant.
template <auto list>
class PackedConstants {
    static constexpr auto kConstants = list();

    static constexpr std::size_t size_of_names() {
        std::size_t size = 0;
        for (const Constant &constant : kConstants)
            size += std::string_view(constant.name).size() + 1;
        return size;
    }
    static constexpr auto pack_names() {
        std::array<char, size_of_names()> names{};
        std::size_t end = 0;
        for (const Constant &constant : kConstants) {
            for (const char character : std::string_view(constant.name))
                names[end++] = character;
            ++end;
        }
        return names;
    }
    static constexpr auto pack_values() {
        std::array<int, kConstants.size()> values{};
        for (std::size_t index = 0; index < values.size(); ++index)
            values[index] = kConstants[index].value;
        return values;
    }
    static constexpr auto kNames = pack_names();
    static constexpr auto kValues = pack_values();

  public:
    static constexpr Constants kPacked{kNames, kValues};
};

} // namespace binding

/// Defines `name` as the family of the constants that follow.
#define CONSTANTS(name, ...)                                    \
    static constexpr auto name##_list = [] {                    \
        return std::to_array<binding::Constant>({__VA_ARGS__}); \
    };                                                          \
    extern constinit const binding::Constants name = binding::PackedConstants<name##_list>::kPacked;

/// A constant named after its class and enumerator.
#define ENUMERATOR(Class, enumerator) \
    { #Class "_" #enumerator, static_cast < int>(Class::enumerator) }
