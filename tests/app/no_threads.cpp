// SPDX-License-Identifier: MIT
// Preloaded, stands for a container without room for another process: no thread can be started.
#include "host/base/HostApi.h"

#include <pthread.h>

#include <cerrno>

extern "C" OPENQUIL_API int pthread_create(pthread_t *, const pthread_attr_t *, void *(*)(void *),
                                           void *) {
    return EAGAIN;
}
