// SPDX-License-Identifier: Apache-2.0
#include "device_transport/device_transport.hpp"

#include "common/log.hpp"

#include <array>
#include <string_view>

namespace vantric {

namespace {
constexpr int bytesInLine = 16;
constexpr int textOfByte = 3;
} // namespace

DeviceTransport::DeviceTransport(std::uint8_t slot, std::uint8_t eid) : slot(slot), eid(eid) {}

void DeviceTransport::Packet(const std::string& label, std::uint8_t slot, std::uint8_t command,
                             const std::uint8_t* data, int length) const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    // Every exchange comes here twice, whether the log shows this level or not: so no allocation.
    std::array<char, bytesInLine * textOfByte + 1> line{};
    char* end = line.data();
    for (int i = 0; i < length; ++i) {
        *end++ = digits[data[i] >> 4];
        *end++ = digits[data[i] & 0x0F];
        *end++ = ' ';
        const int written = i + 1;
        if (written % bytesInLine == 0 || written == length) {
            *end = '\0';
            VANTRIC_LOG(LOG_LEVEL_TRACE, "%s[%d][%0x][%02d/%02d]: %s\n", label.c_str(), slot,
                        static_cast<unsigned>(command), written, length, line.data());
            end = line.data();
        }
    }
}

} // namespace vantric
