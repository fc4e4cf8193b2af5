// SPDX-License-Identifier: Apache-2.0
/** What records become: five of them field by field, the others at their lengths; and lists. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include "modeling/entity_tree.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <regex>
#include <span>

using namespace vantric;

namespace {

/** What GetExtractedData logs, with "=" for " = " and " " for a line's end. */
std::string Extracted(ScriptedEndpoint& endpoint) {
    const CapturedLog log;
    endpoint.cmds.GetExtractedData();
    std::string text;
    for (const auto& line : log.Messages(4)) {
        text += std::regex_replace(line.substr(0, line.size() - 1), std::regex(" = "), "=") + ' ';
    }
    return text;
}

TEST(GetExtractedData, LogsEachFieldOfRecords) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {0xF1F2F000});
    endpoint.Data().supportedTypes[2][0xF1F2F000][0x51] = 1;
    endpoint.Data().PDRUpdatetime = {60, 1234, 40, 30, 20, 10, 9, 2024, 1, 2};
    const std::vector<const char*> records{
        "01 00 00 00 01 02 00 00 44 00 AA AA 92 10 90 00 02 00 07 00 02 01 02 FE 03 EE EE EE EE "
        "01 EE 01 04 00 00 80 3F 00 00 80 40 FA 00 04 05 03 00 00 00 3F 0F 00 00 C0 3F 00 00 00 "
        "40 78 00 00 00 01 00 00 00 00 7F 32 3C 28 50 0A 5A 08 64 06",
        "01 00 00 00 01 15 00 00 2B 00 AA AA 0C 00 44 00 01 00 09 00 04 07 FF 02 15 FF FF FF FF "
        "EC FF FF FF 2C 01 00 00 D8 FF FF FF 00 00 00 00 C4 FF FF FF 47 50 55 30",
        "01 00 00 00 01 09 00 00 3C 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 "
        "14 15 16 EE 03 00 00 00 3F 00 00 00 C0 21 22 23 24 00 00 C0 3F 00 00 00 41 FE FF FD FF "
        "A1 A2 FC FF FB FF FA FF F9 FF F8 FF",
        "01 00 00 00 01 04 00 00 1D 00 0B 0A 09 00 90 00 02 00 07 00 01 00 04 01 00 02 06 81 21 "
        "00 00 67 12 01 01 02 80 01 02",
        "01 00 00 00 01 0F 00 00 16 00 02 00 01 90 00 03 00 04 00 02 2C 01 05 00 06 00 0F 27 07 "
        "00 08 00"};
    for (const auto* record : records) {
        endpoint.HandlePDR(Bytes::FromHex(record));
    }
    endpoint.Answers({Good({42})});
    endpoint.cmds.GetTID();
    EXPECT_EQ(
        Extracted(endpoint),
        "************************************************* Extracting data for Slot=3 having "
        "EID=9 ************************************************* PLDM Type=2 Version=0xf1f2f000 "
        "Supported command=81 TID=42 PDRUpdatetime=2024-09-10 20:30:40.001234 "
        "UTC_Offset_In_Minutes=60 Time_Resolution=1 UTC_Resolution=2 iRecordCount=0 "
        "iRepositorySize=0 iLargestRecordSize=0 iDataTransferHandleTimeout=0 "
        "***************NUMERIC_SENSORS******************* sensorID=4242 entityType=144 "
        "entityInstanceNumber=2 containerID=7 sensorInit=2 IsSensorAuxNameSupported=1 baseUnit=2 "
        "unitModifier=-2 rateUnit=3 auxUnit=0 auxUnitModifier=0 auxRateUnit=0 relative=1 "
        "isLinear=1 dataType=4 resolution=1.000000 offset=4.000000 accuracy=250 plusTolerance=4 "
        "minusTolerance=5 hysteresis=3 supportedThresholds=63 "
        "thresholdAndHysteresisVolatility=15 stateTransitionInterval=1.500000 "
        "updateInterval=2.000000 maxReadable=120 minReadable=1 rangeFieldFormat=0 "
        "rangeFieldSupport=127 nominalValue=0 normalMax=0 normalMin=0 upperThresholdFatal=100 "
        "upperThresholdCritical=90 upperThresholdWarning=80 lowerThresholdWarning=10 "
        "lowerThresholdCritical=8 lowerThresholdFatal=6 thresholdReadingError=0 "
        "sensorOpernlState=0 presentState=0 previousState=0 eventState=0 presentReading=0 "
        "temperature=2147483647 auxLanguageTag= auxSensorName=temp4242 sensorNeededFor=0 "
        "sensorID=12 entityType=68 entityInstanceNumber=1 containerID=9 sensorInit=0 "
        "IsSensorAuxNameSupported=0 baseUnit=7 unitModifier=-1 rateUnit=2 auxUnit=0 "
        "auxUnitModifier=0 auxRateUnit=0 relative=0 isLinear=0 dataType=0 resolution=1.000000 "
        "offset=0.000000 accuracy=0 plusTolerance=0 minusTolerance=0 hysteresis=0 "
        "supportedThresholds=255 thresholdAndHysteresisVolatility=0 "
        "stateTransitionInterval=0.000000 updateInterval=0.000000 maxReadable=0 minReadable=0 "
        "rangeFieldFormat=0 rangeFieldSupport=21 nominalValue=0 normalMax=0 normalMin=0 "
        "upperThresholdFatal=0 upperThresholdCritical=300 upperThresholdWarning=-1 "
        "lowerThresholdWarning=-20 lowerThresholdCritical=-40 lowerThresholdFatal=-60 "
        "thresholdReadingError=0 sensorOpernlState=0 presentState=0 previousState=0 eventState=0 "
        "presentReading=0 temperature=0 auxLanguageTag= auxSensorName=GPU0 sensorNeededFor=0 "
        "***************END_NUMERIC_SENSORS******************* "
        "***********EFFECTORS******************* PLDMTerminusHandle=513 EffectorID=1027 "
        "entityType=1541 entityInstanceNumber=2055 containerID=2569 EffectorSemanticID=3083 "
        "EffectorInit=13 EffectorAuxiliaryNamesPDR=14 baseUnit=15 unitModifier=16 rateUnit=17 "
        "baseOEMUnitHandle=18 auxUnit=19 auxUnitModifier=20 auxrateUnit=21 auxOEMUnitHandle=22 "
        "isLinear=0 EffectorDataSize=3 resolution=0.500000 offset=-2.000000 accuracy=8737 "
        "plusTolerance=35 minusTolerance=36 stateTransitionInterval=1.500000 "
        "TransitionInterval=8.000000 maxSettable=-2 minSettable=-3 rangeFieldFormat=161 "
        "rangeFieldSupport=162 nominalValue=-4 normalMax=-5 normalMin=-6 ratedMax=-7 ratedMin=-8 "
        "EffectorOperationalState=0 pendingValue=0 presentValue=0 ErrorInReadingEffectorValue=0 "
        "***********END_EFFECTORS******************* "
        "***********STATE_SENSORS******************* PLDMTerminusHandle=2571 sensorId=9 "
        "entityType=144 entityInstanceNumber=2 containerID=7 sensorInit=1 "
        "sensorAuxiliaryNamesPDR=0 compositeSensorCount=4 sensorName=StateSensor.9.1 langTag= "
        "stateSetName=Health State stateSetID=1 possibleStatesSize=2 possibleStateValue=1 "
        "possibleStateValue=2 possibleStateValue=8 possibleStateValue=15 "
        "sensorOperationalState=0 presentState=0 previousState=0 eventState=0 sensorName= "
        "langTag= stateSetName= stateSetID=0 possibleStatesSize=0 sensorOperationalState=0 "
        "presentState=0 previousState=0 eventState=0 sensorName=StateSensor.9.3 langTag= "
        "stateSetName=Not Supported stateSetID=4711 possibleStatesSize=1 possibleStateValue=0 "
        "sensorOperationalState=0 presentState=0 previousState=0 eventState=0 "
        "sensorName=StateSensor.9.4 langTag= stateSetName=OEM State Set stateSetID=32770 "
        "possibleStatesSize=1 possibleStateValue=1 sensorOperationalState=0 presentState=0 "
        "previousState=0 eventState=0 ***********END_STATE_SENSORS******************* "
        "***********EAPDRPtr******************* ContainerID=2 AssociationType=1 "
        "ContainerEntityType=144 ContainerEntityInstanceNumber=3 ContainerEntityContainerID=4 "
        "ContainedEntityCount=2 ContainedEntityType=300 ContainedEntityInstanceNumber=5 "
        "ContainerID=2 ContainedEntityContainerID=6 ContainedEntityType=9999 "
        "ContainedEntityInstanceNumber=7 ContainerID=2 ContainedEntityContainerID=8 "
        "***********END_EAPDRPtr******************* ");
}

/** Whether a new record is made of zeros up to the text or padding that it ends with. */
template <typename Record, std::size_t rest = 0>
bool IsZero() {
    const auto record = std::make_unique<Record>();
    const auto bytes = std::as_bytes(std::span(record.get(), 1)).first(sizeof(Record) - rest);
    return std::ranges::count(bytes, std::byte{0}) == std::ssize(bytes);
}

TEST(Records, HoldNothingUntilTheyAreFilled) {
    ScriptedEndpoint endpoint;
    auto& data = endpoint.Data();
    data.numericSensors = {std::make_shared<__Temp_sensors>()};
    data.effectors = {std::make_shared<_Effectors>()};
    data.stateSensors = {std::make_shared<_StateSensors>()};
    data.stateSensors[0]->compositeSensors.resize(1);
    data.entityAssociations = {std::make_shared<EAPDR>()};
    data.entityAssociations[0]->containedEntities = {std::make_shared<CEList>()};
    static const std::regex nothing("Extracting .* EID=9 |[*]+[^ ]* |[^ ]*=[-0:. ]* ");
    EXPECT_EQ(std::regex_replace(Extracted(endpoint), nothing, ""), "");
    EXPECT_TRUE((IsZero<__Sensor, sizeof(std::string)>() && IsZero<PDRTree>()));
    constexpr auto fruNumbers = offsetof(__FRUContents, cpuAffinity) + sizeof(std::uint16_t);
    EXPECT_TRUE((IsZero<__FRUContents, sizeof(__FRUContents) - fruNumbers>() &&
                 IsZero<_state_Effector, 1>() && IsZero<__State_Effectors_Init_PDR>()));
}

Bytes AssociationPdr(std::uint16_t containerType) {
    return Pdr(15, Bytes(3, 1).Add(containerType).AddZeros(5));
}

TEST(EntityAssociationPdr, IsDroppedWholeButNoticed) {
    for (const auto& [record, kept] : {std::pair{AssociationPdr(204), 0U},
                                       {Cut(AssociationPdr(144)), 0U},
                                       {AssociationPdr(144), 1U}}) {
        ScriptedEndpoint endpoint;
        endpoint.Data().iLargestRecordSize = 200;
        EXPECT_FALSE(endpoint.cmds.HasEntityAssociation());
        endpoint.Answers({Good(Bytes(11, 0).Add(record))});
        endpoint.transport.answers.front().bytes[12] = 5;
        EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
        EXPECT_EQ(endpoint.Data().entityAssociations.size(), kept);
        EXPECT_TRUE(endpoint.cmds.HasEntityAssociation());
        endpoint.cmds.ResetExtractedData();
        EXPECT_TRUE(endpoint.cmds.HasEntityAssociation()) << "that it has had them stays";
    }
}

std::size_t Records(ScriptedEndpoint& endpoint) {
    const auto& data = endpoint.Data();
    return data.terminusLocators.size() + data.numericSensors.size() + data.stateSensors.size() +
           data.effectors.size() + data.numericEffectorInits.size() + data.stateEffectors.size() +
           data.stateEffectorInits.size() + data.entityAssociations.size();
}

/** A list grows up to its bound, and only by records that hold their fixed fields. */
TEST(Lists, TakeWholeRecordsUntilTheyAreFull) {
    struct Row {
        Bytes record;
        std::size_t kept;
        std::size_t shortest; ///< body that is taken
    };
    Bytes manyMembers(13 + 3 * 255, 0);
    manyMembers[12] = 255;
    const auto twoMembers =
        Bytes::FromHex("0B 0A 09 00 90 00 02 00 07 00 01 00 02 01 00 01 06 02 00 01 06");
    const std::vector<Row> rows{
        {Pdr(1, Bytes(12, 1)), 8192, 7},
        {NumericSensorPdr{}.Build(), 8192, 68},
        {NumericSensorPdr{.supportedThresholds = 1}.Build(), 8192, 63}, // none reads later slots
        {Pdr(4, Bytes(13, 0)), 8192, 13},
        {Pdr(4, manyMembers), 32, manyMembers.size()},
        {Pdr(4, twoMembers), 4096, twoMembers.size()},
        {Pdr(9, Bytes(60, 1)), 8192, 44},
        {Pdr(10, Bytes(7, 1)), 8192, 4},
        {Pdr(11, Bytes(80, 20)), 8192, 15},
        {Pdr(12, Bytes(22, 1)), 8192, 4},
        {AssociationPdr(144), 8192, 10},
        {CompactSensorPdr{}.Build(), 8192, 39},
    };
    for (const auto& row : rows) {
        ScriptedEndpoint endpoint;
        endpoint.Supports(2, {0xF1F2F000}); // or it has no numeric sensor
        for (std::size_t length = 0; length < 10 + row.shortest; ++length) {
            const CapturedLog log;
            endpoint.HandlePDR(Slice(row.record, 0, length));
            EXPECT_EQ(Records(endpoint), 0U) << "type " << int{row.record[5]};
            EXPECT_EQ(log.Messages(2).size(), length > 5 ? 1U : 0U) << length;
        }
        endpoint.HandlePDR(Slice(row.record, 0, 10 + row.shortest));
        EXPECT_EQ(Records(endpoint), 1U) << "type " << int{row.record[5]};
        const CapturedLog log;
        for (std::size_t i = 0; i < row.kept + 8; ++i) {
            endpoint.HandlePDR(row.record);
        }
        EXPECT_EQ(log.Count(2, "No more than 8192 records of one kind are kept\n"),
                  row.kept == 8192 ? 1 : 0);
        EXPECT_EQ(Records(endpoint), row.kept) << "type " << int{row.record[5]};
    }
}

} // namespace
