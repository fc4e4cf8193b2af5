/** Takes the input for the strings of a Sensor Auxiliary Names PDR. What comes out must be UTF-8.
 */
#include "common/utf8.hpp"
#include "pldm_cmds/pdr_builders.hpp"
#include "pldm_cmds/scripted_endpoint.hpp"
#include "pldm_cmds/utf16.hpp"

#include <cstdlib>

namespace {

/** True if ValidUtf8 finds nothing to replace but noncharacters, which keep their width. */
bool IsUtf8(const std::string& text) {
    const std::string valid = vantric::ValidUtf8(text);
    return valid == text || valid.find("\xEF\xBF\xBD") != std::string::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    ScriptedEndpoint endpoint;
    endpoint.cmds.HandlePDR(CompactSensorPdr{.id = 5}.Build());
    endpoint.cmds.HandlePDR(Pdr(6, Bytes()
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
    vantric::Utf8FromUtf16BigEndian({data, size});
    return 0;
}
