/** The private bus goes away, whatever happens to the test. */
#include "support/bus_client.hpp"
#include "support/private_bus.hpp"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantric::test {

namespace {

/** Tells whether the process ends within half a minute. It need not be a child. */
bool Ends(pid_t process) {
    const auto fd = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (fd < 0) {
        return errno == ESRCH;
    }
    pollfd end{.fd = fd, .events = POLLIN, .revents = 0};
    const bool ended = poll(&end, 1, 30000) == 1;
    close(fd);
    return ended;
}

TEST(PrivateBus, LeavesNothingBehind) {
    pid_t process = -1;
    std::string folder;
    {
        const PrivateBus bus;
        process = bus.Process();
        folder = bus.Folder();
        EXPECT_EQ(bus.Address(), std::getenv("DBUS_SYSTEM_BUS_ADDRESS"));
        EXPECT_TRUE(std::filesystem::exists(folder + "/socket"));
        EXPECT_EQ(0, kill(process, 0));
    }
    EXPECT_EQ(-1, kill(process, 0));
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_EQ(nullptr, std::getenv("DBUS_SYSTEM_BUS_ADDRESS"));
}

TEST(PrivateBus, EndsWithAKilledTest) {
    std::array<int, 2> ends{};
    ASSERT_EQ(0, pipe(ends.data()));
    const pid_t child = fork();
    if (child == 0) {
        const PrivateBus bus;
        // An answer says that the daemon is up and minds the signal that is going to end it.
        BusClient().Call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "GetId");
        const pid_t process = bus.Process();
        const std::string folder = bus.Folder() + '\n';
        if (write(ends[1], &process, sizeof process) == sizeof process &&
            write(ends[1], folder.data(), folder.size()) > 0) {
            pause();
        }
        _exit(1);
    }
    close(ends[1]);
    pid_t process = -1;
    std::array<char, 256> text{};
    ASSERT_EQ(static_cast<ssize_t>(sizeof process), read(ends[0], &process, sizeof process));
    ASSERT_LT(0, read(ends[0], text.data(), text.size() - 1));
    close(ends[0]);
    const std::string folder(text.data(), std::string_view(text.data()).find('\n'));
    ASSERT_EQ(0, kill(child, SIGKILL));
    ASSERT_EQ(child, waitpid(child, nullptr, 0));
    EXPECT_TRUE(Ends(process));
    EXPECT_FALSE(std::filesystem::exists(folder + "/socket"));
    std::filesystem::remove_all(folder);
}

} // namespace

} // namespace vantric::test
