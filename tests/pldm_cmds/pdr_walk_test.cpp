// SPDX-License-Identifier: Apache-2.0
/** When the repository is read, and how its records are put together. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include "common/byte_reader.hpp"

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
                    .Add(std::uint16_t{0xFFFF}) // response count, which is not read
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
    explicit WalkedEndpoint(std::uint32_t records = 2) {
        Data().iLargestRecordSize = 2000;
        Data().iRecordCount = records;
    }

    /** Record handle, transfer handle, operation and change number of each request. */
    std::string Positions() const {
        std::string text;
        for (const auto& request : transport.requests) {
            ByteReader reader(request);
            text += std::to_string(reader.At<std::uint32_t>(3)) + '.' +
                    std::to_string(reader.At<std::uint32_t>(7)) + '.' +
                    std::to_string(reader.At<std::uint8_t>(11)) + '.' +
                    std::to_string(reader.At<std::uint16_t>(14)) + ' ';
        }
        return text;
    }
};

TEST(PdrWalk, PutsRecordsTogether) {
    struct Row {
        const char* positions;
        Ids sensors;
        std::vector<Answer> answers;
        std::uint32_t records = 2;
        int status = 0;
    };
    const Bytes record = Pdr(21, Slice(Sensor(4), 10, Sensor(4).size()), 9);
    const std::vector<Row> rows{
        {"0.0.1.0 0.17.0.9 0.34.0.9 9.0.1.0 ",
         {4, 5},
         {Part(0, 17, 1, Slice(record, 0, 20)), Part(0, 34, 0, Slice(record, 20, 30)),
          Part(9, 51, 4, Slice(record, 30, record.size())), Whole(0, Sensor(5))}},
        // A whole record forgets parts before it.
        {"0.0.1.0 0.1.0.65535 ", {6}, {Part(0, 1, 1, Bytes(50, 0xFF)), Whole(0, Sensor(6))}},
        // Other types, and no type.
        {"0.0.1.0 1.0.1.0 2.0.1.0 3.0.1.0 ",
         {1},
         {Whole(1, Pdr(3, {1})), Whole(2, Pdr(200, {})), Whole(3, {}), Whole(0, Sensor(1))}},
        {"0.0.1.0 4.0.1.0 ", {1}, {Whole(4, Sensor(1)), Reply(0x82)}, 2, 1},
        // A handle comes again too early; the second one is only that of a header, and no other
        // header is right either.
        {"0.0.1.0 1.0.1.0 1.0.1.0 ",
         {1, 2, 3},
         {Whole(1, Sensor(1)), Whole(1, Sensor(2)), Whole(0, Sensor(3))},
         3},
        {"0.0.1.0 5.0.1.0 1.0.1.0 ",
         {1, 2, 3},
         {Whole(5, Sensor(1)), Whole(1, Sensor(2)), Whole(0, Sensor(3))}},
        // A stray flag costs one request.
        {"0.0.1.0 8.0.1.0 8.0.1.0 ",
         {1, 2},
         {Whole(8, Sensor(1)), Part(99, 77, 3, Sensor(3)), Whole(0, Sensor(2))}},
    };
    for (const auto& row : rows) {
        WalkedEndpoint endpoint(row.records);
        endpoint.transport.answers.assign(row.answers.begin(), row.answers.end());
        EXPECT_EQ(endpoint.cmds.GetPDR(), row.status);
        EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), row.sensors);
        EXPECT_EQ(endpoint.Data().numericSensors.at(0)->lowerThresholdFatal, -60);
        EXPECT_EQ(endpoint.Positions(), row.positions);
    }
}

TEST(PdrWalk, CountsModulo256AndUsesEverything) {
    struct Row {
        std::uint32_t expected, delivered, empty;
        const char* message;
    };
    for (const auto& row :
         {Row{300, 300, 0, "Mismatch in expected PDR Count (300) and received PDR Count(44)\n"},
          Row{12, 11, 0, "Mismatch in expected PDR Count (12) and received PDR Count(11)\n"},
          Row{11, 11, 0, ""}, Row{21, 21, 20, ""}}) {
        const CapturedLog log;
        WalkedEndpoint endpoint(row.expected);
        for (std::uint16_t sent = 1; sent <= row.delivered; ++sent) {
            endpoint.Answers({Whole(sent < row.delivered ? sent : 0,
                                    sent <= row.empty ? Bytes() : Sensor(sent))});
        }
        EXPECT_EQ(endpoint.cmds.GetPDR(), 0);
        EXPECT_EQ(endpoint.cmds.GetAllSensorIDs().size(), row.delivered - row.empty);
        const auto messages = log.Messages(1);
        EXPECT_EQ(messages.empty() ? "" : messages.front(), row.message);
    }
}

TEST(PdrWalk, EndsWithAnEndpointThatNeverDoes) {
    struct Row {
        const char* name;
        Answer answer; ///< to which new handles of records are written
        std::size_t asked;
    };
    const std::vector<Row> rows{
        {"flag without meaning", Part(1, 1, 3, Sensor(1)), 16},
        {"another flag without meaning", Part(0, 0, 6, {}), 16},
        {"no flag at all", Good(Bytes(4, 0)), 16},
        {"empty parts", Part(1, 1, 0, {}), 16},
        {"endless record", Part(1, 1, 0, Bytes(1000, 1)), 66},
        {"small parts", Part(1, 1, 0, {1}), 8193},
        {"sensors", Whole(1, Sensor(1)), 8193},
        {"large records", Whole(1, Pdr(3, Bytes(1000, 1))), 1039},
        {"empty records", Whole(1, {}), 8193},
    };
    for (const auto& row : rows) {
        const CapturedLog log;
        WalkedEndpoint endpoint;
        std::uint16_t handle = 100;
        endpoint.transport.respond = [&](const Bytes&) {
            Answer answer = row.answer;
            std::ranges::copy(Bytes().Add(++handle), answer.bytes.begin() + 4);
            return answer;
        };
        EXPECT_EQ(endpoint.cmds.GetPDR(), 1) << row.name;
        EXPECT_EQ(endpoint.Asked(), row.asked) << row.name;
        EXPECT_EQ(log.Messages(1), std::vector<std::string>{"PDR walk without end for EID = 9\n"})
            << row.name;
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
        WalkedEndpoint endpoint(row.claimed);
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

} // namespace
