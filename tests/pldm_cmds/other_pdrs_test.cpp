/** Associations, effectors and terminus locators; and the log of everything. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using namespace vantric;

namespace {

/** A body of the bytes 1, 2, 3 and so on. */
Bytes Counting(std::size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

Bytes AssociationPdr(std::uint16_t containerType, const std::vector<std::uint16_t>& contained) {
    Bytes body;
    body.Add(std::uint16_t{2})
        .Add(std::uint8_t{1})
        .Add(containerType)
        .Add(std::uint16_t{3})
        .Add(std::uint16_t{4})
        .Add(static_cast<std::uint8_t>(contained.size()));
    for (const auto type : contained) {
        body.Add(type).Add(std::uint16_t{5}).Add(std::uint16_t{6});
    }
    return Pdr(15, body);
}

TEST(EntityAssociationPdr, FillsEachField) {
    ScriptedEndpoint endpoint;
    EXPECT_FALSE(endpoint.cmds.HasEntityAssociation());
    endpoint.cmds.HandlePDR(AssociationPdr(144, {300, 9999}));
    endpoint.cmds.HandlePDR(AssociationPdr(68, {}));
    EXPECT_TRUE(endpoint.cmds.HasEntityAssociation());
    ASSERT_EQ(endpoint.Data().entityAssociations.size(), 2U);
    const auto& association = *endpoint.Data().entityAssociations[0];
    EXPECT_EQ(association.ContainerID, 2);
    EXPECT_EQ(association.AssociationType, 1);
    EXPECT_EQ(association.ContainerEntityType, 144);
    EXPECT_EQ(association.ContainerEntityInstanceNumber, 3);
    EXPECT_EQ(association.ContainerEntityContainerID, 4);
    EXPECT_EQ(association.ContainedEntityCount, 2);
    ASSERT_EQ(association.containedEntities.size(), 2U);
    EXPECT_EQ(association.containedEntities[0]->ContainedEntityType, 300);
    const auto& entity = *association.containedEntities[1];
    EXPECT_EQ(entity.ContainedEntityType, 9999) << "only the container needs a word";
    EXPECT_EQ(entity.ContainedEntityInstanceNumber, 5);
    EXPECT_EQ(entity.ContainedEntityContainerID, 6);
    EXPECT_EQ(entity.ContainerID, 2);
}

TEST(EntityAssociationPdr, IsDroppedWholeButNoticed) {
    const Bytes whole = AssociationPdr(144, {300});
    for (const auto& record : {AssociationPdr(204, {300}), Cut(whole)}) {
        ScriptedEndpoint endpoint;
        endpoint.cmds.HandlePDR(record);
        EXPECT_TRUE(endpoint.Data().entityAssociations.empty());
        EXPECT_TRUE(endpoint.cmds.HasEntityAssociation());
    }
}

/** The fixed fields as a record holds them. */
Bytes HeadOf(const _Effectors& effector) {
    return Bytes()
        .Add(effector.PLDMTerminusHandle)
        .Add(effector.EffectorID)
        .Add(effector.entityType)
        .Add(effector.entityInstanceNumber)
        .Add(effector.containerID)
        .Add(effector.EffectorSemanticID)
        .Add(effector.EffectorInit)
        .Add(effector.EffectorAuxiliaryNamesPDR)
        .Add(effector.baseUnit)
        .Add(effector.unitModifier)
        .Add(effector.rateUnit)
        .Add(effector.baseOEMUnitHandle)
        .Add(effector.auxUnit)
        .Add(effector.auxUnitModifier)
        .Add(effector.auxrateUnit)
        .Add(effector.auxOEMUnitHandle)
        .Add(std::uint8_t{0xEE}) // isLinear, which isn't taken
        .Add(effector.EffectorDataSize)
        .Add(std::bit_cast<std::uint32_t>(effector.resolution))
        .Add(std::bit_cast<std::uint32_t>(effector.offset))
        .Add(effector.accuracy)
        .Add(effector.plusTolerance)
        .Add(effector.minusTolerance)
        .Add(std::bit_cast<std::uint32_t>(effector.stateTransitionInterval))
        .Add(std::bit_cast<std::uint32_t>(effector.TransitionInterval));
}

/** The limits and ranges behind them, in values of the given width. */
Bytes RangesOf(const _Effectors& effector, std::size_t width) {
    return Bytes()
        .AddWide(static_cast<std::uint64_t>(effector.maxSettable), width)
        .AddWide(static_cast<std::uint64_t>(effector.minSettable), width)
        .Add(effector.rangeFieldFormat)
        .Add(effector.rangeFieldSupport)
        .Add(Bytes(width == 4 ? 2 : 0, 0xEE)) // the values stand on a multiple of four
        .AddWide(static_cast<std::uint64_t>(effector.nominalValue), width)
        .AddWide(static_cast<std::uint64_t>(effector.normalMax), width)
        .AddWide(static_cast<std::uint64_t>(effector.normalMin), width)
        .AddWide(static_cast<std::uint64_t>(effector.ratedMax), width)
        .AddWide(static_cast<std::uint64_t>(effector.ratedMin), width);
}

TEST(NumericEffectorPdr, FillsEachField) {
    struct Row {
        std::uint8_t dataSize;
        std::size_t width;
        std::int64_t maxSettable, ratedMin;
    };
    for (const auto& row : {Row{0, 1, 0xFE, 0xF6}, Row{1, 1, -2, -10}, Row{2, 2, 0xFDFE, 0xEFF0},
                            Row{3, 2, -514, -4112}, Row{4, 4, 0xFBFCFDFE, 0xDFE0E1E2},
                            Row{5, 4, std::int32_t(0xFBFCFDFE), std::int32_t(0xDFE0E1E2)},
                            Row{6, 0, 0, 0}, Row{255, 0, 0, 0}}) {
        Bytes head = Counting(44);
        head[22] = 0xEE;
        head[23] = row.dataSize;
        Bytes ranges(row.width == 0 ? 50 : 7 * row.width + (row.width == 4 ? 4 : 2));
        std::generate(ranges.begin(), ranges.end(),
                      [value = std::uint8_t{0xFF}]() mutable { return --value; });
        if (row.width == 4) {
            ranges[10] = ranges[11] = 0xEE;
        }
        ScriptedEndpoint endpoint;
        endpoint.cmds.HandlePDR(Pdr(9, Bytes(head).Add(ranges)));
        // Ranges as narrow as their own format says, or none: what is missing reads as 0.
        endpoint.cmds.HandlePDR(Pdr(9, head));
        endpoint.cmds.HandlePDR(Pdr(9, Cut(head)));
        // Cut within the ranges: what came counts.
        endpoint.cmds.HandlePDR(Pdr(9, Bytes(head).Add(Slice(ranges, 0, row.width))));
        const auto& effectors = endpoint.Data().effectors;
        ASSERT_EQ(effectors.size(), 3U) << "kept with its fixed fields only";
        for (const auto& effector : effectors) {
            EXPECT_EQ(HeadOf(*effector), head) << int{row.dataSize};
            EXPECT_EQ(effector->isLinear, 0);
        }
        EXPECT_EQ(RangesOf(*effectors[0], row.width), row.width == 0 ? Bytes(2, 0) : ranges)
            << int{row.dataSize};
        EXPECT_EQ(effectors[0]->maxSettable, row.maxSettable) << int{row.dataSize};
        EXPECT_EQ(effectors[0]->ratedMin, row.ratedMin) << int{row.dataSize};
        EXPECT_EQ(effectors[1]->maxSettable + effectors[1]->ratedMin, 0);
        EXPECT_EQ(effectors[2]->maxSettable, row.maxSettable) << int{row.dataSize};
        EXPECT_EQ(effectors[2]->minSettable, 0) << int{row.dataSize};
    }
}

TEST(StateEffectorPdr, KeepsSixteenComposites) {
    ScriptedEndpoint endpoint;
    Bytes body = Counting(16 + 4 * 20);
    for (const int count : {1, 16, 20}) {
        body[14] = static_cast<std::uint8_t>(count);
        endpoint.cmds.HandlePDR(Pdr(11, body));
        const auto& effector = *endpoint.Data().stateEffectors.back();
        EXPECT_EQ(Bytes()
                      .Add(effector.PLDMTerminusHandle)
                      .Add(effector.effectorID)
                      .Add(effector.entityType)
                      .Add(effector.entityInstanceNumber)
                      .Add(effector.containerID)
                      .Add(effector.effectorSemanticID)
                      .Add(effector.effectorInit)
                      .Add(effector.effectorDescriptionPDR)
                      .Add(effector.compositeEffectorCount),
                  Slice(body, 0, 15));
        EXPECT_EQ(effector.compositeEffectors[0], (std::array<std::uint8_t, 4>{17, 18, 19, 20}));
        EXPECT_EQ(effector.compositeEffectors[15][3], count == 1 ? 0 : 80);
    }
    // Two members with a byte of states each, as they stand behind byte 14.
    body[14] = 2;
    body.resize(15 + 2 * 4);
    endpoint.cmds.HandlePDR(Pdr(11, body));
    ASSERT_EQ(endpoint.Data().stateEffectors.size(), 4U);
    EXPECT_EQ(endpoint.Data().stateEffectors[3]->compositeEffectors[1],
              (std::array<std::uint8_t, 4>{21, 22, 23, 0}));
    body.resize(14);
    endpoint.cmds.HandlePDR(Pdr(11, body));
    EXPECT_EQ(endpoint.Data().stateEffectors.size(), 4U) << "a count that isn't there";
}

TEST(EffectorInitPdrs, CopyTheirHeads) {
    ScriptedEndpoint endpoint;
    // With 30 bytes, as the smallest effector needs them, and without an effector ID.
    for (const std::size_t size : {30U, 6U, 4U, 3U}) {
        endpoint.cmds.HandlePDR(Pdr(10, Counting(size)));
        endpoint.cmds.HandlePDR(Pdr(12, Counting(size)));
    }
    const auto& numeric = endpoint.Data().numericEffectorInits;
    const auto& state = endpoint.Data().stateEffectorInits;
    ASSERT_EQ(numeric.size(), 3U);
    ASSERT_EQ(state.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t held = std::vector{30, 6, 4}[i];
        Bytes head = Counting(std::min<std::size_t>(held, 7));
        head.resize(7);
        EXPECT_EQ(Bytes()
                      .Add(numeric[i]->PLDMTerminusHandle)
                      .Add(numeric[i]->effectorID)
                      .Add(numeric[i]->entityType)
                      .Add(numeric[i]->entityInstanceNumber),
                  head);
        Bytes body = Counting(std::min<std::size_t>(held, 22));
        body.resize(22);
        EXPECT_EQ(Bytes(state[i]->body.begin(), state[i]->body.end()), body);
    }
}

TEST(TerminusLocatorPdr, TypeSaysWhatTheValueIs) {
    struct Row {
        std::uint8_t type;
        int instance, eid, software, uidNext, uidHead;
    };
    const std::vector<Row> rows{
        {0, 9, 0, 0, 0, 0x0B0A}, {1, 0, 9, 0, 0, 0}, {2, 0, 0, 0, 0x0C0B, 0x0A09},
        {3, 0, 0, 9, 0, 0x0B0A}, {4, 0, 0, 0, 0, 0},
    };
    ScriptedEndpoint endpoint;
    for (const auto& row : rows) {
        Bytes body = Counting(12);
        body[6] = row.type;
        endpoint.cmds.HandlePDR(Pdr(1, body));
        const auto& locator = *endpoint.Data().terminusLocators.back();
        EXPECT_EQ(locator.tid, 4);
        EXPECT_EQ(locator.containerID, 0x0605);
        EXPECT_EQ(locator.terminusInstance, row.instance) << int{row.type};
        EXPECT_EQ(locator.terminusEID, row.eid) << int{row.type};
        EXPECT_EQ(locator.softwareClass, row.software) << int{row.type};
        EXPECT_EQ(locator.uidNext, row.uidNext) << int{row.type};
        EXPECT_EQ(locator.uidHead, row.uidHead) << int{row.type};
        body[2] = 0;
        endpoint.cmds.HandlePDR(Pdr(1, body));
    }
    EXPECT_EQ(endpoint.Data().terminusLocators.size(), rows.size()) << "invalid ones are dropped";
    Bytes bus{0, 0, 1, 4, 5, 0, 2, 2, 0x1E, 0x20}; // a value of two bytes
    endpoint.cmds.HandlePDR(Pdr(1, bus));
    ASSERT_EQ(endpoint.Data().terminusLocators.size(), rows.size() + 1);
    EXPECT_EQ(endpoint.Data().terminusLocators.back()->uidHead, 0x201E);
    EXPECT_EQ(endpoint.Data().terminusLocators.back()->uidNext, 0);
    bus.resize(6);
    endpoint.cmds.HandlePDR(Pdr(1, bus));
    EXPECT_EQ(endpoint.Data().terminusLocators.size(), rows.size() + 1) << "without a type";
}

TEST(Lists, StopGrowing) {
    Bytes manyMembers(13 + 3 * 255, 0);
    manyMembers[12] = 255;
    const std::vector<std::pair<Bytes, std::size_t>> rows{
        {Pdr(1, Bytes(12, 1)), 8192},    {NumericSensorPdr{}.Build(), 8192},
        {Pdr(4, Bytes(13, 0)), 8192},    {Pdr(4, manyMembers), 32},
        {Pdr(9, Counting(44)), 8192},    {Pdr(10, Counting(7)), 8192},
        {Pdr(11, Counting(16)), 8192},   {Pdr(12, Counting(22)), 8192},
        {AssociationPdr(144, {}), 8192}, {CompactSensorPdr{}.Build(), 8192},
    };
    for (const auto& [record, kept] : rows) {
        ScriptedEndpoint endpoint;
        endpoint.Supports(2, {0xF1F2F000}); // or it has no numeric sensor
        for (int i = 0; i < 8200; ++i) {
            endpoint.cmds.HandlePDR(record);
        }
        const auto& data = endpoint.Data();
        EXPECT_EQ(data.terminusLocators.size() + data.numericSensors.size() +
                      data.stateSensors.size() + data.effectors.size() +
                      data.numericEffectorInits.size() + data.stateEffectors.size() +
                      data.stateEffectorInits.size() + data.entityAssociations.size(),
                  kept)
            << "type " << int{record[5]};
    }
}

/** What stands before the " = " of the lines between a section's marker and its END twin. */
std::string FieldsOf(const std::vector<std::string>& lines, const std::string& section) {
    const auto isMarker = [](const std::string& name) {
        return [=](const std::string& line) {
            return line.starts_with("***") && line.ends_with("*" + name + "*******************\n");
        };
    };
    const auto begin = std::ranges::find_if(lines, isMarker(section));
    const auto end = std::find_if(begin, lines.end(), isMarker("END_" + section));
    std::string names;
    for (auto line = begin; line != end && ++line != end;) {
        names += line->substr(0, line->find(" = ")) + " ";
    }
    return end == lines.end() ? "no end of " + section : names;
}

TEST(GetExtractedData, LogsEveryFieldOfEveryRecord) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {0xF1F2F000});
    endpoint.Data().supportedTypes[2][0xF1F2F000][0x51] = 1;
    endpoint.cmds.HandlePDR(NumericSensorPdr{.id = 4242}.Build());
    endpoint.cmds.HandlePDR(Pdr(9, Counting(76)));
    // Two members: of set 1 with the states 1 and 2, of set 33 with 1, 2 and 8.
    endpoint.cmds.HandlePDR(
        Pdr(4, Bytes{0, 0, 9, 0, 144, 0, 1, 0, 1, 0, 0, 0, 2, 1, 0, 1, 6, 33, 0, 2, 6, 1}));
    endpoint.cmds.HandlePDR(AssociationPdr(144, {300}));
    const CapturedLog log;

    auto& data = endpoint.cmds.GetExtractedData();

    const auto lines = log.Messages(4);
    const std::string member = "sensorOperationalState presentState previousState eventState ";
    const std::pair<const char*, std::string> sections[] = {
        {"NUMERIC_SENSORS",
         "sensorID entityType entityInstanceNumber containerID sensorInit "
         "IsSensorAuxNameSupported baseUnit unitModifier rateUnit auxUnit auxUnitModifier "
         "auxRateUnit relative isLinear dataType resolution offset accuracy plusTolerance "
         "minusTolerance hysteresis supportedThresholds thresholdAndHysteresisVolatility "
         "stateTransitionInterval updateInterval maxReadable minReadable rangeFieldFormat "
         "rangeFieldSupport nominalValue normalMax normalMin upperThresholdFatal "
         "upperThresholdCritical upperThresholdWarning lowerThresholdWarning "
         "lowerThresholdCritical lowerThresholdFatal thresholdReadingError sensorOpernlState "
         "presentState previousState eventState presentReading temperature auxLanguageTag "
         "auxSensorName sensorNeededFor "},
        {"EFFECTORS",
         "PLDMTerminusHandle EffectorID entityType entityInstanceNumber containerID "
         "EffectorSemanticID EffectorInit EffectorAuxiliaryNamesPDR baseUnit unitModifier "
         "rateUnit baseOEMUnitHandle auxUnit auxUnitModifier auxrateUnit auxOEMUnitHandle "
         "isLinear EffectorDataSize resolution offset accuracy plusTolerance minusTolerance "
         "stateTransitionInterval TransitionInterval maxSettable minSettable rangeFieldFormat "
         "rangeFieldSupport nominalValue normalMax normalMin ratedMax ratedMin "
         "EffectorOperationalState pendingValue presentValue ErrorInReadingEffectorValue "},
        {"STATE_SENSORS",
         "PLDMTerminusHandle sensorId entityType entityInstanceNumber containerID sensorInit "
         "sensorAuxiliaryNamesPDR compositeSensorCount "
         "sensorName langTag stateSetName stateSetID possibleStatesSize possibleStateValue "
         "possibleStateValue " +
             member +
             "sensorName langTag stateSetName stateSetID possibleStatesSize possibleStateValue "
             "possibleStateValue possibleStateValue " +
             member},
        {"EAPDRPtr",
         "ContainerID AssociationType ContainerEntityType ContainerEntityInstanceNumber "
         "ContainerEntityContainerID ContainedEntityCount ContainedEntityType "
         "ContainedEntityInstanceNumber ContainerID ContainedEntityContainerID "},
    };
    for (const auto& [section, fields] : sections) {
        EXPECT_EQ(FieldsOf(lines, section), fields) << section;
    }
    const std::string asterisks = std::string(49, '*') + "\n";
    std::string head;
    for (const auto& line : lines) {
        if (line.ends_with("*NUMERIC_SENSORS*******************\n")) {
            break;
        }
        head += line == asterisks ? line : line.substr(0, line.find(" = ")) + ' ';
    }
    EXPECT_EQ(head, asterisks + "Extracting data for Slot " + asterisks +
                        "PLDM Type Version Supported command TID PDRUpdatetime "
                        "UTC_Offset_In_Minutes Time_Resolution UTC_Resolution iRecordCount "
                        "iRepositorySize iLargestRecordSize iDataTransferHandleTimeout ");
    for (const char* line :
         {"Extracting data for Slot = 3 having EID = 9\n", "Supported command = 81\n",
          "***************NUMERIC_SENSORS*******************\n",
          "***********EFFECTORS*******************\n",
          "***********STATE_SENSORS*******************\n",
          "***********EAPDRPtr*******************\n", "sensorID = 4242\n",
          "upperThresholdWarning = 80\n", "auxSensorName = temp4242\n", "EffectorID = 1027\n",
          "stateSetID = 33\n", "ContainedEntityType = 300\n"}) {
        EXPECT_EQ(log.Count(4, line), 1) << line;
    }
    endpoint.cmds.ResetExtractedData();
    EXPECT_TRUE(data->numericSensors.empty()) << "the reference follows the object";
    EXPECT_TRUE(endpoint.cmds.HasEntityAssociation()) << "that it has had them stays";
}

} // namespace
