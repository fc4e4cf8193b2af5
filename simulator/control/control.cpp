// SPDX-License-Identifier: Apache-2.0
#include "control/control.hpp"

#include <array>
#include <system_error>

namespace simulator {

namespace {

constexpr std::string_view waitName = "wait-requests";
constexpr std::string_view waitUsage = "EID N [SECONDS]";

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> words;
    std::size_t begin = 0;
    while (begin <= text.size() && !text.empty()) {
        const auto end = std::min(text.find('\0', begin), text.size());
        words.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return words;
}

std::array<std::span<const ControlCommand>, 5> AllCommands() {
    return {SensorCommands(), FaultCommands(), PlatformControlCommands(), BusCommands(),
            ReportCommands()};
}

std::string UsageOf(std::string_view name, std::string_view usage) {
    return std::string(name) + (usage.empty() ? "" : " ") + std::string(usage);
}

const ControlCommand* FindCommand(const std::string& name) {
    for (const auto& family : AllCommands()) {
        for (const auto& command : family) {
            if (command.name == name) {
                return &command;
            }
        }
    }
    return nullptr;
}

} // namespace

std::string ListOfCommands() {
    std::string text = "commands:\n";
    for (const auto& family : AllCommands()) {
        for (const auto& command : family) {
            text += "  " + UsageOf(command.name, command.usage) + "\n";
        }
    }
    return text + "  " + UsageOf(waitName, waitUsage);
}

void Control::Run(const std::string& text, const ControlReply& reply) {
    Words words(Split(text));
    std::string usage;
    try {
        const auto name = words.Next("a command");
        if (name == "help") {
            reply(true, ListOfCommands());
            return;
        }
        if (name == waitName) {
            usage = UsageOf(name, waitUsage);
            WaitRequests(words, reply);
            return;
        }
        const auto* const command = FindCommand(name);
        if (command == nullptr) {
            throw CommandError("\"" + name + "\" is no command; \"help\" lists them");
        }
        usage = UsageOf(command->name, command->usage);
        const auto told = command->run(*this, words);
        if (afterCommand) {
            afterCommand();
        }
        reply(true, told);
    } catch (const std::system_error& error) {
        reply(false, error.what());
    } catch (const CommandError& error) {
        reply(false, error.what() + (usage.empty() ? "" : " (" + usage + ")"));
    }
}

void Control::WaitRequests(Words& words, const ControlReply& reply) {
    auto& endPoint = TakeEndPoint(*this, words);
    const auto count = words.Integer<std::uint32_t>("a number of requests");
    if (words.HasMore()) {
        words.Integer<std::uint16_t>("a number of seconds"); // simctl keeps the time
    }
    words.Finish();
    const auto told = std::to_string(count) + " more requests answered by EID " +
                      std::to_string(endPoint.description.eid);
    waiters.push_back({&endPoint, endPoint.answered + count, told, reply});
    RequestAnswered();
}

void Control::RequestAnswered() {
    std::erase_if(waiters, [](const Waiter& waiter) {
        const bool done = waiter.endPoint->answered >= waiter.until;
        if (done) {
            waiter.reply(true, waiter.told);
        }
        return done;
    });
}

LiveEndPoint& TakeEndPoint(Control& control, Words& words) {
    const auto eid = words.Integer<std::uint16_t>("an EID");
    auto* const endPoint = control.machine.FindEndPoint(eid);
    if (endPoint == nullptr) {
        throw CommandError("no plugged card has EID " + std::to_string(eid));
    }
    return *endPoint;
}

} // namespace simulator
