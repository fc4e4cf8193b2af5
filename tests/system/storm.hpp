/** A server on which everything happens at once. */
#pragma once

#include "system/played_server.hpp"

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace vantric::test {

/** Sends random events of all kinds to a bench that plays Storm::Scenario(): tables, discoveries,
 *  cards that come and go, endpoints that move, are silent, slow or refuse, host power, firmware
 *  updates, FRUs, changed repositories and values. The same seed makes the same storm. */
class Storm {
public:
    /** Eight cards of all kinds. */
    static std::string Scenario();

    Storm(PlayedServer& server, unsigned seed);

    /** So many events, some right behind each other, some with a breath between. */
    void Blow(int events);

    /** Takes all faults back, has the host on and no update running, and goes on delivering the
     *  table until every device that it shows has answered for some cycles.
     *  @param plugEverything whether pulled cards come back, too
     *  @return false if that doesn't happen within 30 s */
    bool Calm(bool plugEverything);

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
        std::vector<EndPoint> endPoints;
        bool hasTree = false; ///< a sensor that has gone from its repository goes from the bus
        bool isAccelerator = false;
        bool plugged = true;
    };

    struct Kind {
        int weight;
        std::function<Words()> words; ///< of benchctl; none if there is nothing to do now
    };

    std::vector<Kind> Kinds();
    void Send(const Words& words);
    int Below(int limit);
    Card& AnyCard() { return cards.at(static_cast<std::size_t>(Below(int(cards.size())))); }
    Card& AnyPluggedCard();
    EndPoint& AnyEndPoint();
    std::string AnyEid() { return std::to_string(AnyEndPoint().eid); }
    Words Fault(const std::vector<Words>& ways);
    Words PullOrPlug();
    Words MoveEndPoint();
    Words DropSensor();
    std::map<int, int> InUse() const;

    PlayedServer& server;
    std::mt19937 random;
    std::vector<Card> cards;
    std::vector<std::string> history;
    bool hostOn = true;
    int nextEid = 100;
};

} // namespace vantric::test
