// SPDX-License-Identifier: Apache-2.0
/** When the repository is read, and how its records are put together. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vantric;

namespace {

/** An answer to GetPDRRepositoryInfo. */
struct Repository {
    std::uint8_t state = 0;
    Bytes time{60, 0, 1, 2, 3, 40, 30, 20, 10, 9, 0xE8, 0x07, 0x21};
    std::uint32_t count = 2;
    std::uint32_t largest = 200;

    Answer Build() const {
        return Good(Bytes()
                        .Add(state)
                        .Add(time)
                        .Add(Bytes(13, 0xEE))
                        .Add(count)
                        .Add(std::uint32_t{5000})
                        .Add(largest)
                        .Add(std::uint8_t{30}));
    }
};

/** An answer to GetPDR. */
Answer Part(std::uint32_t nextRecord, std::uint32_t nextPart, std::uint8_t flag,
            const Bytes& data) {
    return Good(Bytes()
                    .Add(nextRecord)
                    .Add(nextPart)
                    .Add(flag)
                    .Add(std::uint16_t{0xFFFF}) // response count, which nobody reads
                    .Add(data));
}

Answer Whole(std::uint32_t nextRecord, const Bytes& record) {
    return Part(nextRecord, 0, 5, record);
}

Bytes Sensor(std::uint16_t id) {
    return CompactSensorPdr{.id = id}.Build();
}

using Ids = std::vector<std::uint16_t>;

TEST(RepositoryInfo, StoresWhatItSaysAndReadsTheRecords) {
    const CapturedLog log;
    ScriptedEndpoint endpoint;
    endpoint.Answers({Repository{}.Build(), Whole(7, Sensor(1)), Whole(0, Sensor(2))});

    EXPECT_EQ(endpoint.cmds.GetPDRRepositoryInfo(1), 0);

    const auto& data = endpoint.Data();
    EXPECT_EQ(data.iRecordCount, 2U);
    EXPECT_EQ(data.iRepositorySize, 5000U);
    EXPECT_EQ(data.iLargestRecordSize, 200U);
    EXPECT_EQ(data.iDataTransferHandleTimeout, 30U);
    EXPECT_EQ(data.PDRUpdatetime, (Timestamp104{60, 0x030201, 40, 30, 20, 10, 9, 2024, 1, 2}));
    EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), (Ids{1, 2}));
    EXPECT_EQ(log.Count(4, "PDR Changed!!!\n"), 1);
    EXPECT_EQ(log.Count(4, "PDR Type = 21\n"), 2);
    EXPECT_TRUE(log.Messages(1).empty());
    EXPECT_EQ(endpoint.transport.requests[2],
              (Bytes{0x83, 2, 0x51, 7, 0, 0, 0, 0, 0, 0, 0, 1, 200, 0, 0, 0}));
    EXPECT_EQ(endpoint.transport.capacities[2], 234U);
}

TEST(RepositoryInfo, AnyFieldOfTheUpdateTimeCausesARead) {
    for (std::size_t byte = 0; byte < 14; ++byte) {
        ScriptedEndpoint endpoint;
        endpoint.Answers({Repository{.count = 1}.Build(), Whole(0, Sensor(1))});
        ASSERT_EQ(endpoint.cmds.GetPDRRepositoryInfo(1), 0);
        const auto before = endpoint.Data().numericSensors.front();

        Repository later{.count = 1, .largest = 300};
        if (byte < 13) {
            later.time[byte] ^= 0x10;
        }
        endpoint.Answers({later.Build(), Whole(0, Sensor(1))});
        EXPECT_EQ(endpoint.cmds.GetPDRRepositoryInfo(0), byte < 13 ? 10 : 0) << byte;
        EXPECT_EQ(endpoint.Asked(), byte < 13 ? 4U : 3U) << byte;
        EXPECT_EQ(endpoint.Data().numericSensors.front() == before, byte == 13) << byte;
        EXPECT_EQ(endpoint.Data().iLargestRecordSize, 300U) << "whatever the time says";
    }
}

TEST(RepositoryInfo, WaitsForARepositoryThatIsNotAvailable) {
    ScriptedEndpoint endpoint;
    endpoint.Answers(
        {Repository{.state = 1}.Build(), Repository{.count = 1}.Build(), Whole(0, Sensor(1))});
    EXPECT_EQ(endpoint.cmds.GetPDRRepositoryInfo(0), 0);
    EXPECT_EQ(endpoint.Asked(), 1U);
    EXPECT_EQ(endpoint.Data().iLargestRecordSize, 0U) << "nothing is stored";
    EXPECT_EQ(endpoint.cmds.GetPDRRepositoryInfo(0), 10) << "the change is seen later";
}

TEST(RepositoryInfo, EmptiesFourListsAndKeepsTheOthers) {
    ScriptedEndpoint endpoint;
    auto& data = endpoint.Data();
    data.numericSensors.resize(1);
    data.effectors.resize(1);
    data.stateSensors.resize(1);
    data.entityAssociations.resize(1);
    data.terminusLocators.resize(1);
    data.stateEffectors.resize(1);
    data.numericEffectorInits.resize(1);
    data.stateEffectorInits.resize(1);
    endpoint.Answers({Repository{}.Build(), NoAnswer(3)});
    EXPECT_EQ(endpoint.cmds.GetPDRRepositoryInfo(0), 1);
    EXPECT_EQ(data.numericSensors.size() + data.effectors.size() + data.stateSensors.size() +
                  data.entityAssociations.size(),
              0U);
    EXPECT_EQ(data.terminusLocators.size() + data.stateEffectors.size() +
                  data.numericEffectorInits.size() + data.stateEffectorInits.size(),
              4U);
    // The failed walk isn't tried again before the next change.
    endpoint.Answers({Repository{}.Build()});
    EXPECT_EQ(endpoint.cmds.GetPDRRepositoryInfo(0), 0);
}

/** An endpoint whose repository info is known. */
class WalkedEndpoint : public ScriptedEndpoint {
public:
    WalkedEndpoint() { Data().iLargestRecordSize = 2000; }
};

TEST(PdrWalk, PutsPartsTogether) {
    const Bytes record = Pdr(21, Slice(Sensor(4), 10, Sensor(4).size()), 0xBEEF);
    WalkedEndpoint endpoint;
    endpoint.Data().iRecordCount = 2;
    endpoint.Answers({Part(0, 0x11, 1, Slice(record, 0, 20)),
                      Part(0, 0x22, 0, Slice(record, 20, 30)),
                      Part(9, 0x33, 4, Slice(record, 30, record.size())), Whole(0, Sensor(5))});

    EXPECT_EQ(endpoint.cmds.GetPDR(), 0);

    EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), (Ids{4, 5}));
    EXPECT_EQ(endpoint.Data().numericSensors[0]->lowerThresholdFatal, -60);
    const auto& requests = endpoint.transport.requests;
    ASSERT_EQ(requests.size(), 4U);
    EXPECT_EQ(Slice(requests[1], 3, 16),
              (Bytes{0, 0, 0, 0, 0x11, 0, 0, 0, 0, 0xD0, 7, 0xEF, 0xBE}));
    EXPECT_EQ(Slice(requests[2], 3, 16),
              (Bytes{0, 0, 0, 0, 0x22, 0, 0, 0, 0, 0xD0, 7, 0xEF, 0xBE}));
    EXPECT_EQ(Slice(requests[3], 3, 16), (Bytes{9, 0, 0, 0, 0, 0, 0, 0, 1, 0xD0, 7, 0, 0}));
}

TEST(PdrWalk, AWholeRecordForgetsPartsBeforeIt) {
    WalkedEndpoint endpoint;
    endpoint.Answers({Part(0, 1, 1, Bytes(50, 0xFF)), Whole(0, Sensor(6))});
    EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
    EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), Ids{6});
}

TEST(PdrWalk, CountsModulo256AndUsesEverything) {
    struct Row {
        std::uint32_t expected;
        std::uint32_t delivered;
        const char* message;
    };
    for (const auto& row :
         {Row{300, 300, "Mismatch in expected PDR Count (300) and received PDR Count(44)\n"},
          Row{12, 11, "Mismatch in expected PDR Count (12) and received PDR Count(11)\n"},
          Row{11, 11, nullptr}}) {
        const CapturedLog log;
        WalkedEndpoint endpoint;
        endpoint.Data().iRecordCount = row.expected;
        std::uint32_t sent = 0;
        endpoint.transport.respond = [&](const Bytes&) {
            ++sent;
            return Whole(sent < row.delivered ? sent : 0, Sensor(static_cast<std::uint16_t>(sent)));
        };
        EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
        EXPECT_EQ(endpoint.cmds.GetAllSensorIDs().size(), row.delivered);
        EXPECT_EQ(log.Messages(1),
                  row.message ? std::vector<std::string>{row.message} : std::vector<std::string>{});
    }
}

TEST(PdrWalk, SkipsOtherTypesAndKeepsWhatItHadOnFailure) {
    for (const bool fails : {false, true}) {
        const CapturedLog log;
        WalkedEndpoint endpoint;
        endpoint.Data().iRecordCount = 4;
        endpoint.Answers({Whole(1, Pdr(3, {1, 2, 3})), Whole(2, Pdr(200, {})), Whole(3, Bytes{}),
                          Whole(fails ? 4 : 0, Sensor(1)), Reply(0x82)});
        EXPECT_EQ(endpoint.cmds.GetPDR(), fails ? 1 : 0);
        EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), Ids{1});
        EXPECT_EQ(log.Messages(1).size(), fails ? 1U : 0U) << "skipped ones count";
        for (const char* line : {"PDR Type = 3\n", "PDR Type = 200\n", "PDR Type = 0\n"}) {
            EXPECT_EQ(log.Count(4, line), 1) << line;
        }
    }
}

TEST(PdrWalk, EndsWithAnEndpointThatNeverDoes) {
    struct Row {
        const char* name;
        Answer answer;
        std::size_t asked;
    };
    const std::vector<Row> rows{
        {"flag without meaning", Part(1, 1, 3, Sensor(1)), 16},
        {"another flag without meaning", Part(0, 0, 6, {}), 16},
        {"no flag at all", Good(), 16},
        {"empty parts", Part(1, 1, 0, {}), 16},
        {"endless record", Part(1, 1, 0, Bytes(1000, 1)), 66},
        {"small parts", Part(1, 1, 0, {1}), 8193},
    };
    for (const auto& row : rows) {
        const CapturedLog log;
        WalkedEndpoint endpoint;
        endpoint.transport.respond = [&](const Bytes&) { return row.answer; };
        EXPECT_EQ(endpoint.cmds.GetPDR(), 1) << row.name;
        EXPECT_EQ(endpoint.Asked(), row.asked) << row.name;
        EXPECT_EQ(log.Messages(1).size(), 1U) << row.name;
    }
}

/** A repository of sensors 1 to size whose last record leads to another one instead of to none. */
TEST(PdrWalk, EndsWhereTheLastRecordLeadsBack) {
    struct Row {
        const char* name;
        std::uint32_t size, lastLeadsTo, claimed;
        std::size_t asked;
        int status;
    };
    for (const auto& row :
         {Row{"to the first", 40, 1, 40, 40, 0}, Row{"into the middle", 40, 7, 40, 40, 0},
          Row{"to itself", 40, 40, 40, 40, 0}, Row{"only one", 1, 1, 1, 1, 0},
          Row{"more than counted", 40, 1, 3, 40, 0}, Row{"none counted", 40, 1, 0, 56, 1},
          Row{"far more counted", 40, 1, ~0U, 56, 1}, Row{"one more counted", 40, 1, 41, 56, 1},
          Row{"as many as it has, all but the first out of reach", 1, 1, 40, 17, 1}}) {
        WalkedEndpoint endpoint;
        endpoint.Data().iRecordCount = row.claimed;
        endpoint.transport.respond = [&](const Bytes& request) {
            const std::uint32_t asked = std::max<std::uint32_t>(1, request[3]);
            Bytes record = Sensor(static_cast<std::uint16_t>(asked));
            record[0] = static_cast<std::uint8_t>(asked); // the handle in its header
            return Whole(asked == row.size ? row.lastLeadsTo : asked + 1, record);
        };
        EXPECT_EQ(endpoint.cmds.GetPDR(), row.status) << row.name;
        EXPECT_EQ(endpoint.Asked(), row.asked) << row.name;
        if (row.status == 0) {
            EXPECT_EQ(endpoint.cmds.GetAllSensorIDs().size(), row.size) << row.name;
        }
    }
}

TEST(PdrWalk, GoesOnWhereAHandleComesAgainTooEarly) {
    // In the second row the handle is only that of a header, and no other header is right either.
    for (const auto& [claimed, second] : {std::pair{3U, 1U}, {2U, 5U}}) {
        WalkedEndpoint endpoint;
        endpoint.Data().iRecordCount = claimed;
        endpoint.Answers({Whole(second, Sensor(1)), Whole(1, Sensor(2)), Whole(0, Sensor(3))});
        EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
        EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), (Ids{1, 2, 3})) << claimed;
    }
}

TEST(PdrWalk, EndsWhereNewRecordsNeverEnd) {
    struct Row {
        const char* name;
        Bytes record;
        std::size_t asked;
    };
    for (const auto& row :
         {Row{"sensors", Sensor(1), 8193}, Row{"large records", Pdr(3, Bytes(1000, 1)), 1039},
          Row{"empty records", {}, 8193}}) {
        WalkedEndpoint endpoint;
        endpoint.Data().iRecordCount = 2;
        std::uint32_t handle = 100;
        endpoint.transport.respond = [&](const Bytes&) { return Whole(++handle, row.record); };
        EXPECT_EQ(endpoint.cmds.GetPDR(), 1) << row.name;
        EXPECT_EQ(endpoint.Asked(), row.asked) << row.name;
    }
}

TEST(PdrWalk, EmptyRecordsCostNoOther) {
    WalkedEndpoint endpoint;
    std::uint32_t sent = 0;
    endpoint.transport.respond = [&](const Bytes&) {
        return ++sent <= 20 ? Whole(sent, {}) : Whole(0, Sensor(6));
    };
    EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
    EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), Ids{6});
}

TEST(PdrWalk, OneStrayFlagCostsOneRequest) {
    WalkedEndpoint endpoint;
    endpoint.Answers({Whole(8, Sensor(1)), Part(99, 77, 3, Sensor(3)), Whole(0, Sensor(2))});
    EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
    EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), (Ids{1, 2}));
    EXPECT_EQ(Slice(endpoint.transport.requests[2], 1, 16),
              Slice(endpoint.transport.requests[1], 1, 16));
}

} // namespace
