// SPDX-License-Identifier: MIT
    const char *name_;
