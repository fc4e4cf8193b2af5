/** A server on which everything happens at once. */
#pragma once

#include "system/played_server.hpp"

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace vantric::test {

/** Sends random events of all kinds to a simulator that plays Storm::Scenario(): tables good and
 *  bad, discoveries, cards that come and go, endpoints that move, are silent, slow, refuse or
 *  answer with errors, host power, firmware updates, FRUs, changed repositories and values, and
 *  signals and notifications that say nothing. The same seed makes the same storm. */
class Storm {
public:
    /** Eight cards of all kinds, and some that nobody serves. */
    static std::string Scenario();

    Storm(PlayedServer& server, unsigned seed);

    /** So many events, some right behind each other, some with a breath between. */
    void Blow(int events);

    /** Takes all faults back, has the host on, no update running and OCP cards where there may be,
     *  and goes on delivering the table until every device that it shows has answered for some
     *  cycles. Then each repository moves and everything comes once that must change nothing, and
     *  the devices answer for as long again, without another table.
     *  @param plugEverything whether pulled cards come back, too; if they don't, each endpoint's
     *  first sensor becomes unavailable
     *  @return false if that doesn't happen within 30 s each */
    bool Calm(bool plugEverything);

    /** How many objects the last table implies when all is calm: "cards", and each card's numeric
     *  sensors under the name that their paths begin with. */
    std::map<std::string, std::ptrdiff_t> Implied() const;

    /** The commands so far, for whoever looks into a failure. */
    std::string History() const;

private:
    using Words = std::vector<std::string>;

    struct EndPoint {
        int eid;
        bool vdm;
        std::vector<int> sensors; ///< numeric ones
    };

    struct Card {
        int slot;
        std::string name; ///< that its sensors' paths begin with
        std::vector<EndPoint> endPoints;
        bool hasTree = false; ///< a sensor that has gone from its repository goes from the bus
        bool isAccelerator = false;
        bool plugged = true;
        bool deceived = false; ///< an inventory may believe what only the next one sets right

        /** Only a network card's types follow when its FRU comes up later. */
        bool MayBeOcp() const { return name.starts_with("NIC_Slot_"); }
    };

    struct Used {
        const Card* card;
        const EndPoint* endPoint;
    };

    struct Kind {
        int weight;
        std::function<Words()> words; ///< of simctl; none if there is nothing to do now
    };

    std::vector<Kind> Kinds();
    void Send(const Words& words);
    int Below(int limit);
    Card& AnyPluggedCard();
    EndPoint& AnyEndPoint();
    std::string AnyEid() { return std::to_string(AnyEndPoint().eid); }
    Words Fault(const std::string& what);
    Words PullOrPlug();
    Words MoveEndPoint();
    Words DropSensor();
    Words BringFru();
    Words Idle(std::size_t which);
    template <typename... T>
    static Words Say(const T&... words) {
        return {words...};
    }
    template <typename List>
    auto& Any(List& list) {
        return list[static_cast<std::size_t>(Below(int(std::size(list))))];
    }
    bool Answered(bool tables);
    std::map<int, Used> InUse() const;

    PlayedServer& server;
    std::mt19937 random;
    std::vector<Card> cards;
    std::vector<std::string> history;
    bool hostOn = true;
    int nextEid = 100;
};

} // namespace vantric::test
