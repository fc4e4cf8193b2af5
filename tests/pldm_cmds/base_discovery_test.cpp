// SPDX-License-Identifier: Apache-2.0
/** The command frame and the base commands: bytes that are sent, and what becomes of the answers.
 */
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

#include <map>

using namespace vantric;

namespace {

constexpr std::uint32_t v110 = 0xF1F1F000;
constexpr std::uint32_t v120 = 0xF1F2F000;
constexpr std::uint32_t v122 = 0xF1F2F200;
constexpr std::uint32_t v130 = 0xF1F3F000;

/** An answer to GetPLDMVersion: versions, then a checksum. */
Answer Versions(std::uint32_t nextHandle, std::uint8_t flag,
                std::initializer_list<std::uint32_t> words) {
    Bytes data;
    data.Add(nextHandle).Add(flag);
    for (const auto word : words) {
        data.Add(word);
    }
    return Good(data.Add(std::uint32_t{0xC0FFEE00}));
}

std::vector<std::uint32_t> VersionsOf(ScriptedEndpoint& endpoint, std::uint8_t type) {
    std::vector<std::uint32_t> versions;
    for (const auto& [version, commands] : endpoint.Data().supportedTypes[type]) {
        versions.push_back(version);
    }
    std::ranges::sort(versions);
    return versions;
}

int Poll(PLDMCmds& cmds) {
    ReadingMap readings;
    return cmds.GetAllSensorReading(readings);
}

int PollStates(PLDMCmds& cmds) {
    StateChangeMap changes;
    return cmds.GetStateSensorReading(changes);
}

int ReadFirmware(PLDMCmds& cmds) {
    return cmds.GetFWParameters().empty() ? 1 : 0;
}

/** One command: what it sends as first request of an object, and how it fails. */
struct CommandCase {
    const char* name;
    std::function<int(PLDMCmds&)> run;
    const char* request;
    std::uint32_t capacity;
    std::string sendMessage; ///< for a status 3 of the transport
    std::string codeMessage; ///< for completion code 2
    int codeLevel = 1;
    int sendStatus = 1;
    std::size_t spare = 1; ///< bytes by which the buffer is longer
};

class Commands : public testing::TestWithParam<CommandCase> {
protected:
    Commands() {
        endpoint.Supports(0).Supports(4).Supports(5);
        auto sensor = std::make_shared<__Temp_sensors>();
        sensor->sensorID = 0x1234;
        sensor->sensorInit = 2;
        endpoint.Data().numericSensors = {sensor};
        auto state = std::make_shared<_StateSensors>();
        state->sensorId = 0x5678;
        endpoint.Data().stateSensors = {state};
        endpoint.Data().iLargestRecordSize = 0x10203;
        endpoint.Data().fruTableLength = 0x10040;
    }

    ScriptedEndpoint endpoint;
};

TEST_P(Commands, SendTheirBytesAndFailInTheirWords) {
    const auto& command = GetParam();
    const CapturedLog log;
    endpoint.Answers({NoAnswer(3), Reply(2)});

    EXPECT_EQ(command.run(endpoint.cmds), command.sendStatus);
    EXPECT_EQ(log.Messages(1), std::vector{command.sendMessage});
    EXPECT_EQ(command.run(endpoint.cmds), 1);
    EXPECT_EQ(log.Count(command.codeLevel, command.codeMessage), 1);

    const auto& transport = endpoint.transport;
    ASSERT_EQ(transport.requests.size(), 2U);
    const auto request = Bytes::FromHex(command.request);
    EXPECT_EQ(transport.requests[0], request);
    EXPECT_EQ(transport.commands[0], request[2]);
    EXPECT_EQ(transport.capacities[0], command.capacity);
    EXPECT_EQ(transport.buffers[0], command.capacity + command.spare);
}

const std::string sendFailed = "Send failed for EID = 9\n";
const std::string failed = "Failed for EID = 9\n";
const std::string withStatus = "Send failed for EID = 9 and status = 3\n";
const std::string errorCode = "Failed for EID = 9 and error code = 2\n";

const std::vector<CommandCase> commandCases{
    {"GetTID", &PLDMCmds::GetTID, "81 00 02", 14, sendFailed, errorCode},
    {"GetPLDMVersion", [](auto& cmds) { return cmds.GetPLDMVersions(4); },
     "81 00 03 00 00 00 00 01 04", 242, sendFailed, errorCode},
    {"GetPLDMTypes", &PLDMCmds::GetPLDMTypes, "81 00 04", 21, sendFailed, errorCode},
    {"GetPLDMCommands", [](auto& cmds) { return cmds.GetSupportedPLDMCmds(2, v120); },
     "81 00 05 02 00 F0 F2 F1", 45, sendFailed, errorCode},
    {"SelectPLDMVersion", [](auto& cmds) { return cmds.SelectPLDMVersion(2, v122); },
     "81 00 06 02 00 F2 F2 F1", 13, failed, errorCode},
    {"SetNumericSensorEnable", &PLDMCmds::SetNumericeSensorEnable, "81 02 10 34 12 00 00", 13,
     sendFailed, errorCode},
    {"GetSensorReading", &Poll, "81 02 11 34 12 00", 23, withStatus,
     "Failed for EID = 9 and error = 2\n", 1, 3},
    {"GetStateSensorReadings", &PollStates, "81 02 21 78 56 00 00", 46, withStatus, errorCode, 1,
     3},
    {"GetPDRRepositoryInfo", [](auto& cmds) { return cmds.GetPDRRepositoryInfo(0); }, "81 02 50",
     53, failed, "Failed for EID = 9 and error code is 2\n"},
    // The largest record size is believed up to 64 KiB; its low 16 bits are asked for.
    {"GetPDR", &PLDMCmds::GetPDR, "81 02 51 00 00 00 00 00 00 00 00 01 03 02 00 00", 65546 + 34,
     failed, errorCode},
    {"GetFRURecordTableMetadata", &PLDMCmds::GetFRUMetaData, "81 04 01", 30, sendFailed, errorCode,
     4},
    {"GetFRURecordTable", &PLDMCmds::GetFRUContents, "81 04 02 01 00 00 00 01", 0x40 + 9, failed,
     errorCode, 1, 1, 0},
    {"GetFirmwareParameters", &ReadFirmware, "81 05 02", 1024, sendFailed, errorCode},
};

INSTANTIATE_TEST_SUITE_P(All, Commands, testing::ValuesIn(commandCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(InstanceId, CountsFromOneModulo32) {
    ScriptedEndpoint endpoint;
    for (int i = 0; i < 33; ++i) {
        endpoint.cmds.GetTID();
    }
    EXPECT_EQ(endpoint.transport.requests[0][0], 0x81);
    EXPECT_EQ(endpoint.transport.requests[30][0], 0x9F);
    EXPECT_EQ(endpoint.transport.requests[31][0], 0x80);
    EXPECT_EQ(endpoint.transport.requests[32][0], 0x81);
}

TEST(GetPLDMTypes, TakesEachBitAndKeepsKnownVersions) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {v120});
    endpoint.Answers({Good({0x05}), Good({0x35, 0, 0, 0, 0, 0, 0, 0x80})});

    EXPECT_EQ(endpoint.cmds.GetPLDMTypes(), 0);
    EXPECT_EQ(endpoint.Data().supportedTypes.size(), 2U) << "what isn't there reads as 0";
    EXPECT_EQ(endpoint.cmds.GetPLDMTypes(), 0);

    std::map<int, std::size_t> types;
    for (const auto& [type, versions] : endpoint.Data().supportedTypes) {
        types[type] = versions.size();
    }
    EXPECT_EQ(types, (std::map<int, std::size_t>{{0, 0}, {2, 1}, {4, 0}, {5, 0}, {63, 0}}));
}

TEST(GetPLDMVersion, FollowsTheHandleAndDropsTheChecksum) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2);
    endpoint.Answers(
        {Versions(0x11223344, 1, {v110, 0, v120}), Versions(7, 2, {v122}), Versions(7, 4, {v130})});

    EXPECT_EQ(endpoint.cmds.GetPLDMVersionForType(2), 0);

    EXPECT_EQ(VersionsOf(endpoint, 2), (std::vector<std::uint32_t>{v110, v120, v122, v130}));
    ASSERT_EQ(endpoint.Asked(), 3U);
    EXPECT_EQ(endpoint.transport.requests[1], (Bytes{0x82, 0, 3, 0x44, 0x33, 0x22, 0x11, 0, 2}));
    EXPECT_EQ(endpoint.transport.requests[2], (Bytes{0x83, 0, 3, 7, 0, 0, 0, 0, 2}));
}

TEST(GetPLDMVersion, NeedsEightBytesForOneVersion) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0);
    endpoint.Answers({Versions(0, 5, {v110}), Versions(0, 5, {}), Good({1, 0})});
    endpoint.cmds.GetPLDMVersionForType(0);
    EXPECT_EQ(VersionsOf(endpoint, 0), std::vector<std::uint32_t>{v110});
    for (int i = 0; i < 2; ++i) {
        endpoint.Data().supportedTypes[0].clear();
        EXPECT_EQ(endpoint.cmds.GetPLDMVersionForType(0), 0);
        EXPECT_TRUE(VersionsOf(endpoint, 0).empty());
    }
}

TEST(GetPLDMVersion, EndsWhenTheListNeverDoes) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0).Supports(2);
    std::uint32_t next = v110;
    endpoint.transport.respond = [&](const Bytes& request) {
        return request[8] == 0 ? Versions(1, 1, {++next, ++next}) : Versions(1, 1, {v110});
    };
    EXPECT_EQ(endpoint.cmds.GetPLDMVersionForType(0), 1);
    EXPECT_EQ(VersionsOf(endpoint, 0).size(), 64U);
    EXPECT_EQ(endpoint.Asked(), 33U);
    EXPECT_EQ(endpoint.cmds.GetPLDMVersionForType(2), 1);
    EXPECT_LE(endpoint.Asked(), 33U + 65U);
}

TEST(GetPLDMVersions, AsksForTheTypesInUseAndForgivesFailure) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0).Supports(2).Supports(3).Supports(5);
    endpoint.Answers({Reply(5), Versions(0, 5, {v120}), NoAnswer(3)});
    EXPECT_EQ(endpoint.cmds.GetPLDMVersions(255), 0);
    std::vector<int> asked;
    for (const auto& request : endpoint.transport.requests) {
        asked.push_back(request[8]);
    }
    EXPECT_EQ(asked, (std::vector<int>{0, 2, 5}));
    EXPECT_EQ(VersionsOf(endpoint, 2), std::vector<std::uint32_t>{v120});
    EXPECT_EQ(endpoint.cmds.GetPLDMVersions(4), 1) << "a type that isn't there";
    EXPECT_EQ(endpoint.Asked(), 3U);
}

TEST(GetSupportedCmds, SetsOneByteForEachBit) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0, {v110});
    Bytes field(33, 0);
    field[0] = 0x35;  // 0, 2, 4, 5
    field[31] = 0x80; // 255
    field[32] = 0x08; // 259, which is 3
    endpoint.Answers({Good(field), Good()});

    EXPECT_EQ(endpoint.cmds.GetSupportedCmds(0), 0);
    EXPECT_EQ(endpoint.cmds.GetSupportedCmds(0), 0) << "no field at all changes nothing";

    std::vector<int> codes;
    const auto& commands = endpoint.Data().supportedTypes[0][v110];
    for (int code = 0; code < 256; ++code) {
        if (commands[code] == 1) {
            codes.push_back(code);
        }
    }
    EXPECT_EQ(codes, (std::vector<int>{0, 2, 3, 4, 5, 255}));
}

TEST(GetSupportedCmds, StopsAtTheFirstFailure) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0, {v110}).Supports(2, {v120, v130}).Supports(4, {v110});
    endpoint.Answers({Good({1}), Reply(1)});
    EXPECT_EQ(endpoint.cmds.GetSupportedCmds(255), 1);
    EXPECT_EQ(endpoint.Asked(), 2U);
    EXPECT_EQ(endpoint.cmds.GetSupportedCmds(9), 0) << "a type that isn't there";
}

TEST(SelectPLDMVersions, SendsEveryVersionThatIsRecentEnough) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0, {0xF1F0F000, v110})
        .Supports(2, {v120, v122, v130})
        .Supports(4, {0xF1F0F000, 0xF1F0F100})
        .Supports(5, {v110, v120})
        .Supports(3, {v130});
    EXPECT_EQ(endpoint.cmds.SelectPLDMVersions(), 0) << "failures don't count";

    std::vector<Bytes> selected;
    for (const auto& request : endpoint.transport.requests) {
        selected.emplace_back(request.begin() + 2, request.end());
    }
    std::ranges::sort(selected);
    EXPECT_EQ(selected, (std::vector<Bytes>{{6, 0, 0x00, 0xF0, 0xF1, 0xF1},
                                            {6, 2, 0x00, 0xF0, 0xF3, 0xF1},
                                            {6, 2, 0x00, 0xF2, 0xF2, 0xF1},
                                            {6, 4, 0x00, 0xF1, 0xF0, 0xF1},
                                            {6, 5, 0x00, 0xF0, 0xF2, 0xF1}}));
}

} // namespace
