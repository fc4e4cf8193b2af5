// SPDX-License-Identifier: Apache-2.0
/** Terminus Locator PDR, type 1 (DSP0248). */
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"

namespace vantric {

namespace {

constexpr std::uint8_t invalid = 0;

enum LocatorType : std::uint8_t {
    LOCATOR_UID = 0,
    LOCATOR_MCTP_EID = 1,
    LOCATOR_SMBUS = 2,
    LOCATOR_SYSTEM_SOFTWARE = 3,
};

} // namespace

void HandleTerminusLocatorPDR(std::span<const std::uint8_t> record, __extractedData& data,
                              int eid) {
    ByteReader body = BodyOf(record);
    auto locator = std::make_shared<TerminusLocator>();
    body.Skip(2); // PLDMTerminusHandle
    const auto validity = body.Read<std::uint8_t>();
    locator->tid = body.Read<std::uint8_t>();
    locator->containerID = body.Read<std::uint16_t>();
    const auto type = body.Read<std::uint8_t>();
    if (!IsWhole(eid, body, PDR_TERMINUS_LOCATOR) || validity == invalid) {
        return;
    }
    // The value is as long as its type makes it, and what it doesn't hold reads as 0.
    body.Skip(1); // size of the value
    switch (type) {
    case LOCATOR_UID:
        locator->terminusInstance = body.Read<std::uint8_t>();
        locator->uidHead = body.Read<std::uint16_t>();
        break;
    case LOCATOR_MCTP_EID:
        locator->terminusEID = body.Read<std::uint8_t>();
        break;
    case LOCATOR_SMBUS:
        locator->uidHead = body.Read<std::uint16_t>();
        locator->uidNext = body.Read<std::uint16_t>();
        break;
    case LOCATOR_SYSTEM_SOFTWARE:
        locator->softwareClass = body.Read<std::uint8_t>();
        locator->uidHead = body.Read<std::uint16_t>();
        break;
    default:
        break;
    }
    AppendBounded(data.terminusLocators, std::move(locator));
}

} // namespace vantric
