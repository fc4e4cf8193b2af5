// SPDX-License-Identifier: Apache-2.0
#include "targets.hpp"

#include "pldm_cmds/pdr_builders.hpp"
#include "pldm_cmds/utf16.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <string_view>

namespace {

/** Takes an input apart: each chunk is a u16 length and as many bytes, or what is left of them. */
class Chunks {
public:
    explicit Chunks(std::span<const std::uint8_t> input) : rest(input) {}

    bool Empty() const { return rest.empty(); }

    Bytes Next() {
        const std::size_t low = rest.empty() ? 0U : rest[0];
        const std::size_t high = rest.size() < 2 ? 0U : rest[1];
        rest = rest.subspan(std::min<std::size_t>(2, rest.size()));
        const auto chunk = rest.first(std::min(low | high << 8, rest.size()));
        rest = rest.subspan(chunk.size());
        return {chunk.begin(), chunk.end()};
    }

private:
    std::span<const std::uint8_t> rest;
};

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

/** A FRU table, and a timestamp. */
void Fru(std::span<const std::uint8_t> input) {
    ScriptedEndpoint endpoint;
    vantric::CheckFRURecordTypeAndParse(input, endpoint.Data(), ScriptedEndpoint::eid);
    vantric::convertToTimestamp104(input);
}

/** The strings of a Sensor Auxiliary Names PDR. What comes out must be UTF-8. */
void Names(std::span<const std::uint8_t> input) {
    if (input.size() < 2) {
        return;
    }
    ScriptedEndpoint endpoint;
    endpoint.HandlePDR(CompactSensorPdr{.id = 5}.Build());
    endpoint.HandlePDR(Pdr(6, Bytes()
                                  .Add(std::uint16_t{0})
                                  .Add(std::uint16_t{5})
                                  .Add(input[0])
                                  .Add(input[1])
                                  .Add(Bytes(input.begin() + 2, input.end()))));
    const auto& name = endpoint.Data().numericSensors[0]->auxSensorName;
    constexpr std::size_t longestName = 768 / 2 * 3;
    if (name.size() > longestName || !IsUtf8(name)) {
        std::abort();
    }
    if (!IsUtf8(vantric::Utf8FromUtf16BigEndian(input))) {
        std::abort();
    }
}

/** Records of all types, one after the other, into one endpoint. */
void Pdrs(std::span<const std::uint8_t> input) {
    Chunks records(input);
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {0xF1F1F000, 0xF1F2F000});
    while (!records.Empty()) {
        endpoint.HandlePDR(records.Next());
    }
    endpoint.cmds.GetExtractedData();
}

/** The answers to everything that a device asks. */
void Responses(std::span<const std::uint8_t> input) {
    Chunks responses(input);
    ScriptedEndpoint endpoint;
    endpoint.transport.respond = [&responses](const Bytes&) {
        return responses.Empty() ? NoAnswer(3) : Answer{.status = 0, .bytes = responses.Next()};
    };
    TalkTo(endpoint);
}

} // namespace

const std::map<std::string, FuzzTarget> fuzzTargets{
    {"fru", Fru}, {"names", Names}, {"pdr", Pdrs}, {"responses", Responses}};

void TalkTo(ScriptedEndpoint& endpoint) {
    auto& cmds = endpoint.cmds;
    cmds.GetPLDMTypes();
    endpoint.Supports(2, {0xF1F2F000}); // so that an early mistake doesn't end it all
    cmds.GetFWParameters();
    if (cmds.GetFRUMetaData() == 0) {
        cmds.GetFRUContents();
    }
    cmds.GetPLDMVersions(255);
    cmds.GetSupportedCmds(255);
    cmds.SelectPLDMVersions();
    cmds.GetTID();
    cmds.GetPDRRepositoryInfo(1);
    cmds.SetNumericeSensorEnable();
    for (int cycle = 0; cycle < 2; ++cycle) {
        vantric::ReadingMap readings;
        vantric::StateChangeMap changes;
        cmds.GetAllSensorReading(readings);
        cmds.GetStateSensorReading(changes);
        cmds.GetPDRRepositoryInfo(0);
    }
}
