#pragma once

// How a host may count its live objects. Only objects of their own on the heap count, not members,
// elements and locals; neither the size of an object nor the place of its members changes.

#include "host/base/HostApi.h"

#include <new>

/// Told of an object that has got its memory (+1) or is about to lose it (-1). A host need not
/// have this function.
extern "C" OPENQUIL_API void tCountObject(const char *className, int change) __attribute__((weak));

[[gnu::noinline]] inline void *tCountNewObject(void *memory, const char *className) noexcept {
    if (memory && tCountObject)
        tCountObject(className, 1);
    return memory;
}

[[gnu::noinline]] inline void tDeleteCountedObject(void *memory, const char *className) noexcept {
    if (memory && tCountObject)
        tCountObject(className, -1);
    ::operator delete(memory);
}

/// Stands in the public part of each class that scripts can own objects of.
#define OPENQUIL_COUNTED(Class)                                                        \
    static void *operator new(std::size_t size) {                                      \
        return tCountNewObject(::operator new(size), #Class);                          \
    }                                                                                  \
    static void *operator new(std::size_t size, const std::nothrow_t &none) noexcept { \
        return tCountNewObject(::operator new(size, none), #Class);                    \
    }                                                                                  \
    static void operator delete(void *memory) noexcept {                               \
        tDeleteCountedObject(memory, #Class);                                          \
    }                                                                                  \
    static void operator delete(void *memory, const std::nothrow_t &) noexcept {       \
        tDeleteCountedObject(memory, #Class);                                          \
    }
