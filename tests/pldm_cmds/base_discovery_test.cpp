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

using Operation = std::function<int(PLDMCmds&)>;

struct RequestCase {
    const char* name;
    Operation run;
    Bytes request; ///< as first request of an object, with instance id 1
    std::uint32_t capacity;
    std::size_t buffer;
};

class RequestBytes : public testing::TestWithParam<RequestCase> {};

TEST_P(RequestBytes, AreThoseOfTheCommand) {
    const auto& expected = GetParam();
    ScriptedEndpoint endpoint;
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

    expected.run(endpoint.cmds);

    ASSERT_EQ(endpoint.Asked(), 1U);
    EXPECT_EQ(endpoint.transport.requests[0], expected.request);
    EXPECT_EQ(endpoint.transport.commands[0], expected.request[2]);
    EXPECT_EQ(endpoint.transport.capacities[0], expected.capacity);
    EXPECT_EQ(endpoint.transport.buffers[0], expected.buffer);
}

int Poll(PLDMCmds& cmds) {
    ReadingMap readings;
    return cmds.GetAllSensorReading(readings);
}

int PollStates(PLDMCmds& cmds) {
    StateChangeMap changes;
    return cmds.GetStateSensorReading(changes);
}

INSTANTIATE_TEST_SUITE_P(
    All, RequestBytes,
    testing::Values(
        RequestCase{"GetTID", &PLDMCmds::GetTID, {0x81, 0, 2}, 14, 15},
        RequestCase{"GetPLDMVersion",
                    [](PLDMCmds& cmds) { return cmds.GetPLDMVersionForType(4); },
                    {0x81, 0, 3, 0, 0, 0, 0, 1, 4},
                    242,
                    243},
        RequestCase{"GetPLDMTypes", &PLDMCmds::GetPLDMTypes, {0x81, 0, 4}, 21, 22},
        RequestCase{"GetPLDMCommands",
                    [](PLDMCmds& cmds) { return cmds.GetSupportedPLDMCmds(2, v120); },
                    {0x81, 0, 5, 2, 0x00, 0xF0, 0xF2, 0xF1},
                    45,
                    46},
        RequestCase{"SelectPLDMVersion",
                    [](PLDMCmds& cmds) { return cmds.SelectPLDMVersion(2, v122); },
                    {0x81, 0, 6, 2, 0x00, 0xF2, 0xF2, 0xF1},
                    13,
                    14},
        RequestCase{"SetNumericSensorEnable",
                    &PLDMCmds::SetNumericeSensorEnable,
                    {0x81, 2, 0x10, 0x34, 0x12, 0, 0},
                    13,
                    14},
        RequestCase{"GetSensorReading", &Poll, {0x81, 2, 0x11, 0x34, 0x12, 0}, 23, 24},
        RequestCase{
            "GetStateSensorReadings", &PollStates, {0x81, 2, 0x21, 0x78, 0x56, 0, 0}, 46, 47},
        RequestCase{"GetPDRRepositoryInfo",
                    [](PLDMCmds& cmds) { return cmds.GetPDRRepositoryInfo(0); },
                    {0x81, 2, 0x50},
                    53,
                    54},
        // The largest record size is believed up to 64 KiB; its low 16 bits are asked for.
        RequestCase{"GetPDR",
                    &PLDMCmds::GetPDR,
                    {0x81, 2, 0x51, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0x03, 0x02, 0, 0},
                    65536 + 34,
                    65536 + 35},
        RequestCase{"GetFRURecordTableMetadata", &PLDMCmds::GetFRUMetaData, {0x81, 4, 1}, 30, 31},
        RequestCase{"GetFRURecordTable",
                    &PLDMCmds::GetFRUContents,
                    {0x81, 4, 2, 1, 0, 0, 0, 1},
                    0x40 + 9,
                    0x40 + 9},
        RequestCase{"GetFirmwareParameters",
                    [](PLDMCmds& cmds) { return static_cast<int>(cmds.GetFWParameters().size()); },
                    {0x81, 5, 2},
                    1024,
                    1025}),
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

struct FailureCase {
    const char* name;
    Operation run;
    const char* sendMessage;
    const char* codeMessage; ///< for completion code 2
    int codeLevel;
};

class Failures : public testing::TestWithParam<FailureCase> {};

TEST_P(Failures, AreLoggedInTheirWordsAndGiveOne) {
    const auto& expected = GetParam();
    const CapturedLog log;
    ScriptedEndpoint endpoint;
    endpoint.Supports(0).Supports(4);
    auto sensor = std::make_shared<__Temp_sensors>();
    sensor->sensorInit = 2;
    endpoint.Data().numericSensors = {sensor};
    endpoint.Answers({NoAnswer(3), Reply(2)});

    EXPECT_EQ(expected.run(endpoint.cmds), 1);
    EXPECT_EQ(log.Count(1, expected.sendMessage), 1);
    EXPECT_EQ(expected.run(endpoint.cmds), 1);
    EXPECT_EQ(log.Count(expected.codeLevel, expected.codeMessage), 1);
    EXPECT_EQ(endpoint.Asked(), 2U);
}

INSTANTIATE_TEST_SUITE_P(
    All, Failures,
    testing::Values(
        FailureCase{"GetTID", &PLDMCmds::GetTID, "Send failed for EID = 9\n",
                    "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"GetPLDMTypes", &PLDMCmds::GetPLDMTypes, "Send failed for EID = 9\n",
                    "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"GetPLDMVersions", [](PLDMCmds& cmds) { return cmds.GetPLDMVersions(0); },
                    "Send failed for EID = 9\n", "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"GetSupportedPLDMCmds",
                    [](PLDMCmds& cmds) { return cmds.GetSupportedPLDMCmds(0, v110); },
                    "Send failed for EID = 9\n", "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"SelectPLDMVersion",
                    [](PLDMCmds& cmds) { return cmds.SelectPLDMVersion(0, v110); },
                    "Failed for EID = 9\n", "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"SetNumericeSensorEnable", &PLDMCmds::SetNumericeSensorEnable,
                    "Send failed for EID = 9\n", "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"GetPDRRepositoryInfo",
                    [](PLDMCmds& cmds) { return cmds.GetPDRRepositoryInfo(1); },
                    "Failed for EID = 9\n", "Failed for EID = 9 and error code is 2\n", 1},
        FailureCase{"GetPDR", &PLDMCmds::GetPDR, "Failed for EID = 9\n",
                    "Failed for EID = 9 and error code = 2\n", 1},
        FailureCase{"GetFRUMetaData", &PLDMCmds::GetFRUMetaData, "Send failed for EID = 9\n",
                    "Failed for EID = 9 and error code = 2\n", 4},
        FailureCase{"GetFRUContents", &PLDMCmds::GetFRUContents, "Failed for EID = 9\n",
                    "Failed for EID = 9 and error code = 2\n", 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GetPLDMTypes, TakesEachBitAndKeepsKnownVersions) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {v120});
    endpoint.Answers({Good({0x35, 0, 0, 0, 0, 0, 0, 0x80})});

    EXPECT_EQ(endpoint.cmds.GetPLDMTypes(), 0);

    std::map<int, std::size_t> types;
    for (const auto& [type, versions] : endpoint.Data().supportedTypes) {
        types[type] = versions.size();
    }
    EXPECT_EQ(types, (std::map<int, std::size_t>{{0, 0}, {2, 1}, {4, 0}, {5, 0}, {63, 0}}));
}

TEST(GetPLDMTypes, ReadsWhatIsNotThereAsZero) {
    ScriptedEndpoint endpoint;
    endpoint.Answers({Good({0x01}), {.status = 0, .bytes = {}}});
    EXPECT_EQ(endpoint.cmds.GetPLDMTypes(), 0);
    EXPECT_EQ(endpoint.Data().supportedTypes.size(), 1U);
    EXPECT_EQ(endpoint.cmds.GetPLDMTypes(), 0);
    EXPECT_EQ(endpoint.Data().supportedTypes.size(), 1U);
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
        return Versions(1, 1, {request[8] == 0 ? ++next : v110});
    };
    EXPECT_EQ(endpoint.cmds.GetPLDMVersionForType(0), 1);
    EXPECT_EQ(VersionsOf(endpoint, 0).size(), 16U);
    EXPECT_EQ(endpoint.cmds.GetPLDMVersionForType(2), 1);
    EXPECT_LT(endpoint.Asked(), 40U);
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
    field[0] = 0x34;  // 2, 4, 5
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
    EXPECT_EQ(codes, (std::vector<int>{2, 3, 4, 5, 255}));
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

TEST(GetTID, StoresTheId) {
    ScriptedEndpoint endpoint;
    endpoint.Answers({Good({0x2A})});
    EXPECT_EQ(endpoint.cmds.GetTID(), 0);
    EXPECT_EQ(endpoint.Data().TID, 0x2A);
}

TEST(GetPLDMCommandsStatus, MapsCompletionCodes) {
    struct Row {
        std::uint32_t code;
        int result;
        bool thrown;
        const char* message;
    };
    const std::vector<Row> rows{
        {0, 0, false, nullptr},
        {1, 11, true, "CMD failed for EID = 9\n"},
        {4, 12, true, "Device is not ready for EID = 9\n"},
        {129, 12, true, "Device is not ready for EID = 9\n"},
        {5, 5, false, nullptr},
        {128, 10, false, "Invalid Sensor ID = 77\n"},
        {2, 1, false, "Failed for EID = 9 and error = 2\n"},
        {255, 1, false, "Failed for EID = 9 and error = 255\n"},
    };
    ScriptedEndpoint endpoint;
    for (const auto& row : rows) {
        const CapturedLog log;
        int result = -1;
        bool thrown = false;
        try {
            result = endpoint.cmds.GetPLDMCommandsStatus(row.code, 77);
        } catch (const VantricStatus& status) {
            thrown = true;
            result = ToInt(status);
        }
        EXPECT_EQ(result, row.result) << row.code;
        EXPECT_EQ(thrown, row.thrown) << row.code;
        const auto messages = log.Messages(1);
        EXPECT_EQ(messages,
                  row.message ? std::vector<std::string>{row.message} : std::vector<std::string>{});
    }
}

} // namespace
