// SPDX-License-Identifier: Apache-2.0
/** Runs a piece of a test in a process of its own: for what exists once in a process. */
#pragma once

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace test {

/** Starts a forked child, which ends with 0 unless an expectation in body failed. */
inline pid_t StartChild(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        body();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

/** Waits for a child's end and returns its exit status, or -1 if it didn't exit by itself. */
inline int EndOf(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/** Runs body in a forked child, whose failure is the test's. */
inline void InAChild(const std::function<void()>& body) {
    EXPECT_EQ(0, EndOf(StartChild(body)));
}

/** Does the same and returns what the child wrote to standard error, one string for each write. */
inline std::vector<std::string> CaptureWrites(const std::function<void()>& body) {
    std::array<int, 2> ends{};
    // Each write into a socket of this kind stays a record of its own.
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()));
    const pid_t child = StartChild([&] {
        close(ends[0]);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        body();
    });
    close(ends[1]);
    std::vector<std::string> writes;
    std::array<char, 65536> buffer{};
    ssize_t length = 0;
    while ((length = read(ends[0], buffer.data(), buffer.size())) > 0) {
        writes.emplace_back(buffer.data(), static_cast<std::size_t>(length));
    }
    close(ends[0]);
    EXPECT_EQ(0, EndOf(child));
    return writes;
}

} // namespace test
