// SPDX-License-Identifier: MIT
#pragma once

// Nothing is dropped in silence: what a scene file or script asks for and the host does not honour
// is told, once for each kind and place.
//
// Readers and renderers say what they left out; who runs them decides how it is shown. Without
// anybody listening (a plain interpreter), a notice is a line on standard error.

#include "host/base/HostApi.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace devhost {

/// Something that was asked for and is not honoured.
struct Notice {
    std::string kind;    // a word for programs: "texture", "extension", "statement" ...
    std::string file;    // the file that asks for it; may be empty
    std::string place;   // where in it: a line, node, material or mesh; may be empty
    std::string found;   // what was found there
    std::string instead; // what is done instead

    /// "file: place: found; instead", as the names in it are.
    OPENQUIL_API std::string line() const;
};

/// The notices of one file while it is read: told when it could be read, else forgotten.
class OPENQUIL_API FileNotices {
  public:
    explicit FileNotices(const std::string &path);

    void add(const std::string &kind, const std::string &place, const std::string &found,
             const std::string &instead);
    /// As add, with the name of another file that the first one draws in.
    void addFor(const std::string &path, const std::string &kind, const std::string &place,
                const std::string &found, const std::string &instead);
    void tellAll() const;

  private:
    std::string file_;
    std::vector<Notice> notices_;
};

/// Tells a notice unless one of the same kind was told of that place. May be called from any
/// thread, but not by the listener itself.
OPENQUIL_API void tell(const Notice &notice);

/// The notices told so far in this process.
OPENQUIL_API std::size_t noticesTold();

/// Who shows notices from now on; null for standard error.
OPENQUIL_API void setNoticeListener(std::function<void(const Notice &)> listener);

} // namespace devhost
