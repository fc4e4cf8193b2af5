// SPDX-License-Identifier: Apache-2.0
/** State sensors and names: the Sensor Auxiliary Names PDR, and the poll. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include <gtest/gtest.h>

#include <map>

using namespace vantric;

namespace {

/** One string of a Sensor Auxiliary Names PDR: tag, then UTF-16, big-endian. */
Bytes Name(std::string_view tag, const std::u16string& name) {
    Bytes bytes;
    bytes.Add(tag).AddZeros(1);
    for (const char16_t unit : name) {
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
        bytes.push_back(static_cast<std::uint8_t>(unit));
    }
    return bytes.AddZeros(2);
}

/** What numeric sensors 5, 6 and again 5 and state sensors 9, with two members, and 6 are called
 *  after a Sensor Auxiliary Names PDR: tag and name of each. */
std::string Named(std::uint16_t id, const Bytes& countsAndArea) {
    ScriptedEndpoint endpoint;
    for (const std::uint16_t numeric : {5, 6, 5}) {
        endpoint.HandlePDR(CompactSensorPdr{.id = numeric}.Build());
    }
    for (const auto* state : {"0B 0A 09 00 90 00 02 00 07 00 01 01 02 01 00 01 02 01 00 01 02",
                              "0B 0A 06 00 90 00 02 00 07 00 01 01 01 01 00 01 02"}) {
        endpoint.HandlePDR(Pdr(4, Bytes::FromHex(state)));
    }
    endpoint.HandlePDR(Pdr(6, Bytes{0x0B, 0x0A}.Add(id).Add(countsAndArea)));
    std::string names;
    for (const auto& sensor : endpoint.Data().numericSensors) {
        names += sensor->auxLanguageTag + ':' + sensor->auxSensorName + ' ';
    }
    for (const auto& sensor : endpoint.Data().stateSensors) {
        for (const auto& member : sensor->compositeSensors) {
            names += member.langTag + ':' + member.sensorName + ' ';
        }
    }
    return names;
}

TEST(AuxNames, GoToTheFirstSensorWithTheirId) {
    struct Row {
        Bytes countsAndArea; ///< sensors, strings of each, strings
        std::string first;   ///< of the numeric sensors 5
        std::uint16_t id = 5;
        std::string members = ": :"; ///< of state sensor 9
    };
    const Bytes name = Name("en", u"Ab");
    const Bytes late = Name("de", u"late");
    Bytes members{3, 2};
    for (const auto& [german, english] :
         {std::pair{u"Verbindung", u"Link"}, {u"Zustand", u"Health"}, {u"keiner", u"none"}}) {
        members.Add(Name("de", german)).Add(Name("en", english));
    }
    const std::string none = ":power5";
    const std::vector<Row> rows{
        // Of several strings the last one stands.
        {Bytes{1, 2}.Add(Name("en", u"Temp")).Add(Name("de", u"Wärme€😀")), "de:Wärme€😀"},
        {Bytes{2, 1}.Add(late).Add(name), "en:Ab"},
        {members, none, 9, "en:Link en:Health"},
        // Unknown or unclear sensors, and no strings.
        {Bytes{1, 1}.Add(name), none, 6},
        {Bytes{1, 1}.Add(name), none, 77},
        {Bytes{0, 1}.Add(name), none},
        {Bytes{1, 0}.Add(name), none},
        // The record ends before its strings do: after one, without end, in a unit, in a tag.
        {Bytes{1, 2}.Add(name), "en:Ab"},
        {Bytes{1, 2}.Add(Cut(name, 2)), "en:Ab"},
        {Bytes{1, 2}.Add(Cut(name, 3)), "en:A"},
        {Bytes{1, 2}.Add(Cut(name, 4)), "en:A"},
        {Bytes{1, 2}.Add("en"), none},
        {{1, 2}, none},
        // Of 768 bytes three bytes of tag leave 765, two leave 766.
        {Bytes{1, 2}.Add(Name("en", std::u16string(500, u'x'))).Add(late),
         "en:" + std::string(382, 'x')},
        {Bytes{1, 2}.Add(Name("e", std::u16string(500, u'x'))).Add(late),
         "e:" + std::string(383, 'x')},
        {Bytes{1, 2}.Add(name).Add(Name(std::string(800, 't'), u"late")), "en:Ab"},
        // Surrogates, and the points beside a change of length in UTF-8.
        {Bytes{1, 1}.Add(Name("", {0xD83D, u'a'})), ":\uFFFDa"},
        {Bytes{1, 1}.Add(Name("", {0xDE00, u'a'})), ":\uFFFDa"},
        {Bytes{1, 1}.Add(Name("", {u'a', 0xD83D})), ":a\uFFFD"},
        {Bytes{1, 1}.Add(Name("", {0xD83D, 0xD83D, 0xDE01})), ":\uFFFD😁"},
        {Bytes{1, 1}.Add(Name("", {0xDBFF, 0xDFFF})), ":\U0010FFFF"},
        {Bytes{1, 1}.Add(Name("", {0x80, 0x07FF, 0x0800, 0xFFFF})), ":\u0080\u07FF\u0800\uFFFF"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Named(row.id, row.countsAndArea),
                  row.first + " :power6 :power5 " + row.members + " : ")
            << &row - rows.data();
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

class StatePoll : public testing::Test {
protected:
    _StateSensors& AddSensor(std::uint16_t id, std::size_t members) {
        auto sensor = std::make_shared<_StateSensors>();
        sensor->sensorId = id;
        sensor->compositeSensors.resize(members);
        for (std::size_t i = 0; i < members; ++i) {
            sensor->compositeSensors[i].sensorName = "m" + std::to_string(i);
            sensor->compositeSensors[i].stateSetID = static_cast<std::uint16_t>(i + 1);
        }
        return *endpoint.Data().stateSensors.emplace_back(sensor);
    }

    /** The changed sensors, each with name, state set and state of its members. */
    std::string Poll(int status = 0) {
        StateChangeMap changes;
        EXPECT_EQ(endpoint.cmds.GetStateSensorReading(changes), status);
        std::string text;
        for (const auto& [id, change] : std::map(changes.begin(), changes.end())) {
            text += std::to_string(id) + ": ";
            for (std::size_t i = 0; i < change.memberNames.size(); ++i) {
                text += change.memberNames[i] + '/' + std::to_string(change.stateSetIds.at(i)) +
                        '=' + std::to_string(change.presentStates.at(i)) + ' ';
            }
        }
        return text;
    }

    ScriptedEndpoint endpoint;
};

TEST_F(StatePoll, AChangeOfOneMemberReportsAll) {
    const CapturedLog log;
    const auto& sensor = AddSensor(7, 3);
    endpoint.Answers({States({{0, 0}, {0, 4}, {0, 0}}), States({{0, 0}, {0, 4}, {0, 0}}),
                      States({{0, 0}, {1, 4}, {0, 0}}), States({{0, 0}, {1, 4}})});
    EXPECT_EQ(Poll(), "7: m0/1=0 m1/2=4 m2/3=0 ");
    EXPECT_EQ(sensor.compositeSensors[1].previousState, 0);
    EXPECT_EQ(Poll(), "");
    EXPECT_EQ(Poll(), "7: m0/1=0 m1/2=4 m2/3=0 ") << "only the operational state changes";
    EXPECT_EQ(log.Count(4, "StateSensorID = 7\n"), 3);
    EXPECT_EQ(log.Count(4, "Slot[3]::StateSensorID[7]::StateSetID[2]::PresentState[4]\n"), 2);
    EXPECT_EQ(Poll(), "") << "what is missing reads as 0";
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
        endpoint.Data().stateSensors.clear();
        auto& member = AddSensor(1, 2).compositeSensors[0];
        AddSensor(2, 1);
        AddSensor(3, 0);
        member.sensorOperationalState = 2;
        member.presentState = 5;
        for (const std::uint8_t state : {1, 2}) {
            endpoint.Answers({row.answer, States({{0, state}}), Good()});
            EXPECT_EQ(Poll(row.status), "1: m0/0=0 m1/0=0 2: m0/1=" + std::to_string(state) + ' ');
        }
        EXPECT_EQ(log.Count(1, row.message), 2);
        EXPECT_EQ(member.sensorOperationalState, 2);
        // A good read reports under state set 0, until the PDRs are read again.
        endpoint.Answers({States({{0, 5}, {0, 0}}), Good(), Good()});
        EXPECT_EQ(Poll(), "1: m0/0=5 m1/0=0 2: m0/1=0 ");
    }
    endpoint.Answers({NoAnswer(3), Reply(2), NoAnswer(4)});
    EXPECT_EQ(Poll(4), "1: m0/0=0 m1/0=0 2: m0/0=0 ") << "the last failure counts";
}

TEST_F(StatePoll, MembersBeyondTheTenthKeepTheirState) {
    AddSensor(3, 12).compositeSensors[10].presentState = 6;
    const std::vector<std::pair<std::uint8_t, std::uint8_t>> states(12, {0, 2});
    endpoint.Answers({States(states), States(states)});
    EXPECT_EQ(Poll(), "3: m0/1=2 m1/2=2 m2/3=2 m3/4=2 m4/5=2 m5/6=2 m6/7=2 m7/8=2 m8/9=2 "
                      "m9/10=2 m10/11=6 m11/12=0 ");
    EXPECT_EQ(Poll(), "");
}

} // namespace
