// SPDX-License-Identifier: Apache-2.0
/** GetExtractedData: everything that an endpoint told, line by line in the log. */
#include "common/log.hpp"
#include "pldm_cmds/pldm_cmds.hpp"

#include <cinttypes>
#include <type_traits>

namespace vantric {

namespace {

constexpr const char* asterisks = "*************************************************";

void LogField(const char* name, const std::string& text) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "%s = %s\n", name, text.c_str());
}

void LogField(const char* name, float value) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "%s = %f\n", name, static_cast<double>(value));
}

template <std::integral T>
void LogField(const char* name, T value) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "%s = %" PRId64 "\n", name, static_cast<std::int64_t>(value));
}

void LogTypes(const __extractedData& data) {
    for (const auto& [type, versions] : data.supportedTypes) {
        LogField("PLDM Type", type);
        for (const auto& [version, commands] : versions) {
            VANTRIC_LOG(LOG_LEVEL_TRACE, "Version = %#010" PRIx32 "\n", version);
            for (std::size_t command = 0; command < commands.size(); ++command) {
                if (commands[command] != 0) {
                    LogField("Supported command", command);
                }
            }
        }
    }
}

void LogRepository(const __extractedData& data) {
    const auto& time = data.PDRUpdatetime;
    LogField("TID", data.TID);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "PDRUpdatetime = %d-%02d-%02d %02d:%02d:%02d.%06" PRIu32 "\n",
                time.Year, time.Month, time.Day, time.hour, time.Minutes, time.Seconds,
                time.Microseconds);
    LogField("UTC_Offset_In_Minutes", time.UTC_Offset_In_Minutes);
    LogField("Time_Resolution", time.Time_Resolution);
    LogField("UTC_Resolution", time.UTC_Resolution);
    LogField("iRecordCount", data.iRecordCount);
    LogField("iRepositorySize", data.iRepositorySize);
    LogField("iLargestRecordSize", data.iLargestRecordSize);
    LogField("iDataTransferHandleTimeout", data.iDataTransferHandleTimeout);
}

void LogRecord(const __Temp_sensors& sensor) {
    LogField("sensorID", sensor.sensorID);
    LogField("entityType", sensor.entityType);
    LogField("entityInstanceNumber", sensor.entityInstanceNumber);
    LogField("containerID", sensor.containerID);
    LogField("sensorInit", sensor.sensorInit);
    LogField("IsSensorAuxNameSupported", sensor.IsSensorAuxNameSupported);
    LogField("baseUnit", sensor.baseUnit);
    LogField("unitModifier", sensor.unitModifier);
    LogField("rateUnit", sensor.rateUnit);
    LogField("auxUnit", sensor.auxUnit);
    LogField("auxUnitModifier", sensor.auxUnitModifier);
    LogField("auxRateUnit", sensor.auxRateUnit);
    LogField("relative", sensor.relative);
    LogField("isLinear", sensor.isLinear);
    LogField("dataType", sensor.dataType);
    LogField("resolution", sensor.resolution);
    LogField("offset", sensor.offset);
    LogField("accuracy", sensor.accuracy);
    LogField("plusTolerance", sensor.plusTolerance);
    LogField("minusTolerance", sensor.minusTolerance);
    LogField("hysteresis", sensor.hysteresis);
    LogField("supportedThresholds", sensor.supportedThresholds);
    LogField("thresholdAndHysteresisVolatility", sensor.thresholdAndHysteresisVolatility);
    LogField("stateTransitionInterval", sensor.stateTransitionInterval);
    LogField("updateInterval", sensor.updateInterval);
    LogField("maxReadable", sensor.maxReadable);
    LogField("minReadable", sensor.minReadable);
    LogField("rangeFieldFormat", sensor.rangeFieldFormat);
    LogField("rangeFieldSupport", sensor.rangeFieldSupport);
    LogField("nominalValue", sensor.nominalValue);
    LogField("normalMax", sensor.normalMax);
    LogField("normalMin", sensor.normalMin);
    LogField("upperThresholdFatal", sensor.upperThresholdFatal);
    LogField("upperThresholdCritical", sensor.upperThresholdCritical);
    LogField("upperThresholdWarning", sensor.upperThresholdWarning);
    LogField("lowerThresholdWarning", sensor.lowerThresholdWarning);
    LogField("lowerThresholdCritical", sensor.lowerThresholdCritical);
    LogField("lowerThresholdFatal", sensor.lowerThresholdFatal);
    LogField("thresholdReadingError", sensor.thresholdReadingError);
    LogField("sensorOpernlState", sensor.sensorOpernlState);
    LogField("presentState", sensor.presentState);
    LogField("previousState", sensor.previousState);
    LogField("eventState", sensor.eventState);
    LogField("presentReading", sensor.presentReading);
    LogField("temperature", sensor.temperature);
    LogField("auxLanguageTag", sensor.auxLanguageTag);
    LogField("auxSensorName", sensor.auxSensorName);
    LogField("sensorNeededFor", sensor.sensorNeededFor);
}

void LogRecord(const _Effectors& effector) {
    LogField("PLDMTerminusHandle", effector.PLDMTerminusHandle);
    LogField("EffectorID", effector.EffectorID);
    LogField("entityType", effector.entityType);
    LogField("entityInstanceNumber", effector.entityInstanceNumber);
    LogField("containerID", effector.containerID);
    LogField("EffectorSemanticID", effector.EffectorSemanticID);
    LogField("EffectorInit", effector.EffectorInit);
    LogField("EffectorAuxiliaryNamesPDR", effector.EffectorAuxiliaryNamesPDR);
    LogField("baseUnit", effector.baseUnit);
    LogField("unitModifier", effector.unitModifier);
    LogField("rateUnit", effector.rateUnit);
    LogField("baseOEMUnitHandle", effector.baseOEMUnitHandle);
    LogField("auxUnit", effector.auxUnit);
    LogField("auxUnitModifier", effector.auxUnitModifier);
    LogField("auxrateUnit", effector.auxrateUnit);
    LogField("auxOEMUnitHandle", effector.auxOEMUnitHandle);
    LogField("isLinear", effector.isLinear);
    LogField("EffectorDataSize", effector.EffectorDataSize);
    LogField("resolution", effector.resolution);
    LogField("offset", effector.offset);
    LogField("accuracy", effector.accuracy);
    LogField("plusTolerance", effector.plusTolerance);
    LogField("minusTolerance", effector.minusTolerance);
    LogField("stateTransitionInterval", effector.stateTransitionInterval);
    LogField("TransitionInterval", effector.TransitionInterval);
    LogField("maxSettable", effector.maxSettable);
    LogField("minSettable", effector.minSettable);
    LogField("rangeFieldFormat", effector.rangeFieldFormat);
    LogField("rangeFieldSupport", effector.rangeFieldSupport);
    LogField("nominalValue", effector.nominalValue);
    LogField("normalMax", effector.normalMax);
    LogField("normalMin", effector.normalMin);
    LogField("ratedMax", effector.ratedMax);
    LogField("ratedMin", effector.ratedMin);
    LogField("EffectorOperationalState", effector.EffectorOperationalState);
    LogField("pendingValue", effector.pendingValue);
    LogField("presentValue", effector.presentValue);
    LogField("ErrorInReadingEffectorValue", effector.ErrorInReadingEffectorValue);
}

void LogRecord(const _StateSensors& sensor) {
    LogField("PLDMTerminusHandle", sensor.PLDMTerminusHandle);
    LogField("sensorId", sensor.sensorId);
    LogField("entityType", sensor.entityType);
    LogField("entityInstanceNumber", sensor.entityInstanceNumber);
    LogField("containerID", sensor.containerID);
    LogField("sensorInit", sensor.sensorInit);
    LogField("sensorAuxiliaryNamesPDR", sensor.sensorAuxiliaryNamesPDR);
    LogField("compositeSensorCount", sensor.compositeSensorCount);
    for (const auto& member : sensor.compositeSensors) {
        LogField("sensorName", member.sensorName);
        LogField("langTag", member.langTag);
        LogField("stateSetName", member.stateSetName);
        LogField("stateSetID", member.stateSetID);
        LogField("possibleStatesSize", member.possibleStatesSize);
        for (const auto state : member.possibleStateValues) {
            LogField("possibleStateValue", state);
        }
        LogField("sensorOperationalState", member.sensorOperationalState);
        LogField("presentState", member.presentState);
        LogField("previousState", member.previousState);
        LogField("eventState", member.eventState);
    }
}

void LogRecord(const EAPDR& association) {
    LogField("ContainerID", association.ContainerID);
    LogField("AssociationType", association.AssociationType);
    LogField("ContainerEntityType", association.ContainerEntityType);
    LogField("ContainerEntityInstanceNumber", association.ContainerEntityInstanceNumber);
    LogField("ContainerEntityContainerID", association.ContainerEntityContainerID);
    LogField("ContainedEntityCount", association.ContainedEntityCount);
    for (const auto& entity : association.containedEntities) {
        LogField("ContainedEntityType", entity->ContainedEntityType);
        LogField("ContainedEntityInstanceNumber", entity->ContainedEntityInstanceNumber);
        LogField("ContainerID", entity->ContainerID);
        LogField("ContainedEntityContainerID", entity->ContainedEntityContainerID);
    }
}

template <typename Record>
void LogRecords(const std::vector<std::shared_ptr<Record>>& records) {
    for (const auto& record : records) {
        LogRecord(*record);
    }
}

} // namespace

std::shared_ptr<__extractedData>& PLDMCmds::GetExtractedData() {
    const auto& data = *extractedData;
    VANTRIC_LOG(LOG_LEVEL_TRACE, "%s\n", asterisks);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Extracting data for Slot = %d having EID = %d\n", slot, Eid());
    VANTRIC_LOG(LOG_LEVEL_TRACE, "%s\n", asterisks);
    LogTypes(data);
    LogRepository(data);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***************NUMERIC_SENSORS*******************\n");
    LogRecords(data.numericSensors);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***************END_NUMERIC_SENSORS*******************\n");
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***********EFFECTORS*******************\n");
    LogRecords(data.effectors);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***********END_EFFECTORS*******************\n");
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***********STATE_SENSORS*******************\n");
    LogRecords(data.stateSensors);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***********END_STATE_SENSORS*******************\n");
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***********EAPDRPtr*******************\n");
    LogRecords(data.entityAssociations);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "***********END_EAPDRPtr*******************\n");
    return extractedData;
}

} // namespace vantric
