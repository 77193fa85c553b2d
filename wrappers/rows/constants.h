#pragma once

// Integer constants as data without pointers: there are two thousand, and each pointer would be one
// more for the loader to relocate.

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

/// One integer constant.
struct Constant {
    const char *name;
    long value;
};

/// A group of constants; looks like a list of them.
struct Constants {
    const char *names; ///< one behind the other
    const int *values;
    size_t count;

    struct Iterator {
        const char *name;
        const int *value;

        Constant operator*() const { return {name, *value}; }
        Iterator &operator++() {
            name += std::strlen(name) + 1;
            ++value;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return value != other.value; }
    };
    Iterator begin() const { return {names, values}; }
    Iterator end() const { return {nullptr, values + count}; }
};

/// Characters in all names, with the null character behind each.
template <size_t count>
consteval size_t size_of_names(const Constant (&constants)[count]) {
    size_t size = 0;
    for (const Constant &constant : constants)
        size += std::char_traits<char>::length(constant.name) + 1;
    return size;
}

/// What a group of constants consists of.
template <size_t name_size, size_t count>
struct PackedConstants {
    char names[name_size] = {};
    int values[count] = {};

    consteval PackedConstants(const Constant (&constants)[count]) {
        char *name = names;
        for (size_t i = 0; i < count; ++i) {
            for (const char *source = constants[i].name; *source;)
                *name++ = *source++;
            ++name;
            values[i] = static_cast<int>(constants[i].value);
            if (values[i] != constants[i].value)
                throw "a constant needs more than an int";
        }
    }
};

/// Defines the group `name` from the array of its constants.
#define PACK_CONSTANTS(name, constants)                                                 \
    static constexpr PackedConstants<size_of_names(constants), std::size(constants)>    \
        name##_packed(constants);                                                       \
    extern constinit const Constants name = {name##_packed.names, name##_packed.values, \
                                             std::size(constants)};
