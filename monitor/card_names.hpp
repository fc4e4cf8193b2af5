/** What the cards are called. */
#pragma once

#include "object_model.hpp"

#include <map>
#include <optional>
#include <set>
#include <string>

namespace monitor {

/** Names each object's card for people. Made for one state of the model; refers to it. */
class CardNames {
public:
    explicit CardNames(const ObjectModel& model);

    /** The friendly name of the object's card, with the LDID where two cards bear that name. What
     *  belongs to a port of a card has the card's name with the port behind it. An object that
     *  doesn't tell has the name of the card that it hangs from by its path or its
     *  association, or else what its path tells of the LDID. */
    std::string Of(const std::string& path, const Object& object) const;

private:
    struct Card {
        std::string friendly;
        std::string ldid;
    };

    static std::optional<Card> OwnCard(const Object& object);
    std::optional<Card> CardAbove(std::string path) const;
    std::string Name(const Card& card) const;

    std::map<std::string, Card> inventory;                ///< by path
    std::map<std::string, std::set<std::string>> bearers; ///< LDIDs by friendly name
};

} // namespace monitor
