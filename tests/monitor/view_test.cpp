// SPDX-License-Identifier: Apache-2.0
/** What keys do, and what is seen then. */
#include "monitor/view.hpp"

#include "monitor/keys.hpp"
#include "monitor/terminal.hpp"

#include <gmock/gmock.h>

#include <array>
#include <regex>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace monitor;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

View Sized(std::size_t width, std::size_t height) {
    View view;
    view.width = width;
    view.height = height;
    return view;
}

/** Two cards of five lines each; the second one's third sensor has an alarm. */
std::vector<Card> Cards() {
    std::vector<Card> cards(2);
    for (std::size_t number = 0; number < cards.size(); ++number) {
        cards[number].name = "Card " + std::to_string(number);
        cards[number].health = Severity::OK;
        for (std::size_t id = 0; id < 4; ++id) {
            Sensor sensor;
            sensor.name = "s" + std::to_string(number) + std::to_string(id);
            sensor.value = 1;
            sensor.reading = Reading::OK;
            cards[number].sensors.push_back(sensor);
        }
    }
    cards[1].sensors[2].severity = Severity::CRITICAL;
    cards[1].sensors[2].critical.alarmHigh = true;
    return cards;
}

/** The title from the hidden lines on, and the names on the lines of the table. */
std::string Seen(const View& view) {
    const Frame frame = Render(Cards(), {}, view);
    const std::string& title = frame.lines.front();
    std::string seen = title.substr(std::min(title.find("; "), title.size()));
    for (std::size_t line = 2; line + 1 < frame.lines.size(); ++line) {
        std::smatch name;
        std::regex_search(frame.lines[line], name, std::regex("Card .|s.."));
        seen += "|" + name.str();
    }
    return seen;
}

TEST(View, FollowsTheKeys) {
    const std::string start = "; 6 lines hidden (6 below)|Card 0|s00|s01|s02";
    const std::vector<std::pair<std::string, std::string>> rows{
        {"", start},
        {"\x1b[B", "; 6 lines hidden (1 above, 5 below)|Card 0|s01|s02|s03"},
        {"\x1b[B\x1bOA", start},
        {"\x1b[6~", "; 6 lines hidden (4 above, 2 below)|Card 0|Card 1|s10|s11"},
        {"\x1b[F", "; 6 lines hidden (6 above)|Card 1|s11|s12|s13"},
        {"\x1b[F\x1b[5~", "; 6 lines hidden (2 above, 4 below)|Card 0|s02|s03|Card 1"},
        {"\x1b[F\x1b[H", start},
        {"\x1b[Z", start},
        {"/CARD 1", "; 6 lines hidden (1 below, 5 filtered)|Card 1|s10|s11|s12"},
        {"/s12\r", "; 8 lines hidden (8 filtered)|Card 1|s12||"},
        {"/crit", "; 6 lines hidden (1 below, 5 filtered)|Card 1|s10|s11|s12"},
        {"/q1\x7f\x7fs02", "; 8 lines hidden (8 filtered)|Card 0|s02||"},
        {"/none", "; 10 lines hidden (10 filtered)||||"},
        {"/none\x1b", start},
    };
    for (const auto& [typed, seen] : rows) {
        View view = Sized(80, 7);
        KeyReader reader;
        for (const char character : typed) { // as a slow line brings them
            for (const KeyPress& press : reader.Read(std::string(1, character))) {
                EXPECT_EQ(Apply(press, 4, view), Wish::STAY);
                view.scroll = Render(Cards(), {}, view).scroll;
            }
        }
        for (const KeyPress& press : reader.Flush()) {
            Apply(press, 4, view);
        }
        EXPECT_EQ(Seen(view), seen) << typed;
    }
    View view;
    EXPECT_EQ(Apply({Key::CHARACTER, 'q'}, 4, view), Wish::QUIT);
}

TEST(View, TellsOfTroubleInColourAndInWords) {
    View view;
    EXPECT_THAT(Render(Cards(), {.time = "12:00:00"}, view).lines,
                testing::AllOf(testing::Contains("vantricd 12:00:00  2 cards, 1 critical"),
                               testing::Contains("critical  Card 1  health ok"),
                               testing::Each(testing::Not(HasSubstr("\x1b")))));
    view.colour = Colour::ON;
    const Frame frame = Render(Cards(), {}, view);
    EXPECT_THAT(frame.lines[0], HasSubstr("\x1b[1;31m1 critical\x1b[m"));
    EXPECT_THAT(frame.lines[2], HasSubstr("\x1b[32mok\x1b[m"));
    EXPECT_THAT(frame.lines[10], HasSubstr("\x1b[1;31m1\x1b[m"));
    EXPECT_THAT(Render({}, {.time = "", .servicePresent = false}, {}).lines[0],
                HasSubstr("isn't on the bus"));
}

TEST(View, KeepsToAnySize) {
    for (std::size_t width = 1; width < 90; ++width) {
        const Frame frame = Render(Cards(), {}, Sized(width, 4 + width % 9));
        EXPECT_THAT(frame.lines, SizeIs(4 + width % 9));
        EXPECT_THAT(frame.lines, testing::Each(SizeIs(testing::Le(width))));
    }
    std::vector<Card> cards = Cards();
    cards[0].sensors[0].name = "System Board Proc Accel1 Temperature";
    EXPECT_THAT(Render(cards, {}, Sized(69, 0)).lines,
                testing::Contains(HasSubstr("  System~rature  ")));
}

TEST(Terminal, GetsTheLinesThatDiffer) {
    std::array<int, 2> ends{};
    ASSERT_EQ(0, pipe2(ends.data(), O_NONBLOCK));
    const auto written = [&] {
        std::array<char, 4096> text{};
        const ssize_t size = read(ends[0], text.data(), text.size());
        return std::string(text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    };
    {
        Terminal terminal(ends[1]);
        EXPECT_FALSE(terminal.HasKeys());
        EXPECT_EQ(written(), "\x1b[?1049h\x1b[?25l");
        EXPECT_TRUE(terminal.Draw({"one", "two"}));
        EXPECT_EQ(written(), "\x1b[2J\x1b[1;1H\x1b[2Kone\x1b[2;1H\x1b[2Ktwo");
        EXPECT_TRUE(terminal.Draw({"one", "three"}));
        EXPECT_EQ(written(), "\x1b[2;1H\x1b[2Kthree");
    }
    EXPECT_EQ(written(), "\x1b[?25h\x1b[?1049l");
    close(ends[0]);
    close(ends[1]);
}

} // namespace
