// SPDX-License-Identifier: Apache-2.0
/** Everything that can happen to a server, in no order: afterwards the daemon says the same as one
 *  that has seen nothing of it. */
#include "support/eventually.hpp"
#include "system/played_server.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <utility>

namespace vantric::test {
namespace {

constexpr int gustCount = 15;
constexpr int longestGust = 20;
constexpr int longestBreath = 15; ///< in requests of the card that is left in peace
constexpr int patience = 400;     ///< in about as many cycles of that card
constexpr int highestSlot = 9;    ///< those above are that card's, and no devices'
constexpr int highestEid = 250;
constexpr const char* oneCycle = "wait-requests 99 3";

/** What happens, and how often. E is any endpoint, S any of its sensors and N a number. Malformed
 *  answers are no part of this: there is no telling what they leave behind. */
const std::pair<int, std::string> events[] = {
    {10, "table"},
    {1, "table garbage"}, // one that shows no device
    {4, "discovery"},
    {12, "pull or plug"},
    {8, "move"},
    {6, "silence E"},
    {6, "refuse E"},
    {2, "slow E 50"},
    {2, "slow E 150"},
    {1, "error-type E 1"},
    {1, "fail E 1"},
    {1, "fail E 200"},
    {1, "fail E 1 0 4"},
    {1, "fail E 5 0 5"},
    {1, "fail E 1 2 17"},
    {1, "fail E 128 2 17"},
    {1, "fail E 129 2 17"},
    {1, "fail E 1 2 33"},
    {1, "fail E 1 2 80"},
    {1, "fail E 1 2 81"},
    {1, "fail E 131 4 1"},
    {1, "fail E 1 4 2"},
    {1, "fail E 5 5 2"},
    {16, "recover E"},
    {3, "host off"},
    {3, "host on"},
    {3, "fw-start"},
    {3, "fw-stop"},
    {2, "fru 1 \"OCP card\""},
    {1, "fru 2 \"plain card\""},
    {2, "fru 7 \"OCP card\""},
    {4, "touch E"},
    {4, "threshold E S critical-high 95"},
    {4, "drop"},
    {10, "set E S N"},
    {1, "set-state E 20 1 1"},
    {2, "set-state E 20 1 4"},
    {1, "operational E S enabled"},
    {1, "operational E S failed"},
    {1, "operational E S unavailable"},
    {8, "idle"},
};

/** What must change nothing. */
const std::string idle[] = {
    "table bad-state",
    "table bad-source",
    "table not-attached",
    "table empty",
    "notify \xff\xfe everybody",
    "notify \"\" everybody",
    "notify PLDMFWUpdateStart$1$FWUpdateStart$$ everybody",
    "notify PLDMFWUpdateStart$1$FWUpdateStart everybody",
};

class Storm {
public:
    /** The same seed makes the same storm. */
    Storm(PlayedServer& server, unsigned seed) : server(server), random(seed) {
        std::istringstream list(server.Simctl({"list"}));
        for (std::string line; std::getline(list, line);) {
            std::istringstream words(line);
            std::string word;
            std::string kindOrMedium;
            int number = 0;
            words >> word >> number >> kindOrMedium;
            if (word == "slot" && number > highestSlot) {
                break;
            }
            if (word == "slot") {
                cards.push_back({.slot = number, .kind = kindOrMedium, .endPoints = {}});
                continue;
            }
            // An accelerator's fifth sensor isn't in the platform's table.
            std::vector<int> sensors(cards.back().kind == "accelerator" ? 4 : 6);
            std::iota(sensors.begin(), sensors.end(), 1);
            cards.back().endPoints.push_back({number, kindOrMedium == "vdm,", sensors});
        }
    }

    /** Events right after each other, and then some time in which the daemon works. */
    void Blow() {
        const int all =
            std::accumulate(std::begin(events), std::end(events), 0,
                            [](int sum, const auto& event) { return sum + event.first; });
        for (int count = Below(longestGust); count > 0; --count) {
            int pick = Below(all);
            const auto* event = std::begin(events);
            for (; pick >= event->first; ++event) {
                pick -= event->first;
            }
            Happen(event->second);
        }
        for (const char* command : {"fw-stop", "host on", "table"}) {
            Send(command);
        }
        Send("wait-requests 99 " + std::to_string(Below(longestBreath)));
    }

    /** Takes all faults back and delivers tables until every device answers again. Then each
     *  repository moves and everything comes once that must change nothing, and the devices answer
     *  for as long again, without another table. */
    void Calm() {
        for (auto& card : cards) {
            if (card.plugged) {
                Heal(card);
            }
        }
        AwaitAnswers(true);
        for (const auto& [eid, used] : InUse()) {
            // A read of the repository that failed isn't tried again before the next change.
            Send("touch " + std::to_string(eid));
        }
        std::ranges::for_each(idle, [this](const auto& command) { Send(command); });
        AwaitAnswers(false);
    }

    /** The commands so far. */
    std::string history;

private:
    struct EndPoint {
        int eid;
        bool vdm;
        std::vector<int> sensors;
    };
    struct Card {
        int slot;
        std::string kind;
        std::vector<EndPoint> endPoints;
        bool plugged = true;
        bool deceived = false; ///< an inventory may believe what only the next one sets right
    };

    void Send(const std::string& command) {
        history += command + '\n';
        server.Do(command);
    }

    /** The same numbers on every machine, which the library's distributions don't promise. */
    int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

    template <typename List>
    auto& Any(List& list) {
        return list[static_cast<std::size_t>(Below(int(std::size(list))))];
    }

    Card& AnyPluggedCard() {
        auto* card = &Any(cards);
        while (!card->plugged) {
            card = &Any(cards);
        }
        return *card;
    }

    void Happen(const std::string& event) {
        auto& card = AnyPluggedCard();
        auto& endPoint = Any(card.endPoints);
        const std::string quietly = Below(3) == 0 ? " quietly" : "";
        if (event == "pull or plug") {
            PullOrPlug(Any(cards), quietly);
        } else if (event == "move") {
            if (nextEid < highestEid) {
                const int old = std::exchange(endPoint.eid, nextEid++);
                Send("move " + std::to_string(old) + ' ' + std::to_string(endPoint.eid) + quietly);
            }
        } else if (event == "drop") {
            Drop(card);
        } else if (event == "idle") {
            Send(Any(idle));
        } else {
            Send(Filled(event, card, endPoint));
        }
    }

    std::string Filled(const std::string& event, Card& card, const EndPoint& endPoint) {
        std::string command;
        for (const auto& word : WordsOf(event)) {
            command += word == "E"   ? std::to_string(endPoint.eid)
                       : word == "S" ? std::to_string(Any(endPoint.sensors))
                       : word == "N" ? std::to_string(Below(100))
                                     : '"' + word + '"';
            command += ' ';
        }
        // A command that fails while the next one goes well leaves an inventory without versions.
        card.deceived |= event.starts_with("slow") || event.starts_with("error-type") ||
                         event == "fail E 1" || event == "fail E 200";
        return command;
    }

    /** At least half of the cards stay. */
    void PullOrPlug(Card& card, const std::string& quietly) {
        const auto plugged = std::ranges::count(cards, true, &Card::plugged);
        if (!card.plugged || plugged > std::ssize(cards) / 2) {
            card.plugged = !card.plugged;
            Send((card.plugged ? "plug " : "pull ") + std::to_string(card.slot) + quietly);
        }
    }

    /** A sensor that has gone from its repository goes from the bus where the card has a tree. */
    void Drop(Card& card) {
        auto& endPoint = card.endPoints.front();
        const bool hasTree = card.slot == 1 || card.slot == 3 || card.slot == 7;
        if (hasTree && endPoint.sensors.size() > 1) {
            Send("drop " + std::to_string(endPoint.eid) + ' ' +
                 std::to_string(endPoint.sensors.back()));
            endPoint.sensors.pop_back();
        }
    }

    void Heal(Card& card) {
        const auto slot = std::to_string(card.slot);
        for (const auto& endPoint : card.endPoints) {
            const auto eid = std::to_string(endPoint.eid);
            Send("recover " + eid);
            // None stays failed: a first reading of that can't be told from none.
            for (const int id : endPoint.sensors) {
                Send("operational " + eid + ' ' + std::to_string(id) + " enabled");
            }
        }
        if (std::exchange(card.deceived, false)) {
            Send("pull " + slot);
            Send("plug " + slot);
        }
        if (card.kind == "nic") { // the only ones whose types follow a FRU that comes later
            Send("fru " + slot + " \"OCP card\"");
        }
    }

    /** By EID, the endpoints through which a new table has the devices reached: VDM where there is
     *  any. */
    std::map<int, std::pair<const Card*, const EndPoint*>> InUse() const {
        std::map<int, std::pair<const Card*, const EndPoint*>> used;
        for (const auto& card : cards) {
            for (const auto& endPoint : card.endPoints) {
                if (card.plugged && endPoint.vdm == card.endPoints.front().vdm) {
                    used[endPoint.eid] = {&card, &endPoint};
                }
            }
        }
        return used;
    }

    /** Waits until each sensor was read often enough for its repository to be looked at. */
    void AwaitAnswers(bool tables) {
        const auto before = server.Answered();
        std::string missing = "anything";
        for (int cycle = 0; !missing.empty() && cycle < patience; ++cycle) {
            // A device that still believes in an endpoint which has moved needs a later table.
            if (tables && cycle % 10 == 0) {
                server.Do("table");
            }
            server.Do(oneCycle);
            missing.clear();
            auto answered = server.Answered();
            for (const auto& [eid, used] : InUse()) {
                const int reads = used.first->kind == "accelerator" ? 10 : 24;
                if (answered[eid] - before.at(eid) < reads * std::ssize(used.second->sensors)) {
                    missing += std::to_string(eid) + ' ';
                }
            }
        }
        ASSERT_EQ(missing, "") << "are the EIDs that aren't asked";
    }

    PlayedServer& server;
    std::mt19937 random;
    std::vector<Card> cards;
    int nextEid = 100;
};

/** What each object says, but for what tells of the past: what an inventory read once, thresholds
 *  and alarms since an object began, the order in which sensors came and controllers fell ill. */
std::map<std::string, std::string> Told(const PublishedObjects& objects) {
    static const std::set<std::string> past{"CriticalAlarmHigh", "CriticalHigh", "DeviceStatus",
                                            "FirmwareVersion",   "Instance",     "ProbeThresholds",
                                            "WarningAlarmHigh"};
    std::map<std::string, std::string> told;
    for (const auto& [path, interfaces] : objects) {
        for (const auto& [interface, properties] : interfaces) {
            if (interface.ends_with(".FRU")) {
                continue;
            }
            told[path + " " + interface];
            for (const auto& [name, value] : properties) {
                if (!past.contains(name)) {
                    told[path + " " + name] = value;
                }
            }
        }
    }
    return told;
}

TEST(Storm, LeavesNothingBehind) {
    const char* chosen = std::getenv("STORM_SEED");
    const int seed = chosen == nullptr ? 20261125 : std::atoi(chosen);
    PlayedServer server(ReadScenario("storm.yaml"), 1);
    server.See("temperature/NIC_Slot_19_sensorid_3 Value=40");
    Storm storm(server, static_cast<unsigned>(seed));
    for (int gust = 0; gust < gustCount; ++gust) {
        storm.Blow();
    }
    storm.Calm();
    const auto stormed = Told(server.Objects());
    server.RestartDaemon();
    std::map<std::string, std::string> fresh;
    Eventually([&] { return (fresh = Told(server.Objects())) == stormed; });
    std::vector<std::pair<std::string, std::string>> difference;
    std::ranges::set_symmetric_difference(stormed, fresh, std::back_inserter(difference));
    EXPECT_TRUE(difference.empty()) << testing::PrintToString(difference);
    EXPECT_FALSE(HasFailure()) << "seed " << seed << '\n' << storm.history << server.Log();
}

} // namespace
} // namespace vantric::test
