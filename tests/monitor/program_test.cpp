/** The program as a user starts it. */
#include "fake_service.hpp"
#include "support/private_bus.hpp"
#include "support/process.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>

namespace {

using namespace monitor;
using namespace monitor::test;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using vantric::test::Process;

class ProgramTest : public testing::Test {
protected:
    /// Starts the monitor, with an output of its own.
    Process Start(std::vector<std::string> command) {
        command.insert(command.begin(), std::getenv("MONITOR"));
        return {command, {}, privateBus.Folder() + "/monitor." + std::to_string(++started)};
    }

    /// Serves the loop until the program has shown the text. Returns false if it never does.
    bool Shows(Process& program, const std::string& text) const {
        return loop.RunUntil([&] { return program.Log().find(text) != std::string::npos; });
    }

    /// Serves the loop until the program ends and returns its exit status, or -1.
    int Wait(Process& program) const {
        return loop.RunUntil([&] { return !program.Runs(); }) ? program.WaitForEnd().value_or(-1)
                                                              : -1;
    }

    vantric::test::PrivateBus privateBus;
    TestLoop loop;
    int started = 0;
};

constexpr const char* sensorLine = "NIC in Slot 3  Board power     12  W     ok";

TEST_F(ProgramTest, ShowsTheTableOnce) {
    const FakeService service(loop);
    Process program = Start({"--once"});
    EXPECT_EQ(Wait(program), 0);
    EXPECT_THAT(program.Log(), HasSubstr("com.korv.zenth.vantricd: 2 objects, "));
    EXPECT_THAT(program.Log(), HasSubstr(sensorLine));
    EXPECT_THAT(program.Log(), Not(HasSubstr("\x1b")));
}

TEST_F(ProgramTest, FailsWhenNothingIsPublished) {
    Process program = Start({"--once"});
    EXPECT_EQ(Wait(program), 1);
    EXPECT_THAT(program.Log(), HasSubstr("com.korv.zenth.vantricd isn't on the bus"));
}

TEST_F(ProgramTest, FollowsForTheTimeAskedFor) {
    FakeService service(loop);
    Process program = Start({"--for", "3"});
    ASSERT_TRUE(Shows(program, sensorLine));
    service.probe->probeReading(345);
    EXPECT_EQ(Wait(program), 0);
    EXPECT_THAT(program.Log(), HasSubstr("Board power    345  W"));
    EXPECT_THAT(program.Log(), HasSubstr("unavailable\n\ncom.korv")) << "a line between two frames";
}

TEST_F(ProgramTest, EndsWellOnASignal) {
    const FakeService service(loop);
    Process program = Start({});
    ASSERT_TRUE(Shows(program, sensorLine));
    program.Signal(SIGINT);
    EXPECT_EQ(Wait(program), 0);
}

TEST_F(ProgramTest, SaysThatTheBusIsLost) {
    Process program = Start({});
    ASSERT_TRUE(loop.RunUntil([&] { return !program.Log().empty(); }));
    kill(privateBus.Process(), SIGKILL);
    EXPECT_EQ(Wait(program), 1);
    EXPECT_THAT(program.Log(), HasSubstr("vantric-monitor: the connection to the bus is lost"));
}

TEST_F(ProgramTest, SaysThatThereIsNoBus) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    Process program = Start({"--once"});
    EXPECT_EQ(Wait(program), 1);
    EXPECT_THAT(program.Log(), MatchesRegex("vantric-monitor: system bus: [^\n]+\n"));
}

TEST_F(ProgramTest, RefusesAWrongCommandLine) {
    const std::vector<std::vector<std::string>> wrong{
        {"--for"},  {"--for", "0"}, {"--for", "-1"}, {"--for", "3s"}, {"--for", "99999999999"},
        {"--what"}, {"extra"},
    };
    for (const auto& options : wrong) {
        Process program = Start(options);
        EXPECT_EQ(Wait(program), 2) << options.front();
        EXPECT_THAT(program.Log(), HasSubstr("usage: vantric-monitor"));
    }
}

} // namespace
