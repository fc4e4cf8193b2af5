// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/log_recorder.hpp"

#include "support/captured_log.hpp"

namespace vantric::test {

std::vector<std::string> TakeLog() {
    static CapturedLog log;
    std::vector<std::string> texts;
    for (const auto& line : log.Take()) {
        texts.push_back(std::to_string(line.level) + " " + line.function + ": " +
                        line.message.substr(0, line.message.find('\n')));
    }
    return texts;
}

} // namespace vantric::test
