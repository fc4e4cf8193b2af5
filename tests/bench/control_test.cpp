/** The commands of benchctl against a running bench. */

#include "bench/bench_process.hpp"
#include "bench/bytes.hpp"
#include "connection.hpp"
#include "payload.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr const char* scenario =
    "cards:\n"
    "  - slot: 3\n"
    "    kind: nic\n"
    "    endpoints: [{eid: 9}, {eid: 10, medium: i2c}]\n"
    "    sensors:\n"
    "      - {id: 1, value: {ramp: {from: 100, to: 200, seconds: 1}}, "
    "thresholds: {warning-high: 60}}\n"
    "      - {id: 2, value: 20}\n"
    "    state-sensors: [{id: 7, members: [{set: health}, {set: link}]}]\n"
    "  - {slot: 4, kind: cxl-memory, plugged: false, endpoints: [{eid: 11}]}\n";

/** One PLDM request past the platform libraries: the answer from the completion code on, or "" if
 *  none came. */
std::string Ask(const test::BenchProcess& bench, std::uint8_t eid, std::string_view request) {
    auto connection = benchlink::Connection::Open(bench.Socket());
    const auto bytes = test::Bytes(request);
    const std::uint8_t pldm = 1;
    const benchlink::Frame frame{benchlink::FrameKind::Request, 5,
                                 benchlink::PayloadWriter()
                                     .Write(eid)
                                     .Write(pldm)
                                     .Write(std::span<const std::uint8_t>(bytes))
                                     .Finish()};
    if (!connection || !connection->Send(frame) || !connection->Receive()) {
        return "no bench";
    }
    const auto response = connection->Receive(std::chrono::milliseconds(500));
    constexpr std::size_t wordsAndHeader = 12 + 3;
    if (!response || response->payload.size() < wordsAndHeader) {
        return "";
    }
    return test::Text(std::span(response->payload).subspan(wordsAndHeader));
}

TEST(Control, ChangesValuesAndStates) {
    const test::BenchProcess bench(scenario);
    EXPECT_EQ("sensor 1 of EID 9 stands at 30.5\n",
              bench.Control({"set", "9", "1", "30.5"}).output);
    EXPECT_EQ("00 03 00 00 01 00 01 1f 00", Ask(bench, 9, "81 02 11 01 00 00"));
    EXPECT_EQ("sensor 1 of EID 9 moves as described\n",
              bench.Control({"release", "9", "1"}).output);
    EXPECT_EQ("00 03 00 00 08 01 08", Ask(bench, 9, "81 02 11 01 00 00").substr(0, 20));
    EXPECT_EQ("sensor 2 of EID 9 has operational state 4\n",
              bench.Control({"operational", "9", "2", "failed", "unknown"}).output);
    EXPECT_EQ("00 03 04 00 00 00 00 14 00", Ask(bench, 9, "81 02 11 02 00 00"));
    EXPECT_EQ("member 2 of sensor 7 of EID 9 is in state 2\n",
              bench.Control({"set-state", "9", "7", "2", "2"}).output);
    EXPECT_EQ(0, bench.Control({"operational", "9", "7", "1"}).status);
    EXPECT_EQ("00 02 01 01 01 01 01 02 01 02", Ask(bench, 9, "81 02 21 07 00 00 00"));
    EXPECT_EQ("00 03 00 00 01 00 01 14 00", Ask(bench, 10, "81 02 11 02 00 00"));
}

TEST(Control, ChangesTheRepository) {
    const test::BenchProcess bench(scenario);
    const auto info = Ask(bench, 9, "81 02 50");
    EXPECT_EQ(0, bench.Control({"touch", "9"}).status);
    const auto touched = Ask(bench, 9, "81 02 50");
    // Only the microseconds differ.
    EXPECT_NE(info, touched);
    EXPECT_EQ(info.substr(21), touched.substr(21));
    EXPECT_EQ(0, bench.Control({"threshold", "9", "2", "critical-high", "19"}).status);
    EXPECT_EQ("00 03 00 00 09 00 09 14 00", Ask(bench, 9, "81 02 11 02 00 00"));
    EXPECT_NE(touched, Ask(bench, 9, "81 02 50"));
    EXPECT_EQ(0, bench.Control({"drop", "9", "2"}).status);
    EXPECT_EQ("80", Ask(bench, 9, "81 02 11 02 00 00"));
    EXPECT_EQ("02 00 00 00", Ask(bench, 9, "81 02 50").substr(28 * 3, 11));
    EXPECT_EQ("sensor 2 of EID 9 is back; the PDR repository has changed\n",
              bench.Control({"restore", "9", "2"}).output);
    EXPECT_EQ("00 03 00 00 09 00 09 14 00", Ask(bench, 9, "81 02 11 02 00 00"));
    EXPECT_EQ("03 00 00 00", Ask(bench, 9, "81 02 50").substr(28 * 3, 11));
}

TEST(Control, MakesAnEndpointFail) {
    const test::BenchProcess bench(scenario);
    const std::string request = "81 02 51 00 00 00 00 00 00 00 00 01 ff 00 00 00";
    const auto healthy = Ask(bench, 9, request);
    bench.Control({"fail", "9", "0x21"});
    EXPECT_EQ("21", Ask(bench, 9, request));
    bench.Control({"fail", "9", "4", "2", "0x50"});
    EXPECT_EQ(healthy, Ask(bench, 9, request));
    EXPECT_EQ("04", Ask(bench, 9, "81 02 50"));
    bench.Control({"malform", "9", "truncate", "10"});
    EXPECT_EQ(healthy.substr(0, 20), Ask(bench, 9, request));
    bench.Control({"malform", "9", "extend", "2"});
    EXPECT_EQ(healthy + " a5 a5", Ask(bench, 9, request));
    bench.Control({"malform", "9", "flag", "3"});
    EXPECT_EQ("03", Ask(bench, 9, request).substr(27, 2));
    bench.Control({"malform", "9", "endless"});
    EXPECT_EQ("01 00 00 00",
              Ask(bench, 9, "81 02 51 03 00 00 00 00 00 00 00 01 ff 00 00 00").substr(3, 11));
    EXPECT_EQ("00 01 00 00 00 01", Ask(bench, 9, "81 00 03 00 00 00 00 01 00").substr(0, 17));
    bench.Control({"malform", "9", "garbage"});
    EXPECT_EQ(healthy.size(), Ask(bench, 9, request).size());
    EXPECT_NE(healthy, Ask(bench, 9, request));
    bench.Control({"malform", "9", "none"});
    EXPECT_EQ(healthy, Ask(bench, 9, request));
    bench.Control({"silence", "9"});
    EXPECT_EQ("", Ask(bench, 9, request));
    bench.Control({"unsilence", "9"});
    EXPECT_EQ(healthy, Ask(bench, 9, request));
    bench.Control({"silence", "9"});
    bench.Control({"recover", "9"});
    EXPECT_EQ(healthy, Ask(bench, 9, request));
}

TEST(Control, CountsAndListsAndWaits) {
    const test::BenchProcess bench(scenario);
    EXPECT_EQ("slot 3 nic\n"
              "  EID 9 vdm, 2 numeric and 1 state sensors, 3 PDRs\n"
              "  EID 10 i2c, 2 numeric and 1 state sensors, 3 PDRs\n"
              "slot 4 cxl-memory (pulled)\n"
              "  EID 11 vdm, 0 numeric and 0 state sensors, 0 PDRs\n",
              bench.Control({"list"}).output);
    Ask(bench, 10, "81 00 02");
    EXPECT_EQ("EID 9: 0\nEID 10: 1\nEID 11: 0\n", bench.Control({"count"}).output);
    EXPECT_EQ("0 more requests answered by EID 9\n",
              bench.Control({"wait-requests", "9", "0"}).output);
    const auto late = bench.Control({"wait-requests", "9", "1", "0"});
    EXPECT_EQ(1, late.status);
    EXPECT_EQ("benchctl: the bench gave no answer in time\n", late.errors);
}

TEST(Control, SaysWhatIsWrong) {
    const test::BenchProcess bench(scenario);
    const struct {
        std::vector<std::string> words;
        std::string message;
    } mistakes[] = {
        {{"sett"}, "\"sett\" is no command; \"help\" lists them"},
        {{"set"}, "an EID is missing (set EID SENSOR VALUE)"},
        {{"set", "9", "1", "hot"}, "\"hot\" is no good as a value (set EID SENSOR VALUE)"},
        {{"set", "9", "3", "1"}, "EID 9 has no numeric sensor 3 (set EID SENSOR VALUE)"},
        {{"set", "11", "1", "1"}, "no plugged card has EID 11 (set EID SENSOR VALUE)"},
        {{"set", "9", "1", "1", "2"}, "\"2\" is too much (set EID SENSOR VALUE)"},
        {{"set-state", "9", "7", "3", "1"},
         "sensor 7 of EID 9 has members 1 to 2 (set-state EID SENSOR MEMBER STATE)"},
        {{"malform", "9", "bend"},
         "\"bend\" is no mode; the modes are truncate N, extend N, flag N, garbage, endless and "
         "none (malform EID MODE [N])"},
        {{"restore", "9", "1"}, "EID 9 has no dropped sensor 1 (restore EID SENSOR)"},
        {{"threshold", "9", "1", "high", "3"},
         "\"high\" is no threshold (threshold EID SENSOR NAME VALUE)"},
        {{"pull", "8"}, "no card belongs to slot 8 (pull SLOT [quietly])"},
        {{"move", "9", "10"}, "EID 10 is taken (move EID NEW [quietly])"},
        {{"fail", "9", "256"},
         "\"256\" is no good as a completion code (fail EID CODE [TYPE "
         "COMMAND])"},
    };
    for (const auto& mistake : mistakes) {
        const auto outcome = bench.Control(mistake.words);
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ("benchctl: " + mistake.message + "\n", outcome.errors);
    }
}

TEST(Bench, EndsCleanlyAndTakesItsSocketAlong) {
    test::BenchProcess bench(scenario);
    ASSERT_TRUE(std::filesystem::exists(bench.Socket()));
    EXPECT_EQ(0, bench.Stop());
    EXPECT_FALSE(std::filesystem::exists(bench.Socket()));
    const auto outcome = bench.Control({"list"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("benchctl: no bench listens where BENCH_SOCKET points to\n", outcome.errors);
}

TEST(Bench, DoesNotPushAnotherBenchAside) {
    const test::BenchProcess bench(scenario);
    const test::TemporaryFolder folder;
    const auto second =
        test::RunProgram({std::getenv("BENCH_PROGRAM"), folder.Write("s.yaml", scenario)});
    EXPECT_EQ(1, second.status);
    EXPECT_EQ("bench: a bench listens at " + bench.Socket() + " already\n", second.errors);
    EXPECT_EQ(0, bench.Control({"list"}).status);
}

TEST(Bench, SurvivesNonsenseOnItsSocket) {
    const test::BenchProcess bench(scenario);
    auto connection = benchlink::Connection::Open(bench.Socket());
    ASSERT_TRUE(connection);
    for (int kind = 0; kind < 256; ++kind) {
        connection->Send({static_cast<benchlink::FrameKind>(kind), 1, {}});
        connection->Send({static_cast<benchlink::FrameKind>(kind), 1, {0xFF, 0x01, 0x80}});
    }
    EXPECT_EQ(0, bench.Control({"list"}).status);
}

TEST(Bench, RefusesAWrongScenario) {
    const test::TemporaryFolder folder;
    const auto path = folder.Write("s.yaml", "cards:\n  - {slot: 1}\n");
    const auto outcome = test::RunProgram({std::getenv("BENCH_PROGRAM"), path});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("bench: " + path + ":2: \"kind\" is missing\n", outcome.errors);
}

} // namespace
