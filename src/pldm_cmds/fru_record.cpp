// SPDX-License-Identifier: Apache-2.0
/** The first record of a FRU table: the general record and its fields (DSP0257). */
#include "common/byte_reader.hpp"
#include "common/log.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "pldm_cmds/timestamp104.hpp"

#include <algorithm>
#include <array>
#include <optional>

namespace vantric {

namespace {

constexpr std::size_t recordTypeOffset = 2;
constexpr std::size_t fieldCountOffset = 3;
constexpr std::size_t encodingOffset = 4;
constexpr std::size_t fieldsOffset = 5;

constexpr std::uint8_t generalRecord = 1;
constexpr std::uint8_t oemRecord = 254;
constexpr std::uint8_t encodingAscii = 1;

constexpr std::uint8_t fieldManufactureDate = 6;
constexpr std::uint8_t fieldIana = 15;

/** Where a field's text goes, by field type. */
constexpr std::array<std::string __FRUContents::*, 16> membersByType{
    nullptr,
    &__FRUContents::ChassisType,
    &__FRUContents::Model,
    &__FRUContents::PN,
    &__FRUContents::SN,
    &__FRUContents::Manufacturer,
    &__FRUContents::ManufacturerDate,
    &__FRUContents::Vendor,
    &__FRUContents::Name,
    &__FRUContents::SKU,
    &__FRUContents::Version,
    &__FRUContents::AssetTag,
    &__FRUContents::Description,
    &__FRUContents::ECLevel,
    &__FRUContents::Other,
    &__FRUContents::IANA,
};

struct FruField {
    std::uint8_t type = 0;
    std::span<const std::uint8_t> value;
};

/** The fields of a record, one after the other. */
class FruFields {
public:
    FruFields(std::span<const std::uint8_t> table, std::uint8_t fieldCount)
        : reader(table), left(fieldCount) {
        reader.Seek(fieldsOffset);
    }

    /** The next field; nothing at the count, at a field of type and length 0, at the end of the
     *  table, and for a field that the table's end cuts: half a serial number is a wrong one. */
    std::optional<FruField> Next() {
        if (left == 0 || reader.Remaining() == 0) {
            return std::nullopt;
        }
        left -= 1;
        FruField field{.type = reader.Read<std::uint8_t>(), .value = {}};
        const auto length = reader.Read<std::uint8_t>();
        field.value = reader.Take(length);
        if (reader.Truncated() || (field.type == 0 && length == 0)) {
            return std::nullopt;
        }
        return field;
    }

    /** Writes a line if the table ended within a field. */
    void LogCut(int eid) const {
        if (reader.Truncated()) {
            VANTRIC_LOG(LOG_LEVEL_WARNING, "FRU table of EID = %d ends within a field\n", eid);
        }
    }

private:
    ByteReader reader;
    std::uint8_t left;
};

/** The value as text. An IANA number takes the first four bytes of its value, and bytes that are
 *  missing of it read as 0. */
std::string TextOf(const FruField& field) {
    ByteReader value(field.value);
    std::string text =
        field.type == fieldIana ? std::to_string(value.Read<std::uint32_t>()) : std::string();
    const auto rest = value.Take(value.Remaining());
    return text.append(rest.begin(), rest.end());
}

/** Printable ASCII, whatever the process's locale. */
bool IsPrintable(const std::string& text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

void HandleGeneralFRURecord(std::span<const std::uint8_t> table, std::uint8_t fieldCount,
                            __extractedData& data, int eid) {
    if (!data.fruContents) {
        data.fruContents = std::make_shared<__FRUContents>();
    }
    auto& contents = *data.fruContents;
    FruFields fields(table, fieldCount);
    while (const auto field = fields.Next()) {
        if (field->type == fieldManufactureDate) {
            contents.ManufacturerDate = convertToTimestamp104(field->value);
            continue;
        }
        const std::string text = TextOf(*field);
        if (!IsPrintable(text)) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Not Printable string for FRU type = %d\n", field->type);
            continue;
        }
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Type = %d, Value = %s\n", field->type, text.c_str());
        if (field->type == 0 || field->type >= membersByType.size()) {
            VANTRIC_LOG(LOG_LEVEL_TRACE, "Type = %d : Value = [%s]\n", field->type, text.c_str());
            continue;
        }
        contents.*membersByType[field->type] = text;
    }
    fields.LogCut(eid);
}

void HandleOEMFRURecord(std::span<const std::uint8_t> table, std::uint8_t fieldCount,
                        __extractedData& data, int eid) {
    if (!data.fruContents) {
        data.fruContents = std::make_shared<__FRUContents>();
    }
    FruFields fields(table, fieldCount);
    while (const auto field = fields.Next()) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "OEM FRU field of type %d is not used\n", field->type);
    }
    fields.LogCut(eid);
}

} // namespace

void CheckFRURecordTypeAndParse(std::span<const std::uint8_t> table, __extractedData& data,
                                int eid) {
    ByteReader header(table);
    const auto recordType = header.At<std::uint8_t>(recordTypeOffset);
    const auto fieldCount = header.At<std::uint8_t>(fieldCountOffset);
    const auto encoding = header.At<std::uint8_t>(encodingOffset);
    if (encoding != encodingAscii) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Encoding type is [%d] is not supported\n", encoding);
        return;
    }
    switch (recordType) {
    case generalRecord:
        return HandleGeneralFRURecord(table, fieldCount, data, eid);
    case oemRecord:
        return HandleOEMFRURecord(table, fieldCount, data, eid);
    default:
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Record type is [%d] is not supported\n", recordType);
    }
}

} // namespace vantric
