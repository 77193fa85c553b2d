// SPDX-License-Identifier: MIT
    char *bytes_; // UTF-8
    unsigned byteCount_;
    mutable wchar_t *wide_; // made when it is asked for
    unsigned charCount_;
