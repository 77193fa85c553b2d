// SPDX-License-Identifier: MIT
#pragma once

// Processes of their own for what a test lets crash or hang.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

/// The body of a child process: prints what failed in it and tells by the exit status whether any
/// did. It has half a minute, and its crash leaves no core dump.
[[noreturn]] inline void in_child(const std::function<void()> &body) {
    constexpr rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    alarm(30);
    body();
    const testing::TestResult &result =
        *testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int i = 0; i < result.total_part_count(); ++i) {
        const testing::TestPartResult &part = result.GetTestPartResult(i);
        if (part.failed())
            std::fprintf(stderr, "%s:%d: %s\n", part.file_name(), part.line_number(),
                         part.message());
    }
    std::fflush(nullptr);
    _exit(testing::Test::HasFailure() ? 1 : 0);
}

/// Runs statements in a process of their own: what crashes or hangs there fails this test only.
#define EXPECT_SURVIVES(...) \
    EXPECT_EXIT(in_child([&] { __VA_ARGS__; }), testing::ExitedWithCode(0), "")
