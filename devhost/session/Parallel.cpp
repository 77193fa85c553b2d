// Threads that take blocks of a range until none is left.
#include "devhost/session/Parallel.h"

#include "devhost/session/RenderSession.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace devhost {

void forBlocks(size_t count, size_t blockSize,
               const std::function<void(size_t begin, size_t end)> &work) {
    blockSize = std::max<size_t>(blockSize, 1);
    const size_t blocks = (count + blockSize - 1) / blockSize;
    std::atomic<size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureLock;
    const auto takeBlocks = [&] {
        try {
            for (size_t block = next++; block < blocks; block = next++)
                work(block * blockSize, std::min(count, (block + 1) * blockSize));
        } catch (...) {
            const std::lock_guard lock(failureLock);
            failure = std::current_exception();
            next = blocks; // the others stop after the block they are at
        }
    };
    std::vector<std::jthread> helpers;
    const size_t wanted = std::min<size_t>(renderThreads(), blocks);
    try {
        while (helpers.size() + 1 < wanted)
            helpers.emplace_back(takeBlocks);
    } catch (const std::system_error &) {
        // No more threads to be had: the ones there are do the work.
    }
    takeBlocks();
    helpers.clear(); // waits for them
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace devhost
