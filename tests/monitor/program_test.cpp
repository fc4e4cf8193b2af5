/** The program as a user starts it. */
#include "fake_service.hpp"
#include "support/private_bus.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace monitor;
using namespace monitor::test;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

/// A started monitor whose output, standard error included, is read while the loop turns.
class Program {
public:
    Program(const TestLoop& loop, const std::vector<std::string>& options) : loop(loop) {
        std::array<int, 2> ends{};
        EXPECT_EQ(0, pipe2(ends.data(), O_CLOEXEC));
        output = ends[0];
        const std::string program = std::getenv("MONITOR");
        std::vector<char*> arguments{const_cast<char*>(program.c_str())};
        for (const std::string& option : options) {
            arguments.push_back(const_cast<char*>(option.c_str()));
        }
        arguments.push_back(nullptr);
        process = fork();
        if (process == 0) {
            dup2(ends[1], STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            execv(program.c_str(), arguments.data());
            _exit(127);
        }
        close(ends[1]);
    }

    ~Program() {
        if (!ended) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
        close(output);
    }

    /// Serves the loop until the output so far satisfies done. Returns false if it never does.
    template <typename Condition>
    bool ReadUntil(const Condition& done) {
        return loop.RunUntil([&] {
            ReadOutput();
            return done(text);
        });
    }

    /// Serves the loop until the program ends and returns its exit status, or -1.
    int Wait() {
        int status = 0;
        ended = loop.RunUntil([&] {
            ReadOutput();
            return waitpid(process, &status, WNOHANG) == process;
        });
        ReadOutput();
        return ended && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    const std::string& Text() const { return text; }
    pid_t Process() const { return process; }

private:
    void ReadOutput() {
        pollfd ready{.fd = output, .events = POLLIN, .revents = 0};
        std::array<char, 4096> buffer{};
        while (poll(&ready, 1, 0) > 0) {
            const ssize_t length = read(output, buffer.data(), buffer.size());
            if (length <= 0) {
                return;
            }
            text.append(buffer.data(), static_cast<std::size_t>(length));
        }
    }

    const TestLoop& loop;
    int output = -1;
    pid_t process = -1;
    bool ended = false;
    std::string text;
};

class ProgramTest : public testing::Test {
protected:
    vantric::test::PrivateBus privateBus;
    TestLoop loop;
};

constexpr const char* sensorLine = "NIC in Slot 3  Board power     12  W     ok";

TEST_F(ProgramTest, ShowsTheTableOnce) {
    const FakeService service(loop);
    Program program(loop, {"--once"});
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Text(), HasSubstr("com.korv.zenth.vantricd: 2 objects, "));
    EXPECT_THAT(program.Text(), HasSubstr(sensorLine));
    EXPECT_THAT(program.Text(), Not(HasSubstr("\x1b")));
}

TEST_F(ProgramTest, FailsWhenNothingIsPublished) {
    Program program(loop, {"--once"});
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_THAT(program.Text(), HasSubstr("com.korv.zenth.vantricd isn't on the bus"));
}

TEST_F(ProgramTest, FollowsForTheTimeAskedFor) {
    FakeService service(loop);
    Program program(loop, {"--for", "3"});
    ASSERT_TRUE(program.ReadUntil(
        [](const std::string& text) { return text.find(sensorLine) != std::string::npos; }));
    service.probe->probeReading(345);
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Text(), HasSubstr("Board power    345  W"));
}

TEST_F(ProgramTest, EndsWellOnASignal) {
    const FakeService service(loop);
    Program program(loop, {});
    ASSERT_TRUE(program.ReadUntil(
        [](const std::string& text) { return text.find(sensorLine) != std::string::npos; }));
    kill(program.Process(), SIGINT);
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(ProgramTest, SaysThatTheBusIsLost) {
    Program program(loop, {});
    ASSERT_TRUE(program.ReadUntil([](const std::string& text) { return !text.empty(); }));
    kill(privateBus.Process(), SIGKILL);
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_THAT(program.Text(), HasSubstr("vantric-monitor: the connection to the bus is lost"));
}

TEST_F(ProgramTest, SaysThatThereIsNoBus) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    Program program(loop, {"--once"});
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_THAT(program.Text(), MatchesRegex("vantric-monitor: system bus: [^\n]+\n"));
}

TEST_F(ProgramTest, RefusesAWrongCommandLine) {
    const std::vector<std::vector<std::string>> wrong{
        {"--for"},  {"--for", "0"}, {"--for", "-1"}, {"--for", "3s"}, {"--for", "99999999999"},
        {"--what"}, {"extra"},
    };
    for (const auto& options : wrong) {
        Program program(loop, options);
        EXPECT_EQ(program.Wait(), 2) << options.front();
        EXPECT_THAT(program.Text(), HasSubstr("usage: vantric-monitor"));
    }
}

} // namespace
