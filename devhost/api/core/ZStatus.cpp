// SPDX-License-Identifier: MIT
#include "host/core/ZStatus.h"

#include "devhost/util/Hidden.h"
#include "devhost/util/Terminal.h"
#include "host/core/ZString.h"

#include <iterator>
#include <new>
#include <string>
#include <utility>

namespace {

struct CodeText {
    const char *name;
    const char *text;
};

constexpr CodeText kCodeTexts[] = {
    {"kSuccess", "the operation succeeded"},
    {"kFailure", "the operation failed"},
    {"kInsufficientMemory", "there is not enough memory"},
    {"kInvalidParameter", "an argument is not valid"},
    {"kLicenseFailure", "no licence for the operation"},
    {"kUnknownParameter", "an argument is not known"},
    {"kNotImplemented", "the operation is not implemented"},
    {"kNotFound", "the object was not found"},
    {"kEndOfFile", "the end of the file was reached"},
};

CodeText codeText(ZStatus::ZStatusCode code) {
    const auto index = static_cast<unsigned>(code);
    return index < std::size(kCodeTexts) ? kCodeTexts[index]
                                         : CodeText{"unknown code", "the outcome is not known"};
}

} // namespace

struct ZStatus::Text : devhost::Shared {
    explicit Text(const char *utf8) : text(utf8) {}
    const std::string text;
};

ZStatus::ZStatus() noexcept : code_(kSuccess), text_(nullptr) {}

ZStatus::ZStatus(ZStatusCode code) noexcept : code_(code), text_(nullptr) {}

ZStatus::ZStatus(ZStatusCode code, const char *text) : ZStatus(code) {
    if (code == kSuccess || !text)
        return;
    try {
        text_ = new Text(text);
    } catch (const std::bad_alloc &) {
        // The code's general text has to do.
    }
}

ZStatus::ZStatus(const ZStatus &other) noexcept
    : code_(other.code_), text_(devhost::share(other.text_)) {}

ZStatus::~ZStatus() {
    devhost::drop(text_);
}

ZStatus &ZStatus::operator=(const ZStatus &other) noexcept {
    ZStatus copy(other);
    std::swap(code_, copy.code_);
    std::swap(text_, copy.text_);
    return *this;
}

bool ZStatus::error() const {
    return code_ != kSuccess;
}

ZStatus::operator bool() const {
    return code_ == kSuccess;
}

ZStatus::ZStatusCode ZStatus::statusCode() const {
    return code_;
}

ZString ZStatus::errorString() const {
    const CodeText general = codeText(code_);
    const std::string line =
        std::string("(") + general.name + "): " + (text_ ? text_->text.c_str() : general.text);
    return ZString(devhost::harmless(line).c_str());
}

void ZStatus::perror(const char *heading) const {
    devhost::writeLine(std::string(heading ? heading : "") + ": " + errorString().asUTF8());
}

void ZStatus::clear() {
    *this = ZStatus();
}

bool ZStatus::operator==(const ZStatus &other) const {
    return code_ == other.code_;
}

bool ZStatus::operator==(ZStatusCode code) const {
    return code_ == code;
}
