/** The commands of simctl against a running simulator. */

#include "connection.hpp"
#include "payload.hpp"
#include "pldm_cmds/bytes.hpp"
#include "simulator/simulator_process.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace vantric::test {

namespace {

constexpr const char* scenario =
    "cards:\n"
    "  - slot: 3\n"
    "    kind: nic\n"
    "    tid: 5\n"
    "    endpoints: [{eid: 9}, {eid: 10, medium: i2c, tid: 6}]\n"
    "    sensors:\n"
    "      - {id: 1, value: 30, thresholds: {warning-high: 60}}\n"
    "      - {id: 2, value: 20}\n"
    "    state-sensors: [{id: 7, members: [{set: health}, {set: link}]}]\n"
    "  - {slot: 4, kind: cxl-memory, plugged: false, endpoints: [{eid: 11}]}\n";

class Simulator : public testing::Test {
protected:
    /** One PLDM request past the platform libraries: the answer from the completion code on, or ""
     *  if none came. */
    std::string Ask(std::uint8_t eid, std::string_view request) const {
        auto connection = simulator_link::Connection::Open(simulator.Socket());
        const auto bytes = Bytes::FromHex(request);
        const std::uint8_t pldm = 1;
        const simulator_link::Frame frame{simulator_link::FrameKind::Request, 5,
                                          simulator_link::PayloadWriter()
                                              .Write(eid)
                                              .Write(pldm)
                                              .Write(std::span<const std::uint8_t>(bytes))
                                              .Finish()};
        if (!connection || !connection->Send(frame) || !connection->Receive()) {
            return "no simulator";
        }
        const auto response = connection->Receive(std::chrono::milliseconds(500));
        constexpr std::size_t wordsAndHeader = 12 + 3;
        if (!response || response->payload.size() < wordsAndHeader) {
            return "";
        }
        return HexText(std::span(response->payload).subspan(wordsAndHeader));
    }

    SimulatorProcess simulator{scenario};
};

TEST_F(Simulator, AnswersAsItsCommandsSay) {
    const char* const reading = "81 02 11 02 00 00";
    const char* const states = "81 02 21 07 00 00 00";
    const char* const pdr = "81 02 51 00 00 00 00 00 00 00 00 01 ff 00 00 00";
    const char* const lastPdr = "81 02 51 03 00 00 00 00 00 00 00 01 ff 00 00 00";
    const std::string healthy = Ask(9, pdr);
    const std::string healthyLast = Ask(9, lastPdr);
    const struct {
        const char* command;
        const char* question;
        std::string answer;
    } rows[] = {
        {"set 9 2 30.5", reading, "00 03 00 00 01 00 01 1f 00"},
        {"release 9 2", reading, "00 03 00 00 01 00 01 14 00"},
        {"operational 9 2 failed unknown", reading, "00 03 04 00 00 01 00 14 00"},
        {"operational 9 2 enabled", reading, "00 03 00 00 01 00 01 14 00"},
        {"threshold 9 2 critical-high 19", reading, "00 03 00 00 09 01 09 14 00"},
        {"drop 9 2", reading, "80"},
        {"restore 9 2", reading, "00 03 00 00 09 00 09 14 00"},
        {"set-state 9 7 2 2", states, "00 02 00 01 01 01 00 02 01 02"},
        {"operational 9 7 1", states, "00 02 01 01 01 01 01 02 01 02"},
        {"fail 9 0x21", pdr, "21"},
        {"fail 9 4 2 0x50", "81 02 50", "04"},
        {"malform 9 truncate 10", pdr, healthy.substr(0, 20)},
        {"malform 9 extend 2", pdr, healthy + " a5 a5"},
        {"malform 9 flag 3", pdr, healthy.substr(0, 27) + "03" + healthy.substr(29)},
        {"malform 9 endless", lastPdr, "00 01 00 00 00" + healthyLast.substr(14)},
        {"malform 9 none", pdr, healthy},
        {"silence 9", pdr, ""},
        {"unsilence 9", pdr, healthy},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(0, simulator.Control(row.command).status) << row.command;
        EXPECT_EQ(row.answer, Ask(9, row.question)) << row.command;
    }
    simulator.Control("malform 9 garbage");
    const auto garbage = Ask(9, pdr);
    EXPECT_EQ(healthy.size(), garbage.size());
    EXPECT_NE(healthy, garbage);
}

TEST_F(Simulator, CountsAndListsAndWaits) {
    EXPECT_EQ("slot 3 nic\n"
              "  EID 9 vdm, 2 numeric and 1 state sensors, 3 PDRs\n"
              "  EID 10 i2c, 2 numeric and 1 state sensors, 3 PDRs\n"
              "slot 4 cxl-memory (pulled)\n"
              "  EID 11 vdm, 0 numeric and 0 state sensors, 0 PDRs\n",
              simulator.Control("list").text);
    EXPECT_EQ("00 06", Ask(10, "81 00 02")) << "its own key, and not the card's";
    EXPECT_EQ("EID 9: 0\nEID 10: 1\nEID 11: 0\n", simulator.Control("count").text);
    EXPECT_EQ("0 more requests answered by EID 9\n", simulator.Control("wait-requests 9 0").text);
    EXPECT_EQ((Outcome{1, "simctl: the simulator gave no answer in time\n"}),
              simulator.Control("wait-requests 9 1 0"));
}

TEST_F(Simulator, SaysWhatIsWrongWithACommand) {
    const std::pair<const char*, std::string> mistakes[] = {
        {"sett", "\"sett\" is no command; \"help\" lists them"},
        {"set", "an EID is missing (set EID SENSOR VALUE)"},
        {"set 9 1 hot", "\"hot\" is no good as a value (set EID SENSOR VALUE)"},
        {"set 9 3 1", "EID 9 has no numeric sensor 3 (set EID SENSOR VALUE)"},
        {"set 11 1 1", "no plugged card has EID 11 (set EID SENSOR VALUE)"},
        {"set 9 1 1 2", "\"2\" is too much (set EID SENSOR VALUE)"},
        {"set-state 9 7 3 1",
         "sensor 7 of EID 9 has members 1 to 2 (set-state EID SENSOR MEMBER STATE)"},
        {"malform 9 bend", "\"bend\" is no mode; the modes are truncate N, extend N, flag N, "
                           "garbage, endless and none (malform EID MODE [N])"},
        {"restore 9 1", "EID 9 has no dropped sensor 1 (restore EID SENSOR)"},
        {"threshold 9 1 high 3", "\"high\" is no threshold (threshold EID SENSOR NAME VALUE)"},
        {"pull 8", "no card belongs to slot 8 (pull SLOT [quietly])"},
        {"move 9 10", "EID 10 is taken (move EID NEW [quietly])"},
        {"fail 9 256", "\"256\" is no good as a completion code (fail EID CODE [TYPE COMMAND])"},
        {"host off", "the scenario doesn't say \"platform-services: true\" (host on|off)"},
    };
    for (const auto& [command, message] : mistakes) {
        EXPECT_EQ((Outcome{1, "simctl: " + message + "\n"}), simulator.Control(command));
    }
}

TEST_F(Simulator, EndsCleanlyAndTakesItsSocketAlong) {
    ASSERT_TRUE(std::filesystem::exists(simulator.Socket()));
    EXPECT_EQ(0, simulator.Stop());
    EXPECT_FALSE(std::filesystem::exists(simulator.Socket()));
    EXPECT_EQ((Outcome{1, "simctl: no simulator listens where SIMULATOR_SOCKET points to\n"}),
              simulator.Control("list"));
}

TEST_F(Simulator, SaysWhyItDoesNotStart) {
    EXPECT_EQ(
        (Outcome{1, "simulator: a simulator listens at " + simulator.Socket() + " already\n"}),
        RunSimulator(simulator.ScenarioPath()));
    EXPECT_EQ(0, simulator.Control("list").status) << "pushed aside";
    const TemporaryFolder folder;
    const auto path = folder.Write("s.yaml", "cards:\n  - {slot: 1}\n");
    EXPECT_EQ((Outcome{1, "simulator: " + path + ":2: \"kind\" is missing\n"}), RunSimulator(path));
}

TEST_F(Simulator, SurvivesNonsenseOnItsSocket) {
    auto connection = simulator_link::Connection::Open(simulator.Socket());
    ASSERT_TRUE(connection);
    for (int kind = 0; kind < 256; ++kind) {
        connection->Send({static_cast<simulator_link::FrameKind>(kind), 1, {}});
        connection->Send({static_cast<simulator_link::FrameKind>(kind), 1, {0xFF, 0x01, 0x80}});
    }
    EXPECT_EQ(0, simulator.Control("list").status);
}

} // namespace

} // namespace vantric::test
