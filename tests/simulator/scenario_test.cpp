// SPDX-License-Identifier: Apache-2.0
/** What is wrong with a scenario is said with its line. */

#include "scenario/scenario.hpp"
#include "scenario/yaml.hpp"
#include "support/temporary_folder.hpp"

#include <gtest/gtest.h>

namespace {

struct Mistake {
    const char* what;
    std::string text;
    std::string message; ///< after the file's name
};

/** What is wrong with the scenario in a file. */
std::string WrongWith(const std::string& path) {
    try {
        simulator::ReadScenario(path);
    } catch (const simulator::ScenarioError& error) {
        return error.what();
    }
    return "accepted";
}

std::string Card(const std::string& rest) {
    return "cards:\n  - slot: 1\n    kind: nic\n    endpoints: [{eid: 9}]\n" + rest;
}

const Mistake mistakes[] = {
    {"no YAML", "cards: [\n", ":2: end of sequence flow not found"},
    {"nothing", "", ":0: keys with values are expected here"},
    {"no cards", "platform-services: true\n", ":1: \"cards\" is missing"},
    {"cards that are none", "cards: 7\n", ":1: a list is expected here"},
    {"an unknown key", Card("    colour: red\n"), ":5: \"colour\" is not known here"},
    {"a key twice", Card("    slot: 2\n"), ":5: \"slot\" stands twice"},
    {"an unknown kind", "cards:\n  - {slot: 1, kind: nick, endpoints: []}\n",
     ":2: \"nick\" is no kind of card; the kinds are nic, infiniband, fibre-channel, "
     "accelerator, cxl-memory, embedded-nic"},
    {"no endpoint", "cards:\n  - {slot: 1, kind: nic, endpoints: []}\n",
     ":2: a card has at least one endpoint"},
    {"an EID twice",
     "cards:\n  - {slot: 1, kind: nic, endpoints: [{eid: 9}]}\n"
     "  - {slot: 2, kind: nic, endpoints: [{eid: 9}]}\n",
     ":3: EID 9 stands twice"},
    {"too large", "cards:\n  - {slot: 70000, kind: nic, endpoints: [{eid: 9}]}\n",
     ":2: 70000 is not between 0 and 65535"},
    {"half a byte", Card("    raw-pdrs:\n      - \"012\"\n"),
     ":6: an odd number of hexadecimal digits"},
    {"no byte", Card("    raw-pdrs: [\"0x\"]\n"), ":5: \"0x\" is not a byte in hexadecimal"},
    {"no such entity", Card("    sensors:\n      - id: 1\n        entity: port\n"),
     ":7: there is no entity with the name \"port\""},
    {"two entities of one name",
     Card("    entities:\n      - {type: 68, name: a}\n      - {type: 68, name: a}\n"),
     ":7: there are two entities with the name \"a\""},
    {"no value", Card("    sensors:\n      - {id: 1}\n"), ":6: \"value\" is missing"},
    {"an unknown movement", Card("    sensors:\n      - {id: 1, value: {jump: 3}}\n"),
     ":6: a value is a number, or one of ramp, sine and random-walk"},
    {"no time",
     Card("    sensors:\n      - {id: 1, value: {ramp: {from: 1, to: 2, seconds: 0}}}\n"),
     ":6: \"seconds\" must be above 0"},
    {"no unit", Card("    sensors:\n      - {id: 1, unit: Celsius, value: 1}\n"),
     ":6: \"Celsius\" is not known here; known are none, celsius, fahrenheit, kelvin, "
     "volts, amperes, watts, rpm, or a number"},
    {"infinite", Card("    sensors:\n      - {id: 1, value: inf}\n"),
     ":6: \"inf\" is not a number"},
    {"no version", Card("    types: {0: [1.2.3.4]}\n"),
     ":5: \"1.2.3.4\" is not a version such as 1.2.0"},
    {"no time of day", Card("    fru: {manufactured: yesterday}\n"),
     ":5: \"yesterday\" is not a time such as 2021-03-12 07:05:09"},
    {"neither true nor false", Card("    plugged: yes\n"), ":5: \"yes\" is neither true nor false"},
    {"a long field", Card("    fru: {name: " + std::string(256, 'x') + "}\n"),
     ":5: a field has at most 255 bytes"},
    {"a long LDID",
     "cards:\n  - slot: 1\n    kind: nic\n    endpoints:\n      - {eid: 9, ldid: " +
         std::string(513, 'x') + "}\n",
     ":5: an LDID text has at most 512 bytes"},
    {"an endless alias", "cards: &a [*a]\n", ":1: keys with values are expected here"},
};

TEST(Scenario, MistakesAreSaidWithTheirLine) {
    const vantric::test::TemporaryFolder folder;
    for (const auto& [what, text, message] : mistakes) {
        const auto path = folder.Write("wrong.yaml", text);
        EXPECT_EQ(path + message, WrongWith(path)) << what;
    }
    EXPECT_EQ("/nowhere/at-all.yaml: can't be read; give the path of a scenario",
              WrongWith("/nowhere/at-all.yaml"));
}

} // namespace
