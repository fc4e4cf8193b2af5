// SPDX-License-Identifier: Apache-2.0
/** What one PLDM endpoint told: one plain record for each PDR that matters, its FRU data and its
 *  latest readings.
 *
 * Written and read by the monitor thread of the device: its commands write under the device's
 * mutex, while modeling after an inventory works without it. Records are held by shared pointer, so
 * that an entity tree can share them. All lists are in the order in which the PDRs arrived. Fields
 * without a comment carry the PDR field of the same name as it stands (DSP0248). */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vantric {

/** Date and time as PLDM carries them in 13 bytes: timestamp104 of DSP0240. */
struct Timestamp104 {
    std::int16_t UTC_Offset_In_Minutes = 0;
    std::uint32_t Microseconds = 0; ///< 24 bits
    std::uint8_t Seconds = 0;
    std::uint8_t Minutes = 0;
    std::uint8_t hour = 0;
    std::uint8_t Day = 0;
    std::uint8_t Month = 0;
    std::uint16_t Year = 0;
    std::uint8_t Time_Resolution = 0; ///< 4 bits; 15 means that the time isn't to be relied on
    std::uint8_t UTC_Resolution = 0;  ///< 4 bits

    bool operator==(const Timestamp104&) const = default;
};

/** One numeric sensor, of PDR type 2 or 21. */
struct __Temp_sensors {
    std::uint16_t sensorID = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstanceNumber = 0;
    std::uint16_t containerID = 0;
    std::uint8_t sensorInit = 0; ///< 2: wants to be enabled before its first reading
    std::uint8_t IsSensorAuxNameSupported = 0;
    std::uint8_t baseUnit = 0;    ///< one of BaseUnit
    std::int8_t unitModifier = 0; ///< power of ten
    std::uint8_t rateUnit = 0;
    std::uint8_t auxUnit = 0;        ///< stays 0
    std::int8_t auxUnitModifier = 0; ///< stays 0
    std::uint8_t auxRateUnit = 0;    ///< stays 0
    std::uint8_t relative = 0;
    std::uint8_t isLinear = 0;
    std::uint8_t dataType = 0; ///< PDR field sensorDataSize
    float resolution = 0;
    float offset = 0;
    std::uint16_t accuracy = 0;
    std::uint8_t plusTolerance = 0;
    std::uint8_t minusTolerance = 0;
    std::int64_t hysteresis = 0;
    std::uint8_t supportedThresholds = 0; ///< one bit for each threshold that the sensor has
    std::uint8_t thresholdAndHysteresisVolatility = 0;
    float stateTransitionInterval = 0; ///< seconds
    float updateInterval = 0;          ///< seconds
    std::int64_t maxReadable = 0;
    std::int64_t minReadable = 0;
    std::uint8_t rangeFieldFormat = 0;
    std::uint8_t rangeFieldSupport = 0;
    std::int64_t nominalValue = 0; ///< stays 0
    std::int64_t normalMax = 0;    ///< stays 0
    std::int64_t normalMin = 0;    ///< stays 0
    // Thresholds raw, without resolution, offset or unit modifier; 0 where there is none.
    std::int64_t upperThresholdFatal = 0;
    std::int64_t upperThresholdCritical = 0;
    std::int64_t upperThresholdWarning = 0;
    std::int64_t lowerThresholdWarning = 0;
    std::int64_t lowerThresholdCritical = 0;
    std::int64_t lowerThresholdFatal = 0;
    std::int32_t thresholdReadingError = 0; ///< stays 0
    // The last reading.
    std::uint8_t sensorOpernlState = 0;
    std::uint8_t presentState = 0;
    std::uint8_t previousState = 0;
    std::uint8_t eventState = 0;
    std::int64_t presentReading = 0; ///< raw
    /** Converted: whole degrees Celsius, or whole units of baseUnit; or readingUnavailable. */
    std::int32_t temperature = 0;
    std::string auxLanguageTag;
    std::string auxSensorName;        ///< the sensor's own name; may be empty
    std::uint8_t sensorNeededFor = 0; ///< set by the owning device before modeling: a SensorKind
};

/** One member of a state sensor. */
struct _CompositeSensorData {
    std::string sensorName;
    std::string langTag;
    std::string stateSetName;
    std::uint16_t stateSetID = 0; ///< 0 from the first failed reading on
    std::uint8_t possibleStatesSize = 0;
    std::vector<std::uint8_t> possibleStateValues;
    std::uint8_t sensorOperationalState = 0;
    std::uint8_t presentState = 0;
    std::uint8_t previousState = 0; ///< stays 0
    std::uint8_t eventState = 0;    ///< stays 0
};

/** One state sensor, PDR type 4. */
struct _StateSensors {
    std::uint16_t PLDMTerminusHandle = 0;
    std::uint16_t sensorId = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstanceNumber = 0;
    std::uint16_t containerID = 0;
    std::uint8_t sensorInit = 0;
    std::uint8_t sensorAuxiliaryNamesPDR = 0;
    std::uint8_t compositeSensorCount = 0;
    std::vector<_CompositeSensorData> compositeSensors; ///< compositeSensorCount long
};

/** One numeric effector, PDR type 9. */
struct _Effectors {
    std::uint16_t PLDMTerminusHandle = 0;
    std::uint16_t EffectorID = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstanceNumber = 0;
    std::uint16_t containerID = 0;
    std::uint16_t EffectorSemanticID = 0;
    std::uint8_t EffectorInit = 0;
    std::uint8_t EffectorAuxiliaryNamesPDR = 0;
    std::uint8_t baseUnit = 0;
    std::int8_t unitModifier = 0;
    std::uint8_t rateUnit = 0;
    std::uint8_t baseOEMUnitHandle = 0;
    std::uint8_t auxUnit = 0;
    std::int8_t auxUnitModifier = 0;
    std::uint8_t auxrateUnit = 0;
    std::uint8_t auxOEMUnitHandle = 0;
    std::uint8_t isLinear = 0; ///< stays 0
    std::uint8_t EffectorDataSize = 0;
    float resolution = 0;
    float offset = 0;
    std::uint16_t accuracy = 0;
    std::uint8_t plusTolerance = 0;
    std::uint8_t minusTolerance = 0;
    float stateTransitionInterval = 0;
    float TransitionInterval = 0;
    std::int64_t maxSettable = 0;
    std::int64_t minSettable = 0;
    std::uint8_t rangeFieldFormat = 0;
    std::uint8_t rangeFieldSupport = 0;
    std::int64_t nominalValue = 0;
    std::int64_t normalMax = 0;
    std::int64_t normalMin = 0;
    std::int64_t ratedMax = 0;
    std::int64_t ratedMin = 0;
    // No effector is ever read, so these stay 0.
    std::uint8_t EffectorOperationalState = 0;
    std::int64_t pendingValue = 0;
    std::int64_t presentValue = 0;
    std::int32_t ErrorInReadingEffectorValue = 0;
};

/** One state effector, PDR type 11. */
struct _state_Effector {
    static constexpr std::size_t maxCompositeEffectors = 16;
    static constexpr std::size_t bytesOfComposite = 4;

    std::uint16_t PLDMTerminusHandle = 0;
    std::uint16_t effectorID = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstanceNumber = 0;
    std::uint16_t containerID = 0;
    std::uint16_t effectorSemanticID = 0;
    std::uint8_t effectorInit = 0;
    std::uint8_t effectorDescriptionPDR = 0;
    std::uint8_t compositeEffectorCount = 0; ///< as claimed; may exceed maxCompositeEffectors
    std::array<std::array<std::uint8_t, bytesOfComposite>, maxCompositeEffectors>
        compositeEffectors{};
};

/** Raw head of a Numeric Effector Initialization PDR, type 10. */
struct __Numeric_Effector_Init {
    std::uint16_t PLDMTerminusHandle = 0;
    std::uint16_t effectorID = 0;
    std::uint16_t entityType = 0;
    std::uint8_t entityInstanceNumber = 0; ///< the low byte only
};

/** Raw head of a State Effector Initialization PDR, type 12. */
struct __State_Effectors_Init_PDR {
    std::array<std::uint8_t, 22> body{};
};

/** One Terminus Locator PDR, type 1. What the locator type doesn't carry stays 0. */
struct TerminusLocator {
    std::uint8_t tid = 0;
    std::uint16_t containerID = 0;
    std::uint8_t terminusInstance = 0;
    std::uint8_t terminusEID = 0;
    std::uint8_t softwareClass = 0;
    std::uint16_t uidNext = 0;
    std::uint16_t uidHead = 0;
};

/** One contained entity of an association. */
struct CEList {
    std::uint16_t ContainedEntityType = 0;
    std::uint16_t ContainedEntityInstanceNumber = 0;
    std::uint16_t ContainerID = 0; ///< that of the EAPDR which holds this entity
    std::uint16_t ContainedEntityContainerID = 0;
};

/** One Entity Association PDR, type 15. */
struct EAPDR {
    std::uint16_t ContainerID = 0;
    std::uint8_t AssociationType = 0; ///< 0 physical, else logical
    std::uint16_t ContainerEntityType = 0;
    std::uint16_t ContainerEntityInstanceNumber = 0;
    std::uint16_t ContainerEntityContainerID = 0;
    std::uint8_t ContainedEntityCount = 0;
    std::vector<std::shared_ptr<CEList>> containedEntities;
};

/** Fields of the general FRU record as text (DSP0257). The identity, the CPU affinity and the
 *  firmware version are for the device to fill in its own copy. */
struct __FRUContents {
    std::uint16_t vendorId = 0;
    std::uint16_t subVendorId = 0;
    std::uint16_t subDeviceId = 0;
    std::uint16_t deviceId = 0;
    std::uint16_t cpuAffinity = 0;
    std::string ChassisType;
    std::string Model;
    std::string PN;
    std::string SN;
    std::string Manufacturer;
    std::string ManufacturerDate;
    std::string Vendor;
    std::string Name;
    std::string SKU;
    std::string Version;
    std::string AssetTag;
    std::string Description;
    std::string ECLevel;
    std::string Other;
    std::string IANA; ///< a decimal number
    std::string FirmwareVersion;
};

/** One entry for each command code, 1 where the command is supported. */
using CommandSet = std::array<std::uint8_t, 256>;

/** Versions of one PLDM type. A version is the ver32 of DSP0240 read as a little-endian word:
 *  1.2.0 is 0xF1F2F000. */
using VersionMap = std::unordered_map<std::uint32_t, CommandSet>;

/** The whole of what is known about one endpoint. */
struct __extractedData {
    std::uint8_t TID = 0;
    std::unordered_map<std::uint8_t, VersionMap> supportedTypes; ///< by PLDM type
    Timestamp104 PDRUpdatetime; ///< of the repository when it was last read
    std::uint32_t iRecordCount = 0;
    std::uint32_t iRepositorySize = 0;
    std::uint32_t iLargestRecordSize = 0;
    std::uint32_t iDataTransferHandleTimeout = 0;
    std::vector<std::shared_ptr<TerminusLocator>> terminusLocators;
    std::vector<std::shared_ptr<__Temp_sensors>> numericSensors;
    std::vector<std::shared_ptr<_Effectors>> effectors;
    std::vector<std::shared_ptr<_StateSensors>> stateSensors;
    std::vector<std::shared_ptr<EAPDR>> entityAssociations;
    std::vector<std::shared_ptr<_state_Effector>> stateEffectors;
    std::vector<std::shared_ptr<__Numeric_Effector_Init>> numericEffectorInits;
    std::vector<std::shared_ptr<__State_Effectors_Init_PDR>> stateEffectorInits;
    std::uint32_t fruTableLength = 0;
    std::uint16_t fruRecordCount = 0;
    std::vector<std::uint8_t> fruTable;         ///< as received
    std::shared_ptr<__FRUContents> fruContents; ///< empty until a FRU record has been parsed
};

} // namespace vantric
