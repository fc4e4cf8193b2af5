/** What is wrong with a scenario is said with its line. */

#include "bench/scenario_file.hpp"
#include "scenario/scenario.hpp"
#include "scenario/yaml.hpp"

#include <gtest/gtest.h>

namespace {

struct Mistake {
    const char* what;
    std::string text;
    std::string message; /**< behind the file's name */
};

void PrintTo(const Mistake& mistake, std::ostream* out) {
    *out << mistake.what;
}

class Mistakes : public testing::TestWithParam<Mistake> {};

TEST_P(Mistakes, AreSaidWithTheirLine) {
    const test::TemporaryFolder folder;
    const auto path = folder.Write("wrong.yaml", GetParam().text);
    try {
        bench::ReadScenario(path);
        FAIL() << "accepted";
    } catch (const bench::ScenarioError& error) {
        EXPECT_EQ(path + GetParam().message, error.what());
    }
}

std::string Card(const std::string& rest) {
    return "cards:\n  - slot: 1\n    kind: nic\n    endpoints: [{eid: 9}]\n" + rest;
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, Mistakes,
    testing::Values(
        Mistake{"no YAML", "cards: [\n", ":2: end of sequence flow not found"},
        Mistake{"nothing", "", ":0: keys with values are expected here"},
        Mistake{"a text", "cards", ":1: keys with values are expected here"},
        Mistake{"no cards", "platform-services: true\n", ":1: \"cards\" is missing"},
        Mistake{"cards that are none", "cards: 7\n", ":1: a list is expected here"},
        Mistake{"an unknown key", Card("    colour: red\n"), ":5: \"colour\" is not known here"},
        Mistake{"a key twice", Card("    slot: 2\n"), ":5: \"slot\" stands twice"},
        Mistake{"an unknown kind", "cards:\n  - {slot: 1, kind: nick, endpoints: []}\n",
                ":2: \"nick\" is no kind of card; the kinds are nic, infiniband, fibre-channel, "
                "accelerator, cxl-memory, embedded-nic"},
        Mistake{"no endpoint", "cards:\n  - {slot: 1, kind: nic, endpoints: []}\n",
                ":2: a card has at least one endpoint"},
        Mistake{"an EID twice",
                "cards:\n  - {slot: 1, kind: nic, endpoints: [{eid: 9}]}\n"
                "  - {slot: 2, kind: nic, endpoints: [{eid: 9}]}\n",
                ":3: EID 9 stands twice"},
        Mistake{"no number", "cards:\n  - {slot: one, kind: nic, endpoints: [{eid: 9}]}\n",
                ":2: \"one\" is not an integer"},
        Mistake{"too large", "cards:\n  - {slot: 70000, kind: nic, endpoints: [{eid: 9}]}\n",
                ":2: 70000 is not between 0 and 65535"},
        Mistake{"half a byte", Card("    raw-pdrs:\n      - \"012\"\n"),
                ":6: an odd number of hexadecimal digits"},
        Mistake{"no byte", Card("    raw-pdrs: [\"0x\"]\n"),
                ":5: \"0x\" is not a byte in hexadecimal"},
        Mistake{"no such entity", Card("    sensors:\n      - id: 1\n        entity: port\n"),
                ":7: there is no entity with the name \"port\""},
        Mistake{"two entities of one name",
                Card("    entities:\n      - {type: 68, name: a}\n      - {type: 68, name: a}\n"),
                ":7: there are two entities with the name \"a\""},
        Mistake{"no value", Card("    sensors:\n      - {id: 1}\n"), ":6: \"value\" is missing"},
        Mistake{"an unknown movement", Card("    sensors:\n      - {id: 1, value: {jump: 3}}\n"),
                ":6: a value is a number, or one of ramp, sine and random-walk"},
        Mistake{
            "no time",
            Card("    sensors:\n      - {id: 1, value: {ramp: {from: 1, to: 2, seconds: 0}}}\n"),
            ":6: \"seconds\" must be above 0"},
        Mistake{"no unit", Card("    sensors:\n      - {id: 1, unit: Celsius, value: 1}\n"),
                ":6: \"Celsius\" is not known here; known are none, celsius, fahrenheit, kelvin, "
                "volts, amperes, watts, rpm, or a number"},
        Mistake{"infinite", Card("    sensors:\n      - {id: 1, value: inf}\n"),
                ":6: \"inf\" is not a number"},
        Mistake{"no version", Card("    types: {0: [1.2.3.4]}\n"),
                ":5: \"1.2.3.4\" is not a version such as 1.2.0"},
        Mistake{"no time of day", Card("    fru: {manufactured: yesterday}\n"),
                ":5: \"yesterday\" is not a time such as 2021-03-12 07:05:09"},
        Mistake{"neither true nor false", Card("    plugged: yes\n"),
                ":5: \"yes\" is neither true nor false"},
        Mistake{"a long field", Card("    fru: {name: " + std::string(256, 'x') + "}\n"),
                ":5: a field has at most 255 bytes"},
        Mistake{"a long LDID",
                "cards:\n  - slot: 1\n    kind: nic\n    endpoints:\n      - {eid: 9, ldid: " +
                    std::string(513, 'x') + "}\n",
                ":5: an LDID text has at most 512 bytes"},
        Mistake{"an endless alias", "cards: &a [*a]\n", ":1: keys with values are expected here"}));

TEST(Scenario, AFileThatIsNotThereIsSaid) {
    try {
        bench::ReadScenario("/nowhere/at-all.yaml");
        FAIL() << "accepted";
    } catch (const bench::ScenarioError& error) {
        EXPECT_STREQ("/nowhere/at-all.yaml: can't be read", error.what());
    }
}

TEST(Scenario, AnEndpointsOwnKeyReplacesTheCards) {
    const test::TemporaryFolder folder;
    const auto scenario = bench::ReadScenario(
        folder.Write("card.yaml", "cards:\n  - slot: 2\n    kind: embedded-nic\n    tid: 5\n"
                                  "    endpoints: [{eid: 9}, {eid: 10, medium: i2c, tid: 6}]\n"));
    const auto& card = scenario.cards.front();
    EXPECT_EQ(5, card.endPoints[0].terminus.tid);
    EXPECT_EQ(6, card.endPoints[1].terminus.tid);
    EXPECT_EQ("NIC.Embedded.2-1-1",
              std::string(card.endPoints[0].ldid.begin(), card.endPoints[0].ldid.end()));
    EXPECT_EQ(4, card.endPoints[0].slotType);
    EXPECT_EQ(252, card.deviceClass);
}

} // namespace
