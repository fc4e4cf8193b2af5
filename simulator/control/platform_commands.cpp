// SPDX-License-Identifier: Apache-2.0
#include "control/control.hpp"

namespace simulator {

namespace {

std::string Reached(std::size_t count) {
    return " (" + std::to_string(count) + (count == 1 ? " listener)" : " listeners)");
}

std::string Table(Control& control, Words& words) {
    static constexpr struct {
        std::string_view name;
        TableFlaw flaw;
    } flaws[] = {
        {"bad-state", TableFlaw::BadState},       {"bad-source", TableFlaw::BadSource},
        {"not-attached", TableFlaw::NotAttached}, {"empty", TableFlaw::Empty},
        {"garbage", TableFlaw::Garbage},
    };
    TableFlaw flaw = TableFlaw::None;
    std::string told = "the endpoint table is delivered";
    for (const auto& entry : flaws) {
        if (words.Take(entry.name)) {
            flaw = entry.flaw;
            told = "an endpoint table is delivered: " + std::string(entry.name);
            break;
        }
    }
    words.Finish();
    return told + Reached(control.audience.DeliverTable(flaw));
}

std::string Discovery(Control& control, Words& words) {
    words.Finish();
    return "a discovery is announced" + Reached(control.audience.AnnounceDiscovery());
}

/** After a change of the cards the platform discovers anew, unless it is told not to notice. */
std::string Rediscover(Control& control, Words& words) {
    const bool quietly = words.Take("quietly");
    words.Finish();
    if (quietly) {
        return "; nobody is told";
    }
    control.audience.AnnounceDiscovery();
    return "; a new endpoint table is delivered" +
           Reached(control.audience.DeliverTable(TableFlaw::None));
}

std::string SetPlugged(Control& control, Words& words, bool plugged) {
    const auto slot = words.Integer<std::uint16_t>("a slot");
    const auto cards = control.machine.FindCards(slot);
    if (cards.empty()) {
        throw CommandError("no card belongs to slot " + std::to_string(slot));
    }
    for (auto* const card : cards) {
        card->plugged = plugged;
    }
    return "slot " + std::to_string(slot) + (plugged ? " is plugged" : " is empty") +
           Rediscover(control, words);
}

std::string Pull(Control& control, Words& words) {
    return SetPlugged(control, words, false);
}
std::string Plug(Control& control, Words& words) {
    return SetPlugged(control, words, true);
}

std::string Move(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto old = endPoint.description.eid;
    const auto eid = words.Integer<std::uint16_t>("a new EID");
    if (control.machine.FindEndPoint(eid) != nullptr) {
        throw CommandError("EID " + std::to_string(eid) + " is taken");
    }
    endPoint.description.eid = eid;
    return "EID " + std::to_string(old) + " is now EID " + std::to_string(eid) +
           Rediscover(control, words);
}

std::string Notify(Control& control, Words& words) {
    const auto name = words.Next("a name");
    const bool everybody = words.Take("everybody");
    words.Finish();
    return "notification " + name + " is sent" + Reached(control.audience.Notify(name, everybody));
}

std::string FirmwareStart(Control& control, Words& words) {
    words.Finish();
    return "a firmware update begins" +
           Reached(control.audience.Notify("PLDMFWUpdateStart$1$FWUpdateStart$", false));
}

std::string FirmwareStop(Control& control, Words& words) {
    words.Finish();
    return "the firmware update ends" +
           Reached(control.audience.Notify("PLDMFWUpdateStop$1$FWUpdateStop$", false));
}

} // namespace

std::span<const ControlCommand> PlatformControlCommands() {
    static constexpr ControlCommand commands[] = {
        {"table", "[bad-state|bad-source|not-attached|empty|garbage]", Table},
        {"discovery", "", Discovery},
        {"pull", "SLOT [quietly]", Pull},
        {"plug", "SLOT [quietly]", Plug},
        {"move", "EID NEW [quietly]", Move},
        {"notify", "NAME [everybody]", Notify},
        {"fw-start", "", FirmwareStart},
        {"fw-stop", "", FirmwareStop},
    };
    return commands;
}

} // namespace simulator
