// SPDX-License-Identifier: MIT
#include "devhost/util/GuardedMemory.h"

#include "devhost/util/Terminal.h"

#include <sys/mman.h>
#include <unistd.h>

#include <ctime>
#include <mutex>
#include <unordered_map>

namespace devhost {

std::atomic<bool> guardIsOn = false;

namespace {

/// Memory that was opened. It stays in the list when it is closed, for the reports.
struct Block {
    uintptr_t mapping, mapped; ///< with the pages around it
    uintptr_t data, bytes;
    const char *what;
    std::atomic<const char *> closedWhen; ///< null as long as it is open
    std::atomic<int64_t> closedAt;        ///< nanoseconds
};

// The list grows by parts that never move, so that a signal handler may read it at any time.
constexpr size_t kPartSize = 1024;
constexpr size_t kMostParts = 4096;

struct Blocks {
    std::mutex mutex;
    std::unordered_map<const void *, Block *> open;
    std::atomic<Block *> parts[kMostParts] = {};
    std::atomic<size_t> count = 0;
};

Blocks &blocks() {
    // Never destroyed: memory is given back until the process has ended.
    static auto *const instance = new Blocks;
    return *instance;
}

int64_t nanoseconds() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return int64_t(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

uintptr_t roundedUp(uintptr_t value, uintptr_t unit) {
    return (value + unit - 1) / unit * unit;
}

/// Room for one more; null when the list is full. Called under the lock.
Block *newBlock() {
    const size_t index = blocks().count;
    if (index / kPartSize == kMostParts)
        return nullptr;
    auto &part = blocks().parts[index / kPartSize];
    if (!part)
        part = new Block[kPartSize]();
    return &part.load()[index % kPartSize];
}

/// Pages that cannot be touched, with room for so many bytes and a page at either end.
bool mapPages(Block &block) {
    const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t inner = roundedUp(block.bytes, page);
    block.mapped = inner + 2 * page;
    void *const mapping =
        mmap(nullptr, block.mapped, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapping == MAP_FAILED)
        return false;
    block.mapping = reinterpret_cast<uintptr_t>(mapping);
    if (mprotect(static_cast<char *>(mapping) + page, inner, PROT_READ | PROT_WRITE) == 0)
        return true;
    munmap(mapping, block.mapped);
    return false;
}

void tellFull() {
    static std::once_flag told;
    std::call_once(told, [] {
        tell("the guard has no more pages: not all that is lent is guarded from now on");
    });
}

void addOffset(SafeText &text, const Block &block, uintptr_t address) {
    if (address < block.data)
        text << static_cast<long long>(block.data - address) << " bytes before ";
    else if (address >= block.data + block.bytes)
        text << static_cast<long long>(address - block.data - block.bytes)
             << " bytes behind the end of ";
    else
        text << "at byte " << static_cast<long long>(address - block.data) << " of ";
    text << block.what << ", " << static_cast<long long>(block.bytes) << " bytes";
}

} // namespace

void startGuard() {
    blocks();
    guardIsOn = true;
}

void *openGuarded(size_t bytes, size_t alignment, const char *what) {
    if (!guardIsOn)
        return nullptr;
    const std::lock_guard lock(blocks().mutex);
    Block *const block = newBlock();
    if (block)
        block->bytes = bytes;
    if (!block || !mapPages(*block)) {
        tellFull();
        return nullptr;
    }
    const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    block->data = block->mapping + block->mapped - page - roundedUp(bytes, alignment);
    block->what = what;
    ++blocks().count;
    void *const address = reinterpret_cast<void *>(block->data);
    blocks().open[address] = block;
    return address;
}

bool closeGuarded(const void *address, const char *when) noexcept {
    const std::lock_guard lock(blocks().mutex);
    const auto found = blocks().open.find(address);
    if (found == blocks().open.end())
        return false;
    Block &block = *found->second;
    block.closedAt = nanoseconds();
    block.closedWhen = when;
    // Fresh pages: the memory goes, and closed neighbours become one mapping.
    if (mmap(reinterpret_cast<void *>(block.mapping), block.mapped, PROT_NONE,
             MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1, 0) == MAP_FAILED)
        tellFull();
    blocks().open.erase(found);
    return true;
}

bool explainAddress(SafeText &text, uintptr_t address) {
    if (!guardIsOn)
        return false;
    for (size_t i = 0; i < blocks().count; ++i) {
        const Block &block = blocks().parts[i / kPartSize].load()[i % kPartSize];
        if (address - block.mapping >= block.mapped)
            continue;
        addOffset(text, block, address);
        if (const char *const when = block.closedWhen)
            text << ", taken back "
                 << static_cast<long long>((nanoseconds() - block.closedAt) / 1'000'000)
                 << " ms before: " << when;
        return true;
    }
    return false;
}

} // namespace devhost
