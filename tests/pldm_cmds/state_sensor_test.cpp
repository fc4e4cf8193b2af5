// SPDX-License-Identifier: Apache-2.0
/** State sensors: their PDR, their names and their poll. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

using namespace vantric;

namespace {

/** One entry of a State Sensor PDR. */
struct Entry {
    std::uint16_t stateSetId;
    Bytes possibleStates;
};

Bytes StateSensorPdr(std::uint16_t id, const std::vector<Entry>& entries, std::uint8_t aux = 0) {
    Bytes body;
    body.Add(std::uint16_t{0x0A0B})
        .Add(id)
        .Add(std::uint16_t{144})
        .Add(std::uint16_t{2})
        .Add(std::uint16_t{7})
        .Add(std::uint8_t{1})
        .Add(aux)
        .Add(static_cast<std::uint8_t>(entries.size()));
    for (const auto& entry : entries) {
        body.Add(entry.stateSetId)
            .Add(static_cast<std::uint8_t>(entry.possibleStates.size()))
            .Add(entry.possibleStates);
    }
    return Pdr(4, body);
}

/** One string of a Sensor Auxiliary Names PDR: tag, then UTF-16, big-endian. */
Bytes Name(std::string_view tag, std::u16string_view name) {
    Bytes bytes;
    bytes.Add(tag).AddZeros(1);
    for (const char16_t unit : name) {
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
        bytes.push_back(static_cast<std::uint8_t>(unit));
    }
    return bytes.AddZeros(2);
}

Bytes AuxNamesPdr(std::uint16_t id, std::uint8_t sensors, std::uint8_t strings, const Bytes& area) {
    return Pdr(6, Bytes().Add(std::uint16_t{0x0A0B}).Add(id).Add(sensors).Add(strings).Add(area));
}

TEST(StateSensorPdr, IsDroppedWhereItEndsInItsFields) {
    ScriptedEndpoint endpoint;
    const Bytes whole = StateSensorPdr(9, {{1, {0x06}}, {2, {0x06}}});
    for (std::size_t less = 1; less < whole.size(); ++less) {
        endpoint.HandlePDR(Cut(whole, less));
    }
    EXPECT_TRUE(endpoint.Data().stateSensors.empty());
    endpoint.HandlePDR(StateSensorPdr(9, {}));
    ASSERT_EQ(endpoint.Data().stateSensors.size(), 1U);
    EXPECT_TRUE(endpoint.Data().stateSensors[0]->compositeSensors.empty());
}

/** Two numeric sensors with ID 5 and 6, a state sensor with ID 9 and two members, ID 6 twice. */
class AuxNames : public testing::Test {
protected:
    AuxNames() {
        endpoint.HandlePDR(CompactSensorPdr{.id = 5}.Build());
        endpoint.HandlePDR(CompactSensorPdr{.id = 6}.Build());
        endpoint.HandlePDR(StateSensorPdr(9, {{1, {2}}, {1, {2}}}, 1));
        endpoint.HandlePDR(StateSensorPdr(6, {{1, {2}}}, 1));
    }

    std::string NumericName(std::size_t index = 0) {
        return endpoint.Data().numericSensors[index]->auxSensorName;
    }

    std::string StateName(std::size_t member) {
        return endpoint.Data().stateSensors[0]->compositeSensors[member].sensorName;
    }

    ScriptedEndpoint endpoint;
};

TEST_F(AuxNames, LastStringOfANumericSensorStands) {
    endpoint.HandlePDR(AuxNamesPdr(5, 1, 2, Name("en", u"Temp").Add(Name("de", u"Wärme€😀"))));
    EXPECT_EQ(NumericName(), "Wärme€😀");
    EXPECT_EQ(endpoint.Data().numericSensors[0]->auxLanguageTag, "de");
    endpoint.HandlePDR(CompactSensorPdr{.id = 5}.Build());
    endpoint.HandlePDR(AuxNamesPdr(5, 2, 1, Name("en", u"First").Add(Name("en", u"Second"))));
    EXPECT_EQ(NumericName(), "Second") << "whichever of its sensors";
    EXPECT_EQ(NumericName(2), "power5") << "of two records the first has the name";
}

TEST_F(AuxNames, GoToTheMembersOfAStateSensor) {
    EXPECT_EQ(StateName(0), "") << "names were promised";
    Bytes names;
    for (const auto& [german, english] :
         {std::pair{u"Verbindung", u"Link"}, {u"Zustand", u"Health"}, {u"niemand", u"nobody"}}) {
        names.Add(Name("de", german)).Add(Name("en", english));
    }
    endpoint.HandlePDR(AuxNamesPdr(9, 3, 2, names));
    EXPECT_EQ(StateName(0), "Link");
    EXPECT_EQ(StateName(1), "Health");
    EXPECT_EQ(endpoint.Data().stateSensors[0]->compositeSensors[1].langTag, "en");
}

TEST_F(AuxNames, ChangeNothingWhereTheSensorIsUnknownOrUnclear) {
    endpoint.HandlePDR(AuxNamesPdr(6, 1, 1, Name("en", u"Both")));
    endpoint.HandlePDR(AuxNamesPdr(77, 1, 1, Name("en", u"Nobody")));
    endpoint.HandlePDR(AuxNamesPdr(5, 0, 1, Name("en", u"None")));
    endpoint.HandlePDR(AuxNamesPdr(5, 1, 0, Name("en", u"None")));
    EXPECT_EQ(NumericName(0), "power5");
    EXPECT_EQ(NumericName(1), "power6");
    EXPECT_EQ(endpoint.Data().stateSensors[1]->compositeSensors[0].sensorName, "");
}

TEST_F(AuxNames, StopAtTheEndOfTheRecord) {
    struct Row {
        Bytes area;
        std::string expected;
    };
    const Bytes name = Name("en", u"Ab");
    const std::vector<Row> rows{
        {name, "Ab"},                                        // two strings promised, one there
        {Cut(name, 2), "Ab"},                                // no end
        {Cut(name, 3), "A"},                                 // half a unit
        {Cut(name, 4), "A"},  {Bytes().Add("en"), "power5"}, // a tag without end
        {Bytes(), "power5"},
    };
    for (const auto& row : rows) {
        endpoint.Data().numericSensors[0]->auxSensorName = "power5";
        endpoint.HandlePDR(AuxNamesPdr(5, 1, 2, row.area));
        EXPECT_EQ(NumericName(), row.expected);
    }
}

TEST_F(AuxNames, AreaIsBoundedAt768Bytes) {
    // Three bytes of tag leave 765, two leave 766.
    for (const auto& [tag, units] : {std::pair{"en", 382}, {"e", 383}}) {
        endpoint.HandlePDR(
            AuxNamesPdr(5, 1, 2, Name(tag, std::u16string(500, u'x')).Add(Name("de", u"late"))));
        EXPECT_EQ(NumericName(), std::string(units, 'x')) << tag;
    }
    endpoint.HandlePDR(
        AuxNamesPdr(5, 1, 2, Name("en", u"ok").Add(Name(std::string(800, 't'), u"late"))));
    EXPECT_EQ(NumericName(), "ok");
}

TEST_F(AuxNames, UnpairedSurrogatesAreReplaced) {
    struct Row {
        std::u16string name;
        std::string expected;
    };
    const std::vector<Row> rows{
        {{0xD83D, u'a'}, "\uFFFDa"},      {{0xDE00, u'a'}, "\uFFFDa"},
        {{u'a', 0xD83D}, "a\uFFFD"},      {{0xD83D, 0xD83D, 0xDE00}, "\uFFFD😀"},
        {{0xDBFF, 0xDFFF}, "\U0010FFFF"}, {{0x07FF, 0x0800, 0xFFFF}, "\u07FF\u0800\uFFFF"},
    };
    for (const auto& row : rows) {
        endpoint.HandlePDR(AuxNamesPdr(5, 1, 1, Name("en", row.name)));
        EXPECT_EQ(NumericName(), row.expected);
    }
}

/** An answer to GetStateSensorReadings: operational and present state of each member. Its count is
 *  wrong, since the record's counts. */
Answer States(const std::vector<std::pair<std::uint8_t, std::uint8_t>>& members) {
    Bytes data{1};
    for (const auto& [operational, present] : members) {
        data.Add(Bytes{operational, present, 0xEE, 0xEE});
    }
    return Good(data);
}

std::shared_ptr<_StateSensors> MakeStateSensor(std::uint16_t id, std::size_t members) {
    auto sensor = std::make_shared<_StateSensors>();
    sensor->sensorId = id;
    sensor->compositeSensorCount = static_cast<std::uint8_t>(members);
    for (std::size_t i = 0; i < members; ++i) {
        _CompositeSensorData member;
        member.sensorName = "m" + std::to_string(i);
        member.stateSetID = static_cast<std::uint16_t>(i + 1);
        sensor->compositeSensors.push_back(member);
    }
    return sensor;
}

class StatePoll : public testing::Test {
protected:
    StateChangeMap Poll(int status = 0) {
        StateChangeMap changes;
        EXPECT_EQ(endpoint.cmds.GetStateSensorReading(changes), status);
        return changes;
    }

    ScriptedEndpoint endpoint;
};

TEST_F(StatePoll, AChangeOfOneMemberReportsAll) {
    const CapturedLog log;
    endpoint.Data().stateSensors = {MakeStateSensor(7, 3)};
    endpoint.Answers({States({{0, 0}, {0, 4}, {0, 0}}), States({{0, 0}, {0, 4}, {0, 0}}),
                      States({{0, 0}, {1, 4}, {0, 0}}), States({{0, 0}, {1, 4}})});
    auto changes = Poll();
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[7].presentStates, (std::vector<std::uint8_t>{0, 4, 0}));
    EXPECT_EQ(changes[7].stateSetIds, (std::vector<std::uint16_t>{1, 2, 3}));
    EXPECT_EQ(changes[7].memberNames, (std::vector<std::string>{"m0", "m1", "m2"}));
    EXPECT_EQ(endpoint.Data().stateSensors[0]->compositeSensors[1].previousState, 0);

    EXPECT_TRUE(Poll().empty());
    EXPECT_EQ(Poll().size(), 1U) << "only the operational state changes";
    EXPECT_EQ(log.Count(4, "StateSensorID = 7\n"), 3);
    EXPECT_EQ(log.Count(4, "Slot[3]::StateSensorID[7]::StateSetID[2]::PresentState[4]\n"), 2);
    EXPECT_TRUE(Poll().empty()) << "what is missing reads as 0";
}

TEST_F(StatePoll, FailureIsReportedEachTimeAndDoesNotEndThePoll) {
    struct Row {
        Answer answer;
        int status;
        const char* message;
    };
    for (const auto& row : {Row{NoAnswer(3), 3, "Send failed for EID = 9 and status = 3\n"},
                            Row{NoAnswer(8), 8, "Send failed for EID = 9 and status = 8\n"},
                            Row{NoAnswer(9), 9, "Send failed for EID = 9 and status = 9\n"},
                            Row{Reply(128), 1, "Failed for EID = 9 and error code = 128\n"}}) {
        const CapturedLog log;
        endpoint.Data().stateSensors = {MakeStateSensor(1, 2), MakeStateSensor(2, 1),
                                        MakeStateSensor(3, 0)};
        endpoint.Data().stateSensors[0]->compositeSensors[0].sensorOperationalState = 2;
        endpoint.Data().stateSensors[0]->compositeSensors[0].presentState = 5;
        for (int i = 0; i < 2; ++i) {
            endpoint.Answers({row.answer, States({{0, static_cast<std::uint8_t>(i + 1)}}), Good()});
            auto changes = Poll(row.status);
            EXPECT_EQ(changes.size(), 2U);
            EXPECT_EQ(changes[1].presentStates, (std::vector<std::uint8_t>{0, 0}));
            EXPECT_EQ(changes[1].stateSetIds, (std::vector<std::uint16_t>{0, 0}));
            EXPECT_EQ(changes[1].memberNames, (std::vector<std::string>{"m0", "m1"}));
        }
        EXPECT_EQ(log.Count(1, row.message), 2);
        EXPECT_EQ(endpoint.Data().stateSensors[0]->compositeSensors[0].sensorOperationalState, 2);
        // A good read reports under state set 0, until the PDRs are read again.
        endpoint.Answers({States({{0, 5}, {0, 0}}), Good(), Good()});
        EXPECT_EQ(Poll()[1].stateSetIds, (std::vector<std::uint16_t>{0, 0}));
    }
}

TEST_F(StatePoll, ReturnsTheLastFailure) {
    endpoint.Data().stateSensors = {MakeStateSensor(1, 1), MakeStateSensor(2, 1),
                                    MakeStateSensor(3, 0)};
    endpoint.Answers({NoAnswer(3), Reply(2), NoAnswer(4)});
    EXPECT_EQ(Poll(4).size(), 2U) << "a sensor without members costs an exchange and tells nothing";
    EXPECT_EQ(endpoint.Asked(), 3U);
}

TEST_F(StatePoll, MembersBeyondTheTenthKeepTheirState) {
    auto sensor = MakeStateSensor(3, 12);
    sensor->compositeSensors[10].presentState = 6;
    endpoint.Data().stateSensors = {sensor};
    const std::vector<std::pair<std::uint8_t, std::uint8_t>> states(12, {0, 2});
    endpoint.Answers({States(states), States(states)});
    EXPECT_EQ(Poll()[3].presentStates,
              (std::vector<std::uint8_t>{2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 6, 0}));
    EXPECT_TRUE(Poll().empty());
}

} // namespace
