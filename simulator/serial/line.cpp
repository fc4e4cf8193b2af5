// SPDX-License-Identifier: Apache-2.0
#include "serial/line.hpp"

#include "serial/mctp_control.hpp"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/epoll.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace simulator {

namespace {

constexpr std::uint8_t controlType = 0;
constexpr std::uint8_t pldmType = 1;

platform_support::FileDescriptor OpenTerminal() {
    platform_support::FileDescriptor terminal(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK));
    if (!terminal.Valid() || grantpt(terminal.Get()) != 0 || unlockpt(terminal.Get()) != 0) {
        Checked(-errno, "posix_openpt");
    }
    return terminal;
}

/** The end that the bus owner opens, as a raw line. */
platform_support::FileDescriptor OpenOtherEnd(int terminal) {
    platform_support::FileDescriptor end(open(ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios mode{};
    if (!end.Valid() || tcgetattr(end.Get(), &mode) != 0) {
        Checked(-errno, "ptsname");
    }
    cfmakeraw(&mode);
    tcsetattr(end.Get(), TCSANOW, &mode);
    return end;
}

} // namespace

SerialLine::SerialLine(EventLoop& loop, std::string path, LiveEndPoint& endPoint,
                       std::array<std::uint8_t, 16> uuid, Ask ask)
    : loop(loop), path(std::move(path)), endPoint(endPoint), uuid(uuid), ask(std::move(ask)),
      terminal(OpenTerminal()), otherEnd(OpenOtherEnd(terminal.Get())),
      watch(loop.OnDescriptor(terminal.Get(), EPOLLIN,
                              [this](std::uint32_t events) { Handle(events); })) {
    unlink(this->path.c_str());
    if (symlink(ptsname(terminal.Get()), this->path.c_str()) != 0) {
        Checked(-errno, this->path.c_str());
    }
}

SerialLine::~SerialLine() {
    *alive = false;
    unlink(path.c_str());
}

void SerialLine::Handle(std::uint32_t events) {
    if ((events & EPOLLOUT) != 0) {
        Write();
    }
    std::array<std::uint8_t, 4096> piece{};
    const ssize_t count = read(terminal.Get(), piece.data(), piece.size());
    for (ssize_t at = 0; at < count; ++at) {
        if (const auto packet = deframer.Feed(piece.at(static_cast<std::size_t>(at)))) {
            if (const auto message = reassembly.Feed(*packet)) {
                Take(*message);
            }
        }
    }
}

void SerialLine::Take(const MctpMessage& message) {
    const bool forThis =
        message.destination == 0 || message.destination == endPoint.description.eid;
    if (!forThis || !message.tagOwner || message.body.empty()) {
        return;
    }
    if (message.body[0] == controlType) {
        TakeControl(message);
    } else if (message.body[0] == pldmType) {
        TakePldm(message);
    }
}

void SerialLine::TakeControl(const MctpMessage& message) {
    ControlledEndpoint told{.eid = static_cast<std::uint8_t>(endPoint.description.eid),
                            .uuid = uuid};
    const auto answer = AnswerControl(std::span(message.body).subspan(1), told);
    endPoint.description.eid = told.eid;
    if (answer && !endPoint.faults.silent) {
        Reply(message, controlType, *answer);
    }
}

void SerialLine::TakePldm(const MctpMessage& message) {
    if (endPoint.faults.refusing) {
        return; // a line can't refuse; it loses
    }
    auto answer = ask(std::span(message.body).subspan(1));
    if (!answer) {
        return;
    }
    const auto deliver = [this, question = message, answer = std::move(*answer), still = alive] {
        answer.sent();
        if (*still) {
            Reply(question, pldmType, answer.bytes);
        }
    };
    if (endPoint.faults.delay.count() == 0) {
        deliver();
    } else {
        loop.After(endPoint.faults.delay, deliver);
    }
}

void SerialLine::Reply(const MctpMessage& message, std::uint8_t type,
                       std::span<const std::uint8_t> body) {
    Bytes whole{type};
    whole.insert(whole.end(), body.begin(), body.end());
    auto packets = ToPackets({.destination = message.source,
                              .source = static_cast<std::uint8_t>(endPoint.description.eid),
                              .tag = message.tag,
                              .tagOwner = false,
                              .body = std::move(whole)});
    if (endPoint.faults.shuffled && packets.size() > 1) {
        std::swap(packets.front(), packets.back());
    }
    outgoing.insert(outgoing.end(), endPoint.faults.noise, std::uint8_t{0x55});
    for (const auto& packet : packets) {
        const auto line = EncodeSerial(packet);
        outgoing.insert(outgoing.end(), line.begin(), line.end());
    }
    Write();
}

void SerialLine::Write() {
    const ssize_t count = write(terminal.Get(), outgoing.data(), outgoing.size());
    if (count > 0) {
        outgoing.erase(outgoing.begin(), outgoing.begin() + count);
    }
    watch.SetEvents(outgoing.empty() ? EPOLLIN : EPOLLIN | EPOLLOUT);
}

} // namespace simulator
