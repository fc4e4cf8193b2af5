/** Any bytes become text that sd-bus takes. */
#include "common/utf8.hpp"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <random>

namespace vantric {

namespace {

const std::string bad = "\xEF\xBF\xBD";

TEST(ValidUtf8, ReplacesEachMaximalBadSubpart) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"plain ~\x01\x7F", "plain ~\x01\x7F"},
        {"\xC2\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\xC2\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {std::string("cut\0off", 7), "cut"},
        {std::string("\xC3\xA4\0x", 4), "\xC3\xA4"},
        {"\x80", bad},
        {"a\xFFz", "a" + bad + "z"},
        {"\xC0\xAF", bad + bad},
        {"\xC3", bad},
        {"\xC3(", bad + "("},
        {"\xE2\x82", bad},
        {"\xE2\x82z", bad + "z"},
        {"\xE0\x80\x80", bad + bad + bad},
        {"\xED\xA0\x80", bad + bad + bad},
        {"\xF0\x9F\x98", bad},
        {"\xF4\x90\x80\x80", bad + bad + bad + bad},
        {"\xF5\x80", bad + bad},
        {"\xF1\x80\xE1\x80\xC2\x62", bad + bad + bad + "b"},
        {"\xED\x9F\xBF\xEE\x80\x80", "\xED\x9F\xBF\xEE\x80\x80"},
        {"\xF4\x8F\xBF\xBD", "\xF4\x8F\xBF\xBD"},
        // Noncharacters, and their neighbours.
        {"\xEF\xBF\xBE", bad},
        {"\xEF\xB7\x90|\xEF\xB7\xAF", bad + "|" + bad},
        {"\xEF\xB7\x8F\xEF\xB7\xB0", "\xEF\xB7\x8F\xEF\xB7\xB0"},
        {"\xF0\x9F\xBF\xBF", bad},
    };
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(text, ValidUtf8(bytes)) << testing::PrintToString(bytes);
    }
}

/** A connection that messages can be made for, to nobody. */
std::unique_ptr<sd_bus, decltype(&sd_bus_close_unref)> BusWithoutPeer() {
    std::array<int, 2> ends{};
    sd_bus* opened = nullptr;
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()));
    EXPECT_LE(0, sd_bus_new(&opened));
    EXPECT_LE(0, sd_bus_set_fd(opened, ends[0], ends[0]));
    EXPECT_LE(0, sd_bus_start(opened));
    close(ends[1]);
    return {opened, &sd_bus_close_unref};
}

TEST(ValidUtf8, LeavesNothingThatSdBusRefuses) {
    const auto bus = BusWithoutPeer();
    std::mt19937 random(20240229);
    // Bytes that begin or go on with something are drawn more often than others.
    const std::string likely = "\xC2\xE0\xED\xEF\xF0\xF4\x80\x9F\xA0\xBF\xB7\x90";
    for (int round = 0; round < 20000; ++round) {
        std::string bytes(random() % 12, '\0');
        for (char& byte : bytes) {
            byte = random() % 4 != 0 ? likely[random() % likely.size()]
                                     : static_cast<char>(random() & 0xFF);
        }
        sd_bus_message* message = nullptr;
        ASSERT_LE(0, sd_bus_message_new(bus.get(), &message, SD_BUS_MESSAGE_METHOD_CALL));
        const int result = sd_bus_message_append_basic(message, 's', ValidUtf8(bytes).c_str());
        sd_bus_message_unref(message);
        ASSERT_LE(0, result) << testing::PrintToString(bytes);
    }
}

} // namespace

} // namespace vantric
