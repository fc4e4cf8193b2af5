// SPDX-License-Identifier: Apache-2.0
#include "pldm/checksum.hpp"
#include "pldm/command.hpp"
#include "pldm/fru_table.hpp"
#include "pldm/multipart.hpp"

#include <set>

namespace simulator {

namespace {

using simulator_link::PayloadReader;
using simulator_link::PayloadWriter;

// Completion codes of the FRU commands (DSP0257).
constexpr std::uint8_t invalidTransferHandle = 0x80;
constexpr std::uint8_t invalidTransferOperation = 0x81;
constexpr std::uint8_t metadataUnavailable = 0x83;
constexpr std::uint8_t tableUnavailable = 0x85;

Bytes GetMetadata(Terminus& terminus, PayloadReader&, Seconds) {
    const auto& fru = terminus.description.fru;
    if (!fru) {
        return Only(metadataUnavailable);
    }
    std::set<std::uint16_t> sets;
    for (const auto& record : fru->records) {
        sets.insert(record.set);
    }
    const auto length = static_cast<std::uint32_t>(terminus.fruTable.size());
    constexpr std::uint8_t majorVersion = 1;
    constexpr std::uint8_t minorVersion = 0;
    return Success()
        .Write(majorVersion)
        .Write(minorVersion)
        .Write(length) // the largest table is the one there is
        .Write(length)
        .Write(static_cast<std::uint16_t>(fru->rawTable ? 1 : sets.size()))
        .Write(static_cast<std::uint16_t>(fru->rawTable ? 1 : fru->records.size()))
        .Write(Crc32(terminus.fruTable))
        .Finish();
}

Bytes GetTable(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto handle = data.Read<std::uint32_t>();
    const auto operation = data.Read<std::uint8_t>();
    if (!terminus.description.fru) {
        return Only(tableUnavailable);
    }
    if (operation > getFirstPart) {
        return Only(invalidTransferOperation);
    }
    const auto part =
        CutPart(terminus.fruTable, handle, operation, terminus.description.fruParts, 0);
    if (!part) {
        return Only(invalidTransferHandle);
    }
    return Success().Write(part->nextHandle).Write(part->flag).Write(part->data).Finish();
}

} // namespace

Bytes EncodeFruTable(const Fru& fru) {
    if (fru.rawTable) {
        return *fru.rawTable;
    }
    PayloadWriter writer;
    std::size_t size = 0;
    for (const auto& record : fru.records) {
        const auto count = static_cast<std::uint8_t>(record.fields.size());
        writer.Write(record.set)
            .Write(record.type)
            .Write(record.fieldCount.value_or(count))
            .Write(record.encoding);
        size += 5;
        for (const auto& field : record.fields) {
            writer.Write(field.type)
                .Write(static_cast<std::uint8_t>(field.value.size()))
                .Write(std::span<const std::uint8_t>(field.value));
            size += 2 + field.value.size();
        }
    }
    const std::size_t padding = (4 - size % 4) % 4;
    auto table = writer.WriteUnsigned(0, padding).Finish();
    const auto checksum = Crc32(table);
    return writer.Write(std::span<const std::uint8_t>(table)).Write(checksum).Finish();
}

std::span<const Command> FruCommands() {
    static constexpr Command commands[] = {{0x01, 0, GetMetadata}, {0x02, 5, GetTable}};
    return commands;
}

} // namespace simulator
