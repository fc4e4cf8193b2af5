// SPDX-License-Identifier: Apache-2.0
/** The parsers of what an endpoint's records hold (DSP0248, DSP0257).
 *
 * Each takes a complete PDR, common header included, and adds what it finds to data; eid is for the
 * log. A sensor or an association whose fields run past the record's end is dropped whole: half a
 * sensor is a wrong one. Names are cut there. An effector or a terminus locator is kept as long as
 * its fixed fields are whole, and the values after them read as 0 where they are missing. No list
 * grows beyond the limits of src/records/limits.hpp. */
#pragma once

#include "records/extracted_data.hpp"

#include <cstdint>
#include <span>

namespace vantric {

class ByteReader;

/** Hands a record to the parser of its type; a record of another type changes nothing. */
void HandlePDR(std::span<const std::uint8_t> record, __extractedData& data, int eid);

void HandleTerminusLocatorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid);
void HandleNumericSensorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid);
void HandleCompactNumericSensorPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                   int eid);
void HandleStateSensorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid);
void HandleSensorAuxNamesPDR(std::span<const std::uint8_t> record, __extractedData& data);
void HandleNumericEffectorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid);
void HandleNumericEffectorInitPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                  int eid);
void HandleStateEffectorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid);
void HandleStateEffectorInitPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                int eid);
void HandleEntityAssociationPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                int eid);

/** Takes the fields of the first record of a FRU table. */
void CheckFRURecordTypeAndParse(std::span<const std::uint8_t> table, __extractedData& data,
                                int eid);

/** False, with a log line, where a parser has read past the end of its record. */
bool IsWhole(int eid, const ByteReader& body, std::uint8_t pdrType);

} // namespace vantric
