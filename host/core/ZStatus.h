#pragma once

// The outcome of a host operation.

#include "host/base/HostApi.h"

#include <memory>
#include <string>

class ZString;

/// The outcome of a host operation: a code and, on failure, a text that says what was wrong.
class OPENQUIL_API ZStatus {
  public:
    /// What kind of outcome it is.
    enum ZStatusCode {
        kSuccess = 0,
        kFailure = 1,
        kInsufficientMemory = 2,
        kInvalidParameter = 3,
        kLicenseFailure = 4,
        kUnknownParameter = 5,
        kNotImplemented = 6,
        kNotFound = 7,
        kEndOfFile = 8
    };

    /// Makes a status that reports success.
    ZStatus() noexcept : code_(kSuccess) {}
    /// Makes a status with the code's general text.
    ZStatus(ZStatusCode code) noexcept : code_(code) {}
    /// Makes a status with a text of its own, in UTF-8; success keeps no text.
    ZStatus(ZStatusCode code, const char *text);
    /// Makes a status with a text of its own, in UTF-8; success keeps no text.
    ZStatus(ZStatusCode code, const std::string &text) : ZStatus(code, text.c_str()) {}

    /// Returns true on failure.
    bool error() const { return code_ != kSuccess; }
    /// True on success.
    explicit operator bool() const { return code_ == kSuccess; }
    /// Returns the code.
    ZStatusCode statusCode() const { return code_; }
    /// Returns the code's name in parentheses and the text, as "(kFailure): the text".
    ZString errorString() const;
    /// Writes the heading, a colon and errorString() to the standard error output.
    void perror(const char *heading) const;
    /// Returns to success.
    void clear() {
        code_ = kSuccess;
        text_.reset();
    }

    /// Returns true when the codes are the same; the texts do not count.
    bool operator==(const ZStatus &other) const { return code_ == other.code_; }
    /// Returns true when the code is the given one.
    bool operator==(ZStatusCode code) const { return code_ == code; }

  private:
    ZStatusCode code_;
    std::shared_ptr<const std::string> text_;
};
