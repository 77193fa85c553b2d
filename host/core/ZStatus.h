// SPDX-License-Identifier: MIT
#pragma once

// The outcome of a host operation.

#include "host/base/HostApi.h"

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
    ZStatus() noexcept;
    /// Makes a status with the code's general text.
    ZStatus(ZStatusCode code) noexcept;
    /// Makes a status with a text of its own, in UTF-8; success keeps no text.
    ZStatus(ZStatusCode code, const char *text);
    ZStatus(const ZStatus &other) noexcept;
    ~ZStatus();
    ZStatus &operator=(const ZStatus &other) noexcept;

    /// Returns true on failure.
    bool error() const;
    /// True on success.
    explicit operator bool() const;
    /// Returns the code.
    ZStatusCode statusCode() const;
    /// Returns the code's name in parentheses and the text, as "(kFailure): the text".
    ZString errorString() const;
    /// Writes the heading, a colon and errorString() to the standard error output.
    void perror(const char *heading) const;
    /// Returns to success.
    void clear();

    /// Returns true when the codes are the same; the texts do not count.
    bool operator==(const ZStatus &other) const;
    /// Returns true when the code is the given one.
    bool operator==(ZStatusCode code) const;

  private:
    struct Text;

    ZStatusCode code_;
    Text *text_; // shared by copies; null for the code's general text
};
