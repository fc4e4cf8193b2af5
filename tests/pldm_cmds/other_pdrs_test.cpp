/** Associations, effectors and terminus locators; and the log of everything. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

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
    for (const auto& record : {AssociationPdr(204, {300}), Bytes(whole.begin(), whole.end() - 1)}) {
        ScriptedEndpoint endpoint;
        endpoint.cmds.HandlePDR(record);
        EXPECT_TRUE(endpoint.Data().entityAssociations.empty());
        EXPECT_TRUE(endpoint.cmds.HasEntityAssociation());
    }
}

TEST(NumericEffectorPdr, FillsEachField) {
    struct Row {
        std::uint8_t dataSize;
        Bytes ranges; ///< from byte 44 on
        std::int64_t maxSettable, minSettable;
        int format;
        std::int64_t nominalValue, ratedMin;
    };
    const Bytes narrow{0xFE, 0x80, 3, 0x77, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4};
    const Bytes middle{0xFE, 0x80, 0x03, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4,
                       0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC};
    const Bytes wide{0xFE, 0x80, 0x03, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xEE,
                     0xEE, 0xF9, 0xFA, 0xFB, 0xFC, 1,    2,    3,    4,    5,    6,
                     7,    8,    9,    10,   11,   12,   13,   14,   15,   16};
    const std::vector<Row> rows{
        {0, narrow, 0xFE, 0x80, 3, 0xF0, 0xF4},
        {1, narrow, -2, -128, 3, -16, -12},
        {2, middle, 0x80FE, 0xF003, 0xF1, 0xF4F3, 0xFCFB},
        {3, middle, -32514, -4093, 0xF1, -2829, -773},
        {4, wide, 0xF00380FE, 0xF4F3F2F1, 0xF5, 0xFCFBFAF9, 0x100F0E0D},
        {5, wide, -268205826, -185339151, 0xF5, -50595079, 0x100F0E0D},
        {6, {}, 0, 0, 0, 0, 0},
        {255, {}, 0, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        Bytes body = Counting(44);
        body[22] = 0xEE;
        body[23] = row.dataSize;
        ScriptedEndpoint endpoint;
        endpoint.cmds.HandlePDR(Pdr(9, Bytes(body).Add(row.ranges)));
        ASSERT_EQ(endpoint.Data().effectors.size(), 1U) << int{row.dataSize};
        const auto& effector = *endpoint.Data().effectors[0];
        EXPECT_EQ(effector.PLDMTerminusHandle, 0x0201);
        EXPECT_EQ(effector.EffectorSemanticID, 0x0C0B);
        EXPECT_EQ(effector.auxOEMUnitHandle, 22);
        EXPECT_EQ(effector.isLinear, 0);
        EXPECT_EQ(effector.EffectorDataSize, row.dataSize);
        EXPECT_EQ(effector.resolution, std::bit_cast<float>(0x1C1B1A19));
        EXPECT_EQ(effector.accuracy, 0x2221);
        EXPECT_EQ(effector.TransitionInterval, std::bit_cast<float>(0x2C2B2A29));
        EXPECT_EQ(effector.maxSettable, row.maxSettable) << int{row.dataSize};
        EXPECT_EQ(effector.minSettable, row.minSettable) << int{row.dataSize};
        EXPECT_EQ(effector.rangeFieldFormat, row.format) << int{row.dataSize};
        EXPECT_EQ(effector.nominalValue, row.nominalValue) << int{row.dataSize};
        EXPECT_EQ(effector.ratedMin, row.ratedMin) << int{row.dataSize};
        // Ranges as narrow as their own format says, or none: what is missing reads as 0.
        endpoint.cmds.HandlePDR(Pdr(9, body));
        endpoint.cmds.HandlePDR(Pdr(9, Bytes(body.begin(), body.end() - 1)));
        ASSERT_EQ(endpoint.Data().effectors.size(), 2U) << "kept with its fixed fields only";
        EXPECT_EQ(endpoint.Data().effectors[1]->maxSettable, 0);
    }
}

TEST(StateEffectorPdr, KeepsSixteenComposites) {
    ScriptedEndpoint endpoint;
    Bytes body = Counting(16 + 4 * 20);
    for (const int count : {1, 16, 20}) {
        body[14] = static_cast<std::uint8_t>(count);
        endpoint.cmds.HandlePDR(Pdr(11, body));
        const auto& effector = *endpoint.Data().stateEffectors.back();
        EXPECT_EQ(effector.effectorID, 0x0403);
        EXPECT_EQ(effector.effectorSemanticID, 0x0C0B);
        EXPECT_EQ(effector.effectorDescriptionPDR, 14);
        EXPECT_EQ(effector.compositeEffectorCount, count);
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
    EXPECT_EQ(numeric[0]->entityInstanceNumber, 7);
    EXPECT_EQ(numeric[1]->entityType, 0x0605);
    EXPECT_EQ(numeric[1]->entityInstanceNumber, 0);
    EXPECT_EQ(state[0]->body[21], 22);
    EXPECT_EQ(state[1]->body[5] + state[1]->body[6], 6);
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
    ScriptedEndpoint endpoint;
    Bytes manyMembers(13 + 3 * 255, 0);
    manyMembers[12] = 255;
    const std::vector<Bytes> records{Pdr(10, Counting(7)), CompactSensorPdr{}.Build(),
                                     Pdr(9, Counting(44)), AssociationPdr(144, {}),
                                     Pdr(4, Bytes(13, 0)), Pdr(4, manyMembers)};
    for (const auto& record : records) {
        const auto count = &record == &records.back() ? 40 : 8200;
        if (count == 40) {
            endpoint.Data().stateSensors.clear();
        }
        for (int i = 0; i < count; ++i) {
            endpoint.cmds.HandlePDR(record);
        }
        if (&record == &records[4]) {
            EXPECT_EQ(endpoint.Data().stateSensors.size(), 8192U);
        }
    }
    EXPECT_EQ(endpoint.Data().numericEffectorInits.size(), 8192U);
    EXPECT_EQ(endpoint.Data().numericSensors.size(), 8192U);
    EXPECT_EQ(endpoint.Data().effectors.size(), 8192U);
    EXPECT_EQ(endpoint.Data().entityAssociations.size(), 8192U);
    EXPECT_EQ(endpoint.Data().stateSensors.size(), 32U) << "of 255 members each";
}

TEST(GetExtractedData, LogsWhatWasReadAndReturnsIt) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {0xF1F2F000});
    endpoint.Data().supportedTypes[2][0xF1F2F000][0x51] = 1;
    endpoint.cmds.HandlePDR(NumericSensorPdr{.id = 4242}.Build());
    endpoint.cmds.HandlePDR(AssociationPdr(144, {300}));
    const CapturedLog log;

    auto& data = endpoint.cmds.GetExtractedData();

    for (const char* line :
         {"Extracting data for Slot = 3 having EID = 9\n", "Supported command = 81\n",
          "***************NUMERIC_SENSORS*******************\n", "sensorID = 4242\n",
          "upperThresholdWarning = 80\n", "auxSensorName = temp4242\n",
          "***********EFFECTORS*******************\n",
          "***********STATE_SENSORS*******************\n",
          "***********EAPDRPtr*******************\n", "ContainedEntityType = 300\n"}) {
        EXPECT_EQ(log.Count(4, line), 1) << line;
    }
    endpoint.cmds.ResetExtractedData();
    EXPECT_TRUE(data->numericSensors.empty()) << "the reference follows the object";
}

} // namespace
