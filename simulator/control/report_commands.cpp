// SPDX-License-Identifier: Apache-2.0
#include "control/control.hpp"

namespace simulator {

namespace {

std::string_view MediumName(Medium medium) {
    switch (medium) {
    case Medium::Vdm:
        return "vdm";
    case Medium::I2c:
        return "i2c";
    case Medium::None:
        break;
    }
    return "none";
}

std::string List(Control& control, Words& words) {
    words.Finish();
    std::string text;
    for (const auto& card : control.machine.Cards()) {
        text += (text.empty() ? "slot " : "\nslot ") + std::to_string(card.description.slot) + " " +
                card.description.kind + (card.plugged ? "" : " (pulled)");
        for (const auto& endPoint : card.endPoints) {
            const auto& terminus = endPoint.terminus;
            text += "\n  EID " + std::to_string(endPoint.description.eid) + " " +
                    std::string(MediumName(endPoint.description.medium)) + ", " +
                    std::to_string(terminus.numericSensors.size()) + " numeric and " +
                    std::to_string(terminus.stateSensors.size()) + " state sensors, " +
                    std::to_string(terminus.repository.Count()) + " PDRs";
        }
    }
    return text;
}

std::string Count(Control& control, Words& words) {
    words.Finish();
    std::string text;
    for (const auto& card : control.machine.Cards()) {
        for (const auto& endPoint : card.endPoints) {
            text += (text.empty() ? "EID " : "\nEID ") + std::to_string(endPoint.description.eid) +
                    ": " + std::to_string(endPoint.answered);
        }
    }
    return text;
}

} // namespace

std::span<const ControlCommand> ReportCommands() {
    static constexpr ControlCommand commands[] = {{"list", "", List}, {"count", "", Count}};
    return commands;
}

} // namespace simulator
