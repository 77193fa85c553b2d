// SPDX-License-Identifier: MIT
    PyGILState_STATE state_ = PyGILState_UNLOCKED;
    long captured_ = 0, markedMainThread_ = 0;
