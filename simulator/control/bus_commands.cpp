// SPDX-License-Identifier: Apache-2.0
#include "bus/platform_services.hpp"
#include "control/control.hpp"

namespace simulator {

namespace {

PlatformServices& Services(Control& control) {
    if (control.services == nullptr) {
        throw CommandError("the scenario doesn't say \"platform-services: true\"");
    }
    return *control.services;
}

std::string SwitchHost(Control& control, Words& words) {
    auto& services = Services(control);
    const auto state = words.Next("on or off");
    words.Finish();
    if (state != "on" && state != "off") {
        throw CommandError("\"" + state + "\" is neither on nor off");
    }
    services.SetHost(state == "on");
    return "the host is " + state;
}

std::string BringUpFru(Control& control, Words& words) {
    auto& services = Services(control);
    const auto slot = words.Integer<std::uint16_t>("a slot");
    const auto model = words.HasMore() ? std::optional(words.Next("a model")) : std::nullopt;
    words.Finish();
    return "the FRU of slot " + std::to_string(slot) + " is there, with model \"" +
           services.AddFru(slot, model) + "\"";
}

} // namespace

std::span<const ControlCommand> BusCommands() {
    static constexpr ControlCommand commands[] = {
        {"host", "on|off", SwitchHost},
        {"fru", "SLOT [MODEL]", BringUpFru},
    };
    return commands;
}

} // namespace simulator
