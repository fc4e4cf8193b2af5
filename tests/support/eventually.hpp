// SPDX-License-Identifier: Apache-2.0
/** Waiting for a condition that nothing announces. */
#pragma once

#include <chrono>
#include <functional>

namespace vantric::test {

/** Asks done() again and again, with a breath between two looks, until it holds or 30 s have
 *  passed. Returns the last done(). */
bool Eventually(const std::function<bool()>& done,
                std::chrono::seconds patience = std::chrono::seconds(30));

} // namespace vantric::test
