// SPDX-License-Identifier: Apache-2.0
/** Runs a piece of a test in a process of its own: for what exists once in a process. */
#pragma once

#include "support/process.hpp"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace vantric::test {

/** A copy of this process that exits with 0 unless an expectation in body failed. */
inline Process Child(const std::function<void()>& body) {
    return Process([&]() -> int {
        body();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    });
}

/** Runs body in a copy of this process, whose failure is the test's. */
inline void InAChild(const std::function<void()>& body) {
    EXPECT_EQ(0, Child(body).WaitForEnd());
}

/** Does the same and returns what the child wrote to standard error, one string for each write. */
inline std::vector<std::string> CaptureWrites(const std::function<void()>& body) {
    std::array<int, 2> ends{};
    // Each write into a socket of this kind stays a record of its own.
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()));
    Process child = Child([&] {
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
    EXPECT_EQ(0, child.WaitForEnd());
    return writes;
}

} // namespace vantric::test
