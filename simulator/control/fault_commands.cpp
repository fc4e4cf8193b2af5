// SPDX-License-Identifier: Apache-2.0
#include "control/control.hpp"

namespace simulator {

namespace {

std::string Eid(const LiveEndPoint& endPoint) {
    return "EID " + std::to_string(endPoint.description.eid);
}

/** Takes the one word that such a command has, and finds its endpoint. */
LiveEndPoint& OnlyEndPoint(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    words.Finish();
    return endPoint;
}

std::string Silence(Control& control, Words& words) {
    auto& endPoint = OnlyEndPoint(control, words);
    endPoint.faults.silent = true;
    return Eid(endPoint) + " takes requests and doesn't answer";
}

std::string Unsilence(Control& control, Words& words) {
    auto& endPoint = OnlyEndPoint(control, words);
    endPoint.faults.silent = false;
    return Eid(endPoint) + " answers";
}

std::string Slow(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto delay = words.Integer<std::uint32_t>("a number of milliseconds");
    words.Finish();
    endPoint.faults.delay = std::chrono::milliseconds(delay);
    return Eid(endPoint) + " answers after " + std::to_string(delay) + " ms";
}

std::string Refuse(Control& control, Words& words) {
    auto& endPoint = OnlyEndPoint(control, words);
    endPoint.faults.refusing = true;
    return "requests to " + Eid(endPoint) + " are not accepted";
}

std::string Accept(Control& control, Words& words) {
    auto& endPoint = OnlyEndPoint(control, words);
    endPoint.faults.refusing = false;
    return "requests to " + Eid(endPoint) + " are accepted";
}

std::string Fail(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    Failure failure;
    failure.code = words.Integer<std::uint8_t>("a completion code");
    if (words.HasMore()) {
        failure.type = words.Integer<std::uint8_t>("a PLDM type");
        failure.command = words.Integer<std::uint8_t>("a command code");
    }
    words.Finish();
    endPoint.faults.failure = failure.code == 0 ? std::nullopt : std::optional(failure);
    return Eid(endPoint) + (failure.code == 0
                                ? " answers properly"
                                : " answers with completion code " + std::to_string(failure.code));
}

std::string Malform(Control& control, Words& words) {
    static constexpr struct {
        std::string_view name;
        Malformation::Kind kind;
        bool hasNumber;
    } modes[] = {
        {"truncate", Malformation::Kind::Truncate, true},
        {"extend", Malformation::Kind::Extend, true},
        {"flag", Malformation::Kind::Flag, true},
        {"garbage", Malformation::Kind::Garbage, false},
        {"endless", Malformation::Kind::Endless, false},
    };
    constexpr std::uint16_t longestExtension = 60000;
    auto& endPoint = TakeEndPoint(control, words);
    const auto name = words.Next("a mode");
    if (name == "none") {
        words.Finish();
        endPoint.faults.malformation.reset();
        return Eid(endPoint) + " sends whole answers";
    }
    for (const auto& mode : modes) {
        if (mode.name == name) {
            Malformation malformation{mode.kind, 0};
            if (mode.hasNumber) {
                malformation.number = words.Integer<std::uint16_t>("a number");
            }
            words.Finish();
            if (malformation.number > longestExtension) {
                throw CommandError("at most 60000 bytes can be appended");
            }
            endPoint.faults.malformation = malformation;
            return Eid(endPoint) + " sends malformed answers (" + name + ")";
        }
    }
    throw CommandError("\"" + name +
                       "\" is no mode; the modes are truncate N, extend N, flag N, garbage, "
                       "endless and none");
}

std::string ErrorType(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    endPoint.faults.errorType = words.Integer<std::uint32_t>("an error type");
    words.Finish();
    return "answers of " + Eid(endPoint) + " carry error type " +
           std::to_string(endPoint.faults.errorType);
}

std::string Shuffle(Control& control, Words& words) {
    auto& endPoint = OnlyEndPoint(control, words);
    endPoint.faults.shuffled = true;
    return Eid(endPoint) + " answers in packets of the wrong order";
}

std::string Noise(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    endPoint.faults.noise = words.Integer<std::uint16_t>("a number of bytes");
    words.Finish();
    return std::to_string(endPoint.faults.noise) + " bytes of noise come before each answer of " +
           Eid(endPoint);
}

std::string Recover(Control& control, Words& words) {
    auto& endPoint = OnlyEndPoint(control, words);
    endPoint.faults = {};
    return Eid(endPoint) + " has no faults";
}

} // namespace

std::span<const ControlCommand> FaultCommands() {
    static constexpr ControlCommand commands[] = {
        {"silence", "EID", Silence},
        {"unsilence", "EID", Unsilence},
        {"slow", "EID MS", Slow},
        {"refuse", "EID", Refuse},
        {"accept", "EID", Accept},
        {"fail", "EID CODE [TYPE COMMAND]", Fail},
        {"malform", "EID MODE [N]", Malform},
        {"error-type", "EID N", ErrorType},
        {"shuffle", "EID", Shuffle},
        {"noise", "EID BYTES", Noise},
        {"recover", "EID", Recover},
    };
    return commands;
}

} // namespace simulator
