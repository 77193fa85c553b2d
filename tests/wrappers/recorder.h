// SPDX-License-Identifier: MIT
#pragma once

// A host that only records how it is called, so that a test sees every argument as it arrived.

#include "host/core/ZStatus.h"
#include "host/core/ZString.h"

#include <sstream>
#include <string>

/// What the host was called with since the test last looked: "name(argument, argument)".
inline std::string calls;

class Item {
  public:
    Item() { ++live; }
    Item(int number) : number(number) { ++live; }
    Item(const Item &other) : number(other.number) { ++live; }
    Item &operator=(const Item &) = default;
    ~Item() { --live; }

    int number = 0;
    static inline int live = 0;
};

template <class T>
std::string shown(const T &value) {
    std::ostringstream text;
    text.precision(17);
    text << value;
    return text.str();
}
inline std::string shown(float value) {
    return shown<double>(value) + "f";
}
inline std::string shown(bool value) {
    return value ? "true" : "false";
}
inline std::string shown(const ZString &value) {
    return "'" + std::string(value.asChar()) + "'";
}
inline std::string shown(const Item &value) {
    return "Item " + shown(value.number);
}
inline std::string shown(const Item *value) {
    return value ? "&" + shown(*value) : "null";
}
inline std::string shown(Item *value) {
    return shown(static_cast<const Item *>(value));
}
inline std::string shown(const char *value) {
    return value ? "\"" + std::string(value) + "\"" : "null";
}
inline std::string shown(const void *value) {
    return value ? "@" + shown(reinterpret_cast<uintptr_t>(value)) : "null";
}

template <class... T>
void record(const char *name, const T &...values) {
    [[maybe_unused]] const char *separator = "";
    calls += std::string(name) + "(";
    ((calls += separator + shown(values), separator = ", "), ...);
    calls += ")";
}

inline Item host_item(77); // what the host lends

class Recorder {
  public:
    enum Kind { kNone = 0, kLow = -2, kHigh = 2000000000 };

    Recorder() { record("Recorder"); }
    Recorder(int number) { record("Recorder", number); }
    Recorder(Item const &item, ZStatus *status) {
        record("Recorder", item);
        if (item.number < 0)
            *status = ZStatus(ZStatus::kFailure, "no such item");
    }
    ~Recorder() { calls += "~Recorder()"; }

    // NOLINTBEGIN(performance-unnecessary-value-param): by value is what these are to take
    // One argument.
    static void aString(ZString const &v) { record("aString", v); }
    static void chars(char const *v) { record("chars", v); }
    static void aReference(Item &v) { record("aReference", v), ++v.number; }
    static void aValue(Item v) { record("aValue", v), ++v.number; }
    static void opaque(void const *v) { record("opaque", v); }

    // All of them at once, and absent ones.
    static void everything(int a, unsigned int b, short c, unsigned short d, float e, double f,
                           bool g, Kind h, ZString const &i, char const *j, Item *k, Item const &l,
                           Item m, void const *n) {
        record("everything", a, b, c, d, e, f, g, static_cast<int>(h), i, j, k, l, m, n);
    }
    static void absent(int a, bool b, unsigned int c, double d, ZString const &e, Item *f) {
        record("absent", a, b, c, d, e, f);
    }
    static void twoStrings(ZString const &a, ZString const &b, int c) {
        record("twoStrings", a, b, c);
    }
    static void throws(Item const &, Item, ZString const &text) {
        throw std::string(text.asChar());
    }
    // NOLINTEND(performance-unnecessary-value-param)

    // Statuses.
    static ZStatus verdict(int code) {
        return {static_cast<ZStatus::ZStatusCode>(code), "text of the verdict"};
    }
    static ZString stringAndStatus(int code, ZStatus *status) {
        *status = verdict(code);
        return "made";
    }
    static Item itemAndStatus(ZString const &name, int code, ZStatus *status) {
        record("itemAndStatus", name, code);
        *status = verdict(code);
        return Item(code);
    }

    // One result of each type.
    static unsigned int unsignedResult() { return 4294967295u; }
    static ZString stringResult() { return L"a\u00e9\U0001F600"; }
    static char const *charsResult(bool v) { return v ? "bytes \xc3\xa9" : nullptr; }
    static Item valueResult() { return Item(5); }
    static Item *pointerResult(bool v) { return v ? &host_item : nullptr; }
    static Item const &referenceResult() { return host_item; }
    static void *opaqueResult(void *v) { return v; }

    // Methods.
    int plain(int v) { return record("plain", v), ++count; }
    int constant() const { return count; }
    void withDefault(Item const &a, bool b) const { record("withDefault", a, b); }

    // Overloads that are told apart by the first argument.
    static void byFirst(Item const &a, int b, bool c) { record("byFirst Item", a, b, c); }
    static void byFirst(ZString *a, int b, bool c) { record("byFirst ZString", *a, b, c); }
    static void byFirst(Recorder &, int b, bool c) { record("byFirst Recorder", b, c); }

    int count = 0;
};
