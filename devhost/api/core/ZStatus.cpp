// The outcome of a host operation: its texts.
#include "host/core/ZStatus.h"

#include "devhost/util/Terminal.h"
#include "host/core/ZString.h"

#include <iterator>
#include <new>

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

ZStatus::ZStatus(ZStatusCode code, const char *text) : code_(code) {
    if (code == kSuccess || !text)
        return;
    try {
        text_ = std::make_shared<const std::string>(text);
    } catch (const std::bad_alloc &) {
        // The code's general text has to do.
    }
}

ZString ZStatus::errorString() const {
    const CodeText general = codeText(code_);
    const std::string line =
        std::string("(") + general.name + "): " + (text_ ? text_->c_str() : general.text);
    return ZString(devhost::harmless(line).c_str());
}

void ZStatus::perror(const char *heading) const {
    devhost::writeLine(std::string(heading ? heading : "") + ": " + errorString().asUTF8());
}
