// SPDX-License-Identifier: Apache-2.0
/** Cards, their sensors and their states, for people. */
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace monitor {

/** How bad something is, in rising order. */
enum class Severity { OK, UNKNOWN, WARNING, CRITICAL, FATAL };

/** "ok", "unknown", "warning", "critical" or "fatal". */
const char* Word(Severity severity);

/** What stands in for a value, or how far it can be trusted. */
enum class Reading {
    OK,
    UNAVAILABLE, ///< a value of 0 or less, which the daemon calls unavailable
    NOT_READ,    ///< none so far, or a value of 0: on the bus they look the same
    FAILED,      ///< the last attempt to read it failed
    NONE,        ///< not read, failed or 0: the object doesn't tell which
};

/** "ok", "unavailable", "not read", "failed" or "no reading". */
const char* Word(Reading reading);

/** A pair of limits, and the alarms that stand on the bus for them. */
struct Limits {
    std::optional<double> low;
    std::optional<double> high;
    bool alarmLow = false;
    bool alarmHigh = false;
};

/** A numeric sensor. */
struct Sensor {
    std::string path;
    std::string name;
    std::string part; ///< what of the card it is about, as the association calls it
    std::string unit; ///< "C", "W" or empty
    Reading reading = Reading::NONE;
    std::optional<double> value; ///< nothing without a reading
    Limits warning;
    Limits critical;
    Severity severity = Severity::OK;
};

/** A member of a state sensor. */
struct State {
    std::string path;
    std::string name;
    std::string part;  ///< what of the card it is about, empty for the card
    std::string set;   ///< empty for one that has no word
    std::string state; ///< empty for one that has no word
    bool read = true;  ///< false until the first reading
    Severity severity = Severity::OK;
};

/** A card, or whatever else has an inventory object. */
struct Card {
    std::string path;
    std::string name; ///< for people; with the LDID where two cards bear the same name
    std::string ldid;
    std::string model;
    std::string partNumber;
    std::string serialNumber;
    std::string firmware;
    Severity health = Severity::UNKNOWN; ///< as its inventory object tells it
    std::vector<Sensor> sensors;
    std::vector<State> states;

    /** The worst of the health, the sensors and the states. */
    Severity Worst() const;
};

} // namespace monitor
