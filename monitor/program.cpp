// SPDX-License-Identifier: Apache-2.0
#include "program.hpp"

#include "cards.hpp"
#include "interface_names.hpp"
#include "json.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <system_error>

#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace monitor {

namespace {

using namespace std::chrono_literals;

constexpr int output = STDOUT_FILENO;

/** How long the cards asked for once may take to come. */
constexpr std::chrono::seconds patience = 10s;
constexpr std::chrono::milliseconds terminalPeriod = 500ms;
constexpr std::chrono::milliseconds paperPeriod = 1000ms;

/** How long the rest of a key's bytes may take. */
constexpr std::chrono::milliseconds keyPatience = 50ms;

void Check(int result, const char* call) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), call);
    }
}

std::string TimeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", &local);
    return text.data();
}

Colour ColourOfOutput() {
    const char* without = std::getenv("NO_COLOR");
    const bool wanted = without == nullptr || *without == '\0';
    return wanted && IsTerminal(output) ? Colour::ON : Colour::OFF;
}

} // namespace

Program::Program(Options options)
    : options(std::move(options)), event(sdeventplus::Event::get_new()), bus(OpenBus(event)),
      watcher(bus.get()) {
    view.colour = ColourOfOutput();
}

Program::Bus Program::OpenBus(const sdeventplus::Event& event) {
    sd_bus* raw = nullptr;
    const int result = sd_bus_open_system(&raw);
    Bus bus(raw);
    if (result < 0) {
        throw std::runtime_error("there is no system bus (" +
                                 std::generic_category().message(-result) +
                                 "); start dbus, or set DBUS_SYSTEM_BUS_ADDRESS to its address");
    }
    Check(sd_bus_attach_event(raw, event.get(), SD_EVENT_PRIORITY_NORMAL), "sd_bus_attach_event");
    return bus;
}

void Program::Run() {
    std::signal(SIGPIPE, SIG_IGN); // a write tells that the reader has gone
    options.output == Output::LIVE ? Follow() : ShowOnce();
}

void Program::ShowOnce() {
    const auto end = Clock::now() + patience;
    while (!watcher.Complete() && !Ended(end)) {
        Wait(end);
    }
    if (!watcher.Complete() && !watcher.Lost()) {
        throw std::runtime_error(std::string(serviceName) +
                                 " doesn't answer; its log may tell why: journalctl -u vantricd");
    }
    CheckPublished();
    if (Cards().empty()) {
        throw std::runtime_error("no card is called \"" + options.card +
                                 "\"; vantric-monitor --once tells the names");
    }
    if (!(options.output == Output::JSON ? Write(output, ToJson(Cards())) : Print())) {
        throw std::system_error(errno, std::generic_category(), "standard output");
    }
}

void Program::Follow() {
    CatchSignals({SIGINT, SIGQUIT, SIGTERM, SIGHUP});
    const auto end = options.duration ? Clock::now() + *options.duration : Clock::time_point::max();
    IsTerminal(output) ? FollowOnTerminal(end) : FollowOnPaper(end);
    if (!stop) {
        Print(); // on a terminal, this is what stays
    }
    CheckPublished();
}

void Program::FollowOnTerminal(Clock::time_point end) {
    Terminal terminal(output);
    CatchSignals({SIGWINCH, SIGTSTP});
    if (terminal.HasKeys()) {
        Check(sd_event_add_io(event.get(), nullptr, output, EPOLLIN, OnInput, this),
              "sd_event_add_io");
    }
    // A service that hasn't answered yet must not be shown as one that isn't there.
    const auto firstDraw = std::min(end, Clock::now() + terminalPeriod);
    while (!watcher.Complete() && !Ended(firstDraw)) {
        Wait(firstDraw);
    }
    while (!Ended(end)) {
        const auto now = Clock::now();
        if (now >= nextDraw) {
            nextDraw = now + terminalPeriod;
            stop = !Draw(terminal) || stop;
        }
        Wait(std::min({end, nextDraw, keys.Pending() ? now + keyPatience : nextDraw}));
        HandleSignal(terminal);
        HandleKeys(terminal);
    }
}

void Program::FollowOnPaper(Clock::time_point end) {
    nextDraw = Clock::now() + paperPeriod;
    while (!Ended(end)) {
        Wait(std::min(end, nextDraw));
        if (Clock::now() >= nextDraw && !Ended(end)) {
            nextDraw += paperPeriod;
            stop = !(Print() && Write(output, "\n"));
        }
    }
}

void Program::CatchSignals(std::initializer_list<int> numbers) {
    for (const int number : numbers) {
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, number);
        Check(-pthread_sigmask(SIG_BLOCK, &blocked, nullptr), "pthread_sigmask");
        Check(sd_event_add_signal(event.get(), nullptr, number, OnSignal, this),
              "sd_event_add_signal");
    }
}

int Program::OnSignal(sd_event_source* /*source*/, const struct signalfd_siginfo* info,
                      void* program) {
    auto& self = *static_cast<Program*>(program);
    const auto number = static_cast<int>(info->ssi_signo);
    if (number == SIGWINCH || number == SIGTSTP) {
        self.signal = number;
    } else {
        self.stop = true;
    }
    return 0;
}

int Program::OnInput(sd_event_source* /*source*/, int /*fd*/, std::uint32_t events, void* program) {
    auto& self = *static_cast<Program*>(program);
    self.stop = self.stop || (events & (EPOLLHUP | EPOLLERR)) != 0;
    return 0;
}

void Program::HandleSignal(Terminal& terminal) {
    if (signal == 0) {
        return;
    }
    if (signal == SIGTSTP) {
        terminal.Suspend();
    }
    terminal.Forget();
    signal = 0;
    nextDraw = Clock::now();
}

void Program::HandleKeys(const Terminal& terminal) {
    const auto now = Clock::now();
    const std::string typed = terminal.ReadKeys();
    if (!typed.empty()) {
        lastInput = now;
    }
    std::vector<KeyPress> pressed = keys.Read(typed);
    if (keys.Pending() && now >= lastInput + keyPatience) {
        pressed = keys.Flush();
    }
    for (const KeyPress& press : pressed) {
        stop = Apply(press, page, view) == Wish::QUIT || stop;
        nextDraw = now;
    }
}

bool Program::Draw(Terminal& terminal) {
    const winsize size = TerminalSize(output);
    view.width = size.ws_col;
    view.height = size.ws_row;
    const Frame frame = Render(Cards(), Title(), view);
    view.scroll = frame.scroll;
    page = frame.page;
    return terminal.Draw(frame.lines);
}

bool Program::Print() const {
    View whole;
    whole.colour = view.colour;
    whole.width = IsTerminal(output) ? TerminalSize(output).ws_col : 0;
    std::string text;
    for (const std::string& line : Render(Cards(), Title(), whole).lines) {
        text += line + '\n';
    }
    return Write(output, text);
}

void Program::Wait(Clock::time_point until) const {
    const auto left = std::max(until - Clock::now(), Clock::duration::zero());
    event.run(std::chrono::ceil<sdeventplus::SdEventDuration>(left));
}

bool Program::Ended(Clock::time_point end) const {
    return stop || watcher.Lost() || Clock::now() >= end;
}

void Program::CheckPublished() const {
    if (watcher.Lost()) {
        throw std::runtime_error("the connection to the bus is lost; start vantric-monitor again "
                                 "when the bus is back");
    }
    if (!watcher.Model().EverPublished()) {
        throw std::runtime_error(serviceName +
                                 std::string(watcher.ServicePresent()
                                                 ? " publishes nothing; its log may tell why: "
                                                   "journalctl -u vantricd"
                                                 : " isn't on the bus; start vantricd"));
    }
}

std::vector<Card> Program::Cards() const {
    std::vector<Card> cards = BuildCards(watcher.Model());
    KeepCalled(cards, options.card);
    return cards;
}

Heading Program::Title() const {
    return {.time = TimeOfDay(),
            .servicePresent = watcher.ServicePresent(),
            .misunderstood = watcher.Misunderstood()};
}

} // namespace monitor
