// SPDX-License-Identifier: Apache-2.0
/** The commands of simctl. */
#pragma once

#include "control/words.hpp"
#include "server/audience.hpp"

#include <functional>
#include <list>

namespace simulator {

class PlatformServices;

/** Says whether a command was carried out, and what it did or what was wrong. */
using ControlReply = std::function<void(bool ok, const std::string& told)>;

/** Carries out commands on the running simulator. */
class Control {
public:
    /** services is null where the scenario has none. */
    Control(Machine& machine, Audience& audience, PlatformServices* services)
        : machine(machine), audience(audience), services(services) {}

    /** Carries out a command: its words, separated by NUL. reply is called once, at once or, for a
     *  command that waits, later. */
    void Run(const std::string& text, const ControlReply& reply);

    /** To be called after each answered request: commands may wait for it. */
    void RequestAnswered();

    Machine& machine;
    Audience& audience;
    PlatformServices* services;
    std::function<void()> afterCommand; ///< where set, called when one was carried out

private:
    struct Waiter {
        LiveEndPoint* endPoint;
        std::uint64_t until;
        std::string told;
        ControlReply reply;
    };

    void WaitRequests(Words& words, const ControlReply& reply);

    std::list<Waiter> waiters;
};

/** A command: its name, its words for the usage line, and what it does. Returns what it did, or
 *  throws CommandError. */
struct ControlCommand {
    std::string_view name;
    std::string_view usage;
    std::string (*run)(Control& control, Words& words);
};

std::span<const ControlCommand> SensorCommands();
std::span<const ControlCommand> FaultCommands();
std::span<const ControlCommand> PlatformControlCommands();
std::span<const ControlCommand> BusCommands();
std::span<const ControlCommand> ReportCommands();

/** All commands with their words, a line each. */
std::string ListOfCommands();

/** The endpoint whose EID is the next word. Throws CommandError. */
LiveEndPoint& TakeEndPoint(Control& control, Words& words);

} // namespace simulator
