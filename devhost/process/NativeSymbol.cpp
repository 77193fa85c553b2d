// SPDX-License-Identifier: MIT
#include "devhost/process/NativeSymbol.h"

#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>
#include <unwind.h>

#include <algorithm>
#include <cstring>
#include <optional>

// The demangler's own entry that asks for no memory; libsupc++ has it.
extern "C" int __gcclibcxx_demangle_callback( // NOLINT(bugprone-reserved-identifier)
    const char *mangled, void (*part)(const char *text, size_t size, void *data), void *data);

namespace devhost {
namespace {

/// More frames than a stack has room for that is not gone altogether.
constexpr int kMostFrames = 1'000'000;
/// The demangler takes a multiple of a name's length from the stack.
constexpr size_t kLongestName = 1000;
/// Of a template's name the beginning tells enough.
constexpr size_t kMostShown = 160;

struct Library {
    uintptr_t base;
    const char *path;
    std::string_view name;
};

/// The library of ours that the code is in.
std::optional<Library> ownLibrary(uintptr_t code) {
    dl_find_object object;
    if (_dl_find_object(reinterpret_cast<void *>(code), &object) != 0)
        return {};
    const std::string_view path = object.dlfo_link_map->l_name;
    const std::string_view name = path.substr(path.rfind('/') + 1);
    if (!name.starts_with("libOpenQuil") && !name.starts_with("_OpenQuil"))
        return {};
    return Library{object.dlfo_link_map->l_addr, path.data(), name};
}

class File {
  public:
    explicit File(const char *path) : descriptor_(open(path, O_RDONLY | O_CLOEXEC)) {}
    ~File() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    /// How many bytes there were.
    size_t readAt(size_t offset, void *target, size_t size) const {
        if (lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) < 0)
            return 0;
        return static_cast<size_t>(std::max<ssize_t>(read(descriptor_, target, size), 0));
    }
    template <class T>
    bool readAt(size_t offset, T &target) const {
        return readAt(offset, &target, sizeof target) == sizeof target;
    }

  private:
    int descriptor_;
};

/// The section with the most symbols: a library that was stripped has those for the loader.
bool findSymbols(const File &file, const Elf64_Ehdr &header, Elf64_Shdr &symbols) {
    bool found = false;
    Elf64_Shdr section;
    for (size_t i = 0; i < header.e_shnum; ++i) {
        if (!file.readAt(header.e_shoff + i * sizeof section, section))
            return false;
        if (section.sh_type != SHT_SYMTAB && (section.sh_type != SHT_DYNSYM || found))
            continue;
        symbols = section;
        found = true;
    }
    return found;
}

/// The place of the name of the function around an address of the file, in the file.
size_t nameAround(const File &file, const Elf64_Shdr &symbols, size_t names, uintptr_t address) {
    constexpr size_t kBatch = 128;
    Elf64_Sym batch[kBatch];
    for (size_t at = 0; at < symbols.sh_size; at += sizeof batch) {
        const size_t size = file.readAt(symbols.sh_offset + at, batch,
                                        std::min<size_t>(sizeof batch, symbols.sh_size - at));
        for (size_t i = 0; i < size / sizeof *batch; ++i)
            if (ELF64_ST_TYPE(batch[i].st_info) == STT_FUNC && batch[i].st_value <= address &&
                address - batch[i].st_value < batch[i].st_size)
                return names + batch[i].st_name;
    }
    return 0;
}

/// Fills in the mangled name of the function around an address; false where it is not to be had.
bool readName(const Library &library, uintptr_t code, char (&name)[kLongestName]) {
    const File file(library.path);
    Elf64_Ehdr header;
    Elf64_Shdr symbols = {}, names = {};
    if (!file.readAt(0, header) || !findSymbols(file, header, symbols) ||
        !file.readAt(header.e_shoff + symbols.sh_link * sizeof names, names))
        return false;
    const size_t place = nameAround(file, symbols, names.sh_offset, code - library.base);
    const size_t size = place ? file.readAt(place, name, sizeof name) : 0;
    return std::memchr(name, '\0', size) != nullptr;
}

void addPart(const char *part, size_t size, void *text) {
    auto &name = *static_cast<SafeText *>(text);
    const size_t room = kMostShown - std::min(kMostShown, name.text().size());
    name << std::string_view(part, std::min(size, room));
}

void addFunction(SafeText &text, const Library &library, uintptr_t code) {
    char name[kLongestName];
    if (!readName(library, code, name))
        text.address(code - library.base);
    else if (__gcclibcxx_demangle_callback(name, addPart, &text) != 0)
        text << name;
    if (text.text().size() >= kMostShown)
        text << "...";
    text << " in " << library.name;
}

struct Search {
    SafeText &text;
    int frames;
    bool found;
};

_Unwind_Reason_Code visit(_Unwind_Context *context, void *data) {
    auto &search = *static_cast<Search *>(data);
    int isBefore = 0; // as where a signal came; else it is where the call returns to
    const uintptr_t code = _Unwind_GetIPInfo(context, &isBefore) - (isBefore ? 0 : 1);
    if (const auto library = ownLibrary(code)) {
        addFunction(search.text, *library, code);
        search.found = true;
    }
    return search.found || ++search.frames > kMostFrames ? _URC_END_OF_STACK : _URC_NO_REASON;
}

} // namespace

void prepareNativeSymbols() {
    int frames = 0;
    _Unwind_Backtrace([](_Unwind_Context *, void *) { return _URC_END_OF_STACK; }, &frames);
}

bool addRunningFunction(SafeText &text) {
    Search search{text, 0, false};
    _Unwind_Backtrace(visit, &search);
    return search.found;
}

} // namespace devhost
