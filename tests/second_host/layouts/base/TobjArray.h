// SPDX-License-Identifier: MIT
    T *first_;
    unsigned short count_;
