// SPDX-License-Identifier: Apache-2.0
/** The PLDM requester for one endpoint. */
#pragma once

#include "device_transport/device_transport.hpp"
#include "records/extracted_data.hpp"
#include "records/readings.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vantric {

struct PldmCommand;
class PldmResponse;

/** Asks one endpoint, that is one EID of one slot, what it is and what it measures, and gathers
 *  the answers in its __extractedData.
 *
 * Belongs to the monitor thread of its device, which holds the device's mutex in every exchange;
 * there is no lock here. Each operation blocks until its exchanges are over and never retries: the
 * transport does that. Unless told otherwise an operation returns 0, or 1 on failure, and keeps
 * what it had stored when it failed. Messages follow DSP0240, DSP0248, DSP0257 and DSP0267. */
class PLDMCmds {
public:
    /** Talks through an MCTPTransport of its own. */
    PLDMCmds(std::uint8_t slot, std::uint8_t eid);

    /** Talks through the given transport, until ResetEID replaces it. */
    PLDMCmds(std::uint8_t slot, std::uint8_t eid, std::unique_ptr<DeviceTransport> transport);

    /** Goes on with another EID, through a new MCTPTransport. What was read stays. */
    void ResetEID(std::uint8_t newEid);

    // --- What was read ---

    /** Logs the sensors, names, associations and effectors that were read, at level 4, and returns
     *  all that was read. The reference stays valid as
     *  long as this object; the records and lists that it leads to may be replaced. */
    std::shared_ptr<__extractedData>& GetExtractedData();

    /** The same without the log. */
    __extractedData& ExtractedData() { return *extractedData; }

    /** The transport's VantricStatus value of the last exchange. */
    VantricStatus LastStatus() const { return lastStatus; }

    /** Starts from nothing: an inventory does this first. */
    void ResetExtractedData();

    /** IDs of all numeric sensors, in list order. */
    std::vector<std::uint16_t> GetAllSensorIDs() const;

    /** True once the endpoint has sent any Entity Association PDR, even one that was dropped. */
    bool HasEntityAssociation() const { return hasEntityAssociation; }

    // --- Base (PLDM type 0) ---

    /** Reads which PLDM types the endpoint supports. */
    VantricStatus GetPLDMTypes();

    /** Reads the versions of one type; 1 also for a type that the endpoint doesn't support, and for
     *  a list that is longer than limits::versionsOfType, of which the first ones are kept. */
    VantricStatus GetPLDMVersionForType(std::uint8_t type);

    /** Reads the versions of one type, or with 255 those of all types in use; then always 0. */
    VantricStatus GetPLDMVersions(std::uint32_t type);

    /** Reads the commands of one version of a type. */
    VantricStatus GetSupportedPLDMCmds(std::uint32_t type, std::uint32_t version);

    /** Reads the commands of every version of a type; 0 for a type that isn't supported. */
    VantricStatus GetSupportedCmdsForType(std::uint8_t type);

    /** The same for one type, or with 255 for all types in use. */
    VantricStatus GetSupportedCmds(std::uint32_t type);

    /** Tells the endpoint which version of a type is going to be used. */
    VantricStatus SelectPLDMVersion(std::uint8_t type, std::uint32_t version);

    /** Selects every version that is recent enough. Failures don't count: always 0. */
    VantricStatus SelectPLDMVersions();

    /** Reads the terminus id. */
    VantricStatus GetTID();

    /** Maps the completion code of a sensor command to a status: 0, 1, 5 or 10.
     *  @throw VantricStatus COMMAND_FAILED or DEVICE_NOT_READY */
    VantricStatus GetPLDMCommandsStatus(std::uint32_t completionCode, std::uint16_t sensorID) const;

    // --- PDR repository (PLDM type 2) ---

    /** Reads the repository's state, and its records where its update time has moved or forceRead
     *  is 1. Returns 0, 1 on failure, or 10 where forceRead is 0 and the records were replaced. */
    VantricStatus GetPDRRepositoryInfo(std::uint8_t forceRead);

    /** Reads every record of the repository, up to the one without a next record; or up to one that
     *  leads back to an earlier one, once there are as many as the repository's info counts. A walk
     *  that doesn't end within the limits of src/records/limits.hpp fails. Returns 0 or 1. */
    VantricStatus GetPDR();

    /** True if the update time differs from that of the last read. */
    bool IsPDRChanged(const Timestamp104& updateTime) const;

    // --- Sensors (PLDM type 2) ---

    /** Enables the numeric sensors that ask for it; the first failure ends it. */
    VantricStatus SetNumericeSensorEnable();

    /** Reads one sensor and adds it to readings if its value has changed. Returns a VantricStatus
     *  value. A failure is reported as readingUnavailable, once; statuses 8 and 12 change nothing.
     *  A null sensor does nothing and returns 0. */
    VantricStatus GetSensorReading(const std::shared_ptr<__Temp_sensors>& sensor,
                                   ReadingMap& readings);

    /** The same by ID; 0 where no record has it. */
    VantricStatus GetSensorReading(std::uint16_t sensorID, ReadingMap& readings);

    /** Reads every numeric sensor. Returns 0 or the last failure; 8, 9 and 10 end the poll. What
     *  stands in readings is good in either case. */
    VantricStatus GetAllSensorReading(ReadingMap& readings);

    /** Reads every state sensor. Returns 0 or the status of the last one that failed. */
    VantricStatus GetStateSensorReading(StateChangeMap& changes);

    // --- FRU (PLDM type 4) and firmware (PLDM type 5) ---

    /** Reads the size of the FRU table; 5 where the endpoint has no FRU data. */
    VantricStatus GetFRUMetaData();

    /** Reads the FRU table and takes the fields of its first record. Call it only after
     *  GetFRUMetaData has returned 0. A table that goes on beyond the limits of
     *  src/records/limits.hpp is cut there, and what came before counts: 0, or 1 if nothing did.
     */
    VantricStatus GetFRUContents();

    /** Reads the version of the active firmware. Bytes as the endpoint sends them, in whatever
     *  encoding; empty where there is none or the exchange failed. */
    std::string GetFWParameters();

private:
    int Eid() const { return eid; }

    /** Sends a command with its data and returns what came back; every exchange goes through
     *  here. */
    PldmResponse Exchange(const PldmCommand& command, const std::vector<std::uint8_t>& data);

    /** The same where only a response with completion code 0 is of use: nothing, with a log line,
     *  for any other. */
    std::optional<PldmResponse> Ask(const PldmCommand& command,
                                    const std::vector<std::uint8_t>& data = {});

    /** Bytes that a GetPDR response can hold. */
    std::size_t PdrCapacity() const;

    std::uint8_t slot;
    std::atomic<std::uint8_t> eid;     ///< a table's thread moves it while the log may tell it
    std::uint8_t instanceId = 0;       ///< of the last request
    bool hasEntityAssociation = false; ///< never cleared
    VantricStatus lastStatus = STATUS_SUCCESS; ///< of the last exchange
    std::unique_ptr<DeviceTransport> mTransportPtr;
    std::shared_ptr<__extractedData> extractedData;
};

} // namespace vantric
