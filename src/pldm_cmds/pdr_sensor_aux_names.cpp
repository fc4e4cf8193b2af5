// SPDX-License-Identifier: Apache-2.0
/** Sensor Auxiliary Names PDR, type 6 (DSP0248). */
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "pldm_cmds/utf16.hpp"

#include <algorithm>
#include <optional>

namespace vantric {

namespace {

constexpr std::size_t sensorIdOffset = 2;
constexpr std::size_t sensorCountOffset = 4;
constexpr std::size_t nameStringCountOffset = 5;
constexpr std::size_t stringsOffset = 6;
constexpr std::size_t maxStringArea = 768;

/** A language tag and a name. */
struct NameString {
    std::string languageTag; ///< ASCII
    std::string name;        ///< UTF-8
};

/** The strings of a PDR, one after the other, up to the bound of their area or of the record. */
class NameStrings {
public:
    explicit NameStrings(std::span<const std::uint8_t> area)
        : rest(area.first(std::min(area.size(), maxStringArea))) {}

    /** The next string. A tag that isn't ended yields none; a name that isn't is cut. In either
     *  case no other follows. */
    std::optional<NameString> Next() {
        const auto tagEnd = std::ranges::find(rest, std::uint8_t{0});
        if (tagEnd == rest.end()) {
            rest = {};
            return std::nullopt;
        }
        NameString string;
        string.languageTag.assign(rest.begin(), tagEnd);
        rest = rest.subspan(string.languageTag.size() + 1);
        string.name = TakeName();
        return string;
    }

private:
    std::string TakeName() {
        constexpr std::size_t unitSize = 2;
        std::size_t end = 0;
        while (end + unitSize <= rest.size() && (rest[end] != 0 || rest[end + 1] != 0)) {
            end += unitSize;
        }
        auto name = Utf8FromUtf16BigEndian(rest.first(end));
        rest = rest.subspan(std::min(end + unitSize, rest.size()));
        return name;
    }

    std::span<const std::uint8_t> rest;
};

/** The first record with this id, or none. */
template <typename Record>
Record* FindById(const std::vector<std::shared_ptr<Record>>& records, std::uint16_t Record::*member,
                 std::uint16_t id) {
    const auto found = std::ranges::find_if(
        records, [member, id](const auto& record) { return (*record).*member == id; });
    return found == records.end() ? nullptr : found->get();
}

} // namespace

void HandleSensorAuxNamesPDR(std::span<const std::uint8_t> record, __extractedData& data) {
    ByteReader body = BodyOf(record);
    const auto id = body.At<std::uint16_t>(sensorIdOffset);
    const auto sensorCount = body.At<std::uint8_t>(sensorCountOffset);
    const auto stringCount = body.At<std::uint8_t>(nameStringCountOffset);

    auto* numeric = FindById(data.numericSensors, &__Temp_sensors::sensorID, id);
    auto* state = FindById(data.stateSensors, &_StateSensors::sensorId, id);
    if ((numeric != nullptr) == (state != nullptr)) {
        // The names of no sensor, or of two.
        return;
    }

    body.Seek(stringsOffset);
    NameStrings strings(body.Take(body.Remaining()));
    for (std::size_t sensor = 0; sensor < sensorCount; ++sensor) {
        for (std::size_t string = 0; string < stringCount; ++string) {
            auto next = strings.Next();
            if (!next) {
                return;
            }
            if (numeric != nullptr) {
                numeric->auxLanguageTag = std::move(next->languageTag);
                numeric->auxSensorName = std::move(next->name);
            } else if (sensor < state->compositeSensors.size()) {
                auto& member = state->compositeSensors[sensor];
                member.langTag = std::move(next->languageTag);
                member.sensorName = std::move(next->name);
            }
        }
    }
}

} // namespace vantric
