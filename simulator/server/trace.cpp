// SPDX-License-Identifier: Apache-2.0
#include "server/trace.hpp"

#include <chrono>
#include <stdexcept>

namespace simulator {

namespace {

void AppendHex(std::string& text, std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
}

} // namespace

Trace::Trace(const std::string& path) : file(path) {
    if (!file) {
        throw std::runtime_error("can't write the trace " + path);
    }
}

std::string Trace::Line(std::uint8_t eid, std::span<const std::uint8_t> request,
                        std::span<const std::uint8_t> response) {
    std::string line(1, ' ');
    line += std::to_string(eid);
    line += ' ';
    AppendHex(line, request);
    line += ' ';
    AppendHex(line, response);
    line += '\n';
    return line;
}

void Trace::Write(const std::string& line) {
    using std::chrono::nanoseconds;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    file << std::chrono::duration_cast<nanoseconds>(now).count() << line;
}

} // namespace simulator
