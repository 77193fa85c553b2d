// SPDX-License-Identifier: MIT
// Linked into the programs of an address-sanitized build. The interpreter keeps its small objects
// in arenas that it maps itself, where the leak check does not look for pointers: everything that
// only a Python object points to would be a leak. So arenas are made known as places to look.

#include <dlfcn.h>
#include <sanitizer/lsan_interface.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>

/// The leak check maps memory too, while it holds the lock that registering takes.
static bool is_interpreter(const void *caller) {
    Dl_info info;
    return dladdr(caller, &info) && info.dli_fname && std::strstr(info.dli_fname, "libpython");
}

extern "C" __attribute__((visibility("default"))) void *
mmap64(void *address, size_t size, int protection, int flags, int file, off_t offset) noexcept {
    void *mapped =
        reinterpret_cast<void *>(syscall(SYS_mmap, address, size, protection, flags, file, offset));
    // An arena that is freed may stay known: what is not mapped is not looked at.
    if (mapped != MAP_FAILED && is_interpreter(__builtin_return_address(0)))
        __lsan_register_root_region(mapped, size);
    return mapped;
}
