// SPDX-License-Identifier: Apache-2.0
#include "support/eventually.hpp"

#include <thread>

namespace vantric::test {

bool Eventually(const std::function<bool()>& done, std::chrono::seconds patience) {
    constexpr std::chrono::milliseconds breath{20};
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(breath);
    }
    return true;
}

} // namespace vantric::test
