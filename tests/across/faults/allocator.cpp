// SPDX-License-Identifier: MIT
#include "tests/across/faults/allocator.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's, behind what is replaced here
void *__libc_malloc(size_t);
void *__libc_calloc(size_t, size_t);
void *__libc_realloc(void *, size_t);
void __libc_free(void *);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

constinit __thread long failing = 0, seen = 0; // no allocation behind these
constinit __thread bool goes_on = false;
constinit std::atomic<long> blocks{0};

bool fails() {
    if (!failing)
        return false;
    ++seen;
    if (goes_on ? seen < failing : seen != failing)
        return false;
    errno = ENOMEM;
    return true;
}

void *counted(void *block) {
    if (block)
        ++blocks;
    return block;
}

} // namespace

void allocator::fail_at(long nth, bool persistent) {
    seen = 0;
    goes_on = persistent;
    failing = nth;
}

long allocator::disarm() {
    failing = 0;
    return seen;
}

long allocator::live() {
    return blocks;
}

extern "C" {

#define REPLACES [[gnu::visibility("default")]]

REPLACES void *malloc(size_t size) {
    return fails() ? nullptr : counted(__libc_malloc(size));
}
REPLACES void *calloc(size_t nmemb, size_t size) {
    return fails() ? nullptr : counted(__libc_calloc(nmemb, size));
}
REPLACES void free(void *ptr) {
    if (ptr)
        --blocks;
    __libc_free(ptr);
}
REPLACES void *realloc(void *ptr, size_t size) {
    if (!ptr)
        return malloc(size);
    if (!size)
        return free(ptr), nullptr;
    return fails() ? nullptr : __libc_realloc(ptr, size);
}

// The interpreter's pools are cut from blocks of this size. Without them each of its allocations is
// one of malloc's, also in builds of it where PyObject_Malloc cannot be replaced.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the system's are reserved
REPLACES void *mmap64(void *addr, size_t length, int prot, int flags, int fd, off64_t offset) {
    constexpr size_t kArenaSize = 256 * 1024;
    if (length == kArenaSize && fd == -1) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    return reinterpret_cast<void *>(syscall(SYS_mmap, addr, length, prot, flags, fd, offset));
}
}
