// SPDX-License-Identifier: Apache-2.0
#include "pldm/checksum.hpp"
#include "pldm/command.hpp"
#include "pldm/multipart.hpp"

#include <algorithm>
#include <array>

namespace simulator {

namespace {

using simulator_link::PayloadReader;
using simulator_link::PayloadWriter;

// Completion codes of the base commands (DSP0240).
constexpr std::uint8_t invalidTransferHandle = 0x80;
constexpr std::uint8_t invalidTransferOperation = 0x81;
constexpr std::uint8_t invalidTypeInRequest = 0x83;
constexpr std::uint8_t invalidVersionInRequest = 0x84;

Bytes GetTid(Terminus& terminus, PayloadReader&, Seconds) {
    return Success().Write(terminus.description.tid).Finish();
}

Bytes VersionList(const TypeSupport& support) {
    PayloadWriter writer;
    for (const auto version : support.versions) {
        writer.Write(version);
    }
    auto versions = writer.Finish();
    const auto checksum = Crc32(versions);
    return writer.Write(std::span<const std::uint8_t>(versions)).Write(checksum).Finish();
}

Bytes GetVersion(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto handle = data.Read<std::uint32_t>();
    const auto operation = data.Read<std::uint8_t>();
    const auto support = terminus.description.types.find(data.Read<std::uint8_t>());
    if (support == terminus.description.types.end()) {
        return Only(invalidTypeInRequest);
    }
    if (operation > getFirstPart) {
        return Only(invalidTransferOperation);
    }
    const auto versions = VersionList(support->second);
    const auto part = CutPart(versions, handle, operation, terminus.description.versionParts, 0);
    if (!part) {
        return Only(invalidTransferHandle);
    }
    return Success().Write(part->nextHandle).Write(part->flag).Write(part->data).Finish();
}

Bytes GetTypes(Terminus& terminus, PayloadReader&, Seconds) {
    std::uint64_t types = 0;
    for (const auto& [type, support] : terminus.description.types) {
        types |= std::uint64_t{1} << type;
    }
    return Success().Write(types).Finish();
}

/** Success if the terminus supports the version of the type that a request names. */
std::uint8_t CheckVersion(const Terminus& terminus, std::uint8_t type, std::uint32_t version) {
    const auto support = terminus.description.types.find(type);
    if (support == terminus.description.types.end()) {
        return invalidTypeInRequest;
    }
    const auto& versions = support->second.versions;
    const bool known = std::ranges::find(versions, version) != versions.end();
    return known ? 0 : invalidVersionInRequest;
}

Bytes GetCommands(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto type = data.Read<std::uint8_t>();
    if (const auto code = CheckVersion(terminus, type, data.Read<std::uint32_t>())) {
        return Only(code);
    }
    std::array<std::uint8_t, 32> field{};
    for (const auto command : SupportedCommands(terminus, type)) {
        field[command / 8] |= static_cast<std::uint8_t>(1U << (command % 8));
    }
    return Success().Write(std::span<const std::uint8_t>(field)).Finish();
}

Bytes SelectVersion(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto type = data.Read<std::uint8_t>();
    return Only(CheckVersion(terminus, type, data.Read<std::uint32_t>()));
}

} // namespace

std::span<const Command> BaseCommands() {
    static constexpr Command commands[] = {
        {0x02, 0, GetTid},      {0x03, 6, GetVersion},    {0x04, 0, GetTypes},
        {0x05, 5, GetCommands}, {0x06, 5, SelectVersion},
    };
    return commands;
}

} // namespace simulator
