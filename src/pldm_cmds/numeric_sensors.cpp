// SPDX-License-Identifier: Apache-2.0
/** SetNumericSensorEnable and GetSensorReading: the numeric poll (DSP0248). */
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/sensor_conversion.hpp"
#include "vocabulary/reading.hpp"

#include <algorithm>

namespace vantric {

namespace {

constexpr std::uint8_t initEnable = 2;
constexpr PldmCommand setEnable{.type = PLDM_PLATFORM,
                                .code = CMD_SET_NUMERIC_SENSOR_ENABLE,
                                .capacity = 13,
                                .notSent = "Send failed"};
constexpr std::uint8_t operationalEnabled = 0;
constexpr std::uint8_t noEvents = 0;

constexpr PldmCommand getReading{.type = PLDM_PLATFORM,
                                 .code = CMD_GET_SENSOR_READING,
                                 .capacity = 23,
                                 .notSent = "Send failed"};
constexpr std::uint8_t noRearm = 0;
constexpr std::size_t dataSizeOffset = 4;
constexpr std::size_t operationalStateOffset = 5;
constexpr std::size_t presentStateOffset = 7;
constexpr std::size_t previousStateOffset = 8;
constexpr std::size_t eventStateOffset = 9;
constexpr std::size_t readingOffset = 10;

constexpr std::uint8_t stateEnabled = 0;
constexpr std::uint8_t stateFailed = 4;
constexpr std::uint8_t presentStateUnknown = 0;

/** The raw reading in the width of sensorDataSize; a size without meaning keeps the old one. */
std::int64_t ReadRawReading(const PldmResponse& response, std::int64_t old) {
    switch (response.At<std::uint8_t>(dataSizeOffset)) {
    case 0:
        return response.At<std::uint8_t>(readingOffset);
    case 1:
        return response.At<std::int8_t>(readingOffset);
    case 2:
        return response.At<std::uint16_t>(readingOffset);
    case 3:
        return response.At<std::int16_t>(readingOffset);
    case 4:
        return response.At<std::uint32_t>(readingOffset);
    case 5:
        return response.At<std::int32_t>(readingOffset);
    case 6:
    case 7:
        return response.At<std::int64_t>(readingOffset);
    default:
        return old;
    }
}

/** Takes the states of a response, and its reading where the sensor has one; returns the value
 *  that follows from them, not yet scaled. */
double TakeReading(const PldmResponse& response, __Temp_sensors& sensor) {
    sensor.sensorOpernlState = response.At<std::uint8_t>(operationalStateOffset);
    sensor.presentState = response.At<std::uint8_t>(presentStateOffset);
    sensor.previousState = response.At<std::uint8_t>(previousStateOffset);
    sensor.eventState = response.At<std::uint8_t>(eventStateOffset);
    if (sensor.sensorOpernlState == stateFailed) {
        return readingUnavailable;
    }
    if (sensor.sensorOpernlState != stateEnabled || sensor.presentState == presentStateUnknown) {
        return 0.0;
    }
    sensor.presentReading = ReadRawReading(response, sensor.presentReading);
    return ConvertReading(sensor);
}

} // namespace

VantricStatus PLDMCmds::GetPLDMCommandsStatus(std::uint32_t completionCode,
                                              std::uint16_t sensorID) const {
    switch (completionCode) {
    case PLDM_SUCCESS:
        return STATUS_SUCCESS;
    case PLDM_ERROR:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "CMD failed for EID = %d\n", Eid());
        throw STATUS_COMMAND_FAILED;
    case PLDM_NOT_READY:
    case PLDM_SENSOR_NOT_READY:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Device is not ready for EID = %d\n", Eid());
        throw STATUS_DEVICE_NOT_READY;
    case PLDM_UNSUPPORTED_COMMAND:
        return STATUS_NOT_SUPPORTED;
    case PLDM_INVALID_SENSOR_ID:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid Sensor ID = %d\n", sensorID);
        return STATUS_INVALID_OR_CHANGED;
    default:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d and error = %d\n", Eid(), completionCode);
        return STATUS_FAILURE;
    }
}

VantricStatus PLDMCmds::SetNumericeSensorEnable() {
    for (const auto& sensor : extractedData->numericSensors) {
        if (sensor->sensorInit != initEnable) {
            continue;
        }
        const auto response = Ask(setEnable, ByteWriter()
                                                 .Write(sensor->sensorID)
                                                 .Write(operationalEnabled)
                                                 .Write(noEvents)
                                                 .Finish());
        if (!response) {
            return STATUS_FAILURE;
        }
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Sensor %d Enabled for EID = %d\n", sensor->sensorID, Eid());
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetSensorReading(const std::shared_ptr<__Temp_sensors>& sensor,
                                         ReadingMap& readings) {
    if (!sensor) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "sensor is nullptr\n");
        return STATUS_SUCCESS;
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Sensor ID = %d\n", sensor->sensorID);

    VantricStatus failure = STATUS_SUCCESS;
    std::int32_t value = readingUnavailable;
    try {
        if (!mTransportPtr) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "mTransportPtr is nullptr\n");
            throw STATUS_FAILURE;
        }
        const auto response =
            Exchange(getReading, ByteWriter().Write(sensor->sensorID).Write(noRearm).Finish());
        if (response.Failed()) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Send failed for EID = %d and status = %d\n", Eid(),
                        response.Status());
            throw response.Status();
        }
        const VantricStatus status =
            GetPLDMCommandsStatus(response.CompletionCode(), sensor->sensorID);
        if (status != STATUS_SUCCESS) {
            return status;
        }
        value = ScaleValue(TakeReading(response, *sensor), sensor->unitModifier);
    } catch (const VantricStatus& status) {
        failure = status;
    } catch (...) {
        failure = STATUS_FAILURE;
    }

    // These two pass by themselves: the last value stands meanwhile.
    const bool passing = failure == STATUS_DISCOVERY_RUNNING || failure == STATUS_DEVICE_NOT_READY;
    if (!passing && sensor->temperature != value) {
        sensor->temperature = value;
        readings[sensor->sensorID] = {sensor->sensorNeededFor, value};
        VANTRIC_LOG(LOG_LEVEL_TRACE,
                    "Slot[%d]::SensorID[%d]::OperationalState[%d]::PresentState[%d]::Reading[%d]\n",
                    slot, sensor->sensorID, sensor->sensorOpernlState, sensor->presentState,
                    sensor->temperature);
    }
    return failure;
}

VantricStatus PLDMCmds::GetSensorReading(std::uint16_t sensorID, ReadingMap& readings) {
    const auto& sensors = extractedData->numericSensors;
    const auto found = std::ranges::find_if(
        sensors, [sensorID](const auto& sensor) { return sensor->sensorID == sensorID; });
    if (found == sensors.end()) {
        return STATUS_SUCCESS;
    }
    const VantricStatus status = GetSensorReading(*found, readings);
    if (status != STATUS_SUCCESS && status != STATUS_DISCOVERY_RUNNING &&
        status != STATUS_NEW_END_POINTS) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Failed for Slot:[%d] and SensorID=[%d]\n", slot, sensorID);
    }
    return status;
}

VantricStatus PLDMCmds::GetAllSensorReading(ReadingMap& readings) {
    // The copy keeps the records alive for the whole poll.
    const auto sensors = extractedData->numericSensors;
    VantricStatus result = STATUS_SUCCESS;
    for (const auto& sensor : sensors) {
        const VantricStatus status = GetSensorReading(sensor, readings);
        switch (status) {
        case STATUS_SUCCESS:
            break;
        case STATUS_DISCOVERY_RUNNING:
        case STATUS_NEW_END_POINTS:
        case STATUS_INVALID_OR_CHANGED:
            return status;
        default:
            VANTRIC_LOG(LOG_LEVEL_TRACE, "Failed for Slot:[%d] and SensorID=[%d]\n", slot,
                        sensor->sensorID);
            result = status;
        }
    }
    return result;
}

} // namespace vantric
