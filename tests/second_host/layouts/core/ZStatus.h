// SPDX-License-Identifier: MIT
    int code_;
    int text_; // its place among the texts
