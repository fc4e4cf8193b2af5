/** Takes the input for the strings of a Sensor Auxiliary Names PDR. What comes out must be UTF-8.
 */
#include "pldm_cmds/pdr_builders.hpp"
#include "pldm_cmds/scripted_endpoint.hpp"
#include "pldm_cmds/utf16.hpp"

#include <array>
#include <bit>
#include <cstdlib>
#include <string_view>

namespace {

/** True if text is UTF-8 throughout (RFC 3629): decoded here bit by bit, without the code under
 *  test. No overlong form, no surrogate, nothing above U+10FFFF. */
bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text[0]);
        const auto ones = static_cast<std::size_t>(std::countl_one(lead));
        const std::size_t length = ones == 0 ? 1 : ones;
        if (ones == 1 || ones > 4 || length > text.size()) {
            return false;
        }
        std::uint32_t point = lead & (ones == 0 ? 0x7FU : 0x7FU >> ones);
        for (std::size_t i = 1; i < length; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if ((byte & 0xC0U) != 0x80U) {
                return false;
            }
            point = point << 6 | (byte & 0x3FU);
        }
        constexpr std::array<std::uint32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
        if (point < least[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    ScriptedEndpoint endpoint;
    endpoint.HandlePDR(CompactSensorPdr{.id = 5}.Build());
    endpoint.HandlePDR(Pdr(6, Bytes()
                                  .Add(std::uint16_t{0})
                                  .Add(std::uint16_t{5})
                                  .Add(data[0])
                                  .Add(data[1])
                                  .Add(Bytes(data + 2, data + size))));
    const auto& name = endpoint.Data().numericSensors[0]->auxSensorName;
    constexpr std::size_t longestName = 768 / 2 * 3;
    if (name.size() > longestName || !IsUtf8(name)) {
        std::abort();
    }
    if (!IsUtf8(vantric::Utf8FromUtf16BigEndian({data, size}))) {
        std::abort();
    }
    return 0;
}
