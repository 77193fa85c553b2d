// SPDX-License-Identifier: MIT
// Threads that take blocks of a range until none is left.
#include "devhost/session/Parallel.h"

#include "devhost/session/RenderSession.h"
#include "devhost/util/Terminal.h"
#include "devhost/util/Timeline.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <latch>
#include <mutex>
#include <thread>
#include <vector>

namespace devhost {

namespace {

/// Tells the user, once, that the render takes longer than it should.
void tellMissingThreads(size_t started) {
    static std::once_flag told;
    std::call_once(told, [&] {
        tell("no more threads can be started: rendering with " + std::to_string(started) + " of " +
             std::to_string(renderThreads()));
    });
}

/// Starts so many threads, or as many as there are to be had. They are waited for when they go.
std::vector<std::jthread> startThreads(size_t count, const std::function<void()> &body) {
    std::vector<std::jthread> threads;
    threads.reserve(count);
    try {
        while (threads.size() < count)
            threads.emplace_back([body, place = threads.size() + 1] {
                const CrewMember member(place);
                body();
            });
    } catch (const std::exception &) {
        // Some limit of the system or the container: the ones there are do the work.
    }
    return threads;
}

} // namespace

size_t startableThreads(size_t count) {
    std::latch counted(1);
    const auto threads = startThreads(count, [&] { counted.wait(); });
    counted.count_down();
    return threads.size();
}

void forBlocks(size_t count, size_t blockSize,
               const std::function<void(size_t begin, size_t end)> &work) {
    blockSize = std::max<size_t>(blockSize, 1);
    const size_t blocks = (count + blockSize - 1) / blockSize;
    std::atomic<size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureLock;
    const auto takeBlocks = [&] {
        const Stage stage("tiles");
        try {
            for (size_t block = next++; block < blocks; block = next++)
                work(block * blockSize, std::min(count, (block + 1) * blockSize));
        } catch (...) {
            const std::lock_guard lock(failureLock);
            failure = std::current_exception();
            next = blocks; // the others stop after the block they are at
        }
    };
    {
        const size_t wanted = std::clamp<size_t>(blocks, 1, renderThreads());
        const auto helpers = startThreads(wanted - 1, takeBlocks);
        if (helpers.size() + 1 < wanted)
            tellMissingThreads(helpers.size() + 1);
        takeBlocks();
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace devhost
