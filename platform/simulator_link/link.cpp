// SPDX-License-Identifier: Apache-2.0
#include "link.hpp"

#include "worker.hpp"

#include <pthread.h>
#include <utility>

namespace simulator_link {

namespace {

constexpr std::chrono::milliseconds reconnectPause{200};

} // namespace

Link::Link(const char* name, Receiver receiver, Greeting greeting)
    : name(name), receiver(std::move(receiver)), greeting(std::move(greeting)) {}

Link::~Link() {
    Stop();
}

bool Link::Start() {
    auto opened = Connection::Open(SocketPath());
    if (!opened) {
        return false;
    }
    connection = std::make_shared<Connection>(std::move(*opened));
    thread = std::thread([this] { Run(); });
    pthread_setname_np(thread.native_handle(), name);
    return true;
}

std::optional<std::vector<std::uint8_t>> Link::Ask(Frame question) {
    if (question.tag == 0) {
        question.tag = NewTag();
    }
    std::shared_ptr<Connection> current;
    std::uint64_t lossesBefore = 0;
    {
        const std::lock_guard lock(mutex);
        if (stopped || !connection) {
            return std::nullopt;
        }
        current = connection;
        lossesBefore = losses;
        replies.emplace(question.tag, std::nullopt);
    }
    bool sent = false;
    {
        const std::lock_guard lock(sendMutex);
        sent = current->Send(question);
    }
    std::unique_lock lock(mutex);
    if (sent) {
        changed.wait_for(lock, answerTimeout, [&] {
            return stopped || losses != lossesBefore || replies.at(question.tag).has_value();
        });
    }
    auto reply = std::move(replies.at(question.tag));
    replies.erase(question.tag);
    if (!reply || reply->empty() || reply->front() != 0) {
        return std::nullopt;
    }
    reply->erase(reply->begin());
    return reply;
}

void Link::Stop() {
    {
        const std::lock_guard lock(mutex);
        stopped = true;
        if (connection) {
            connection->Shutdown();
        }
    }
    changed.notify_all();
    platform_support::JoinOrLeave(thread);
}

void Link::Run() {
    std::unique_lock lock(mutex);
    while (!stopped) {
        const auto current = connection;
        lock.unlock();
        ReceiveAll(*current);
        lock.lock();
        connection.reset();
        ++losses;
        changed.notify_all();
        while (!stopped && !connection) {
            changed.wait_for(lock, reconnectPause, [this] { return stopped; });
            if (!stopped) {
                lock.unlock();
                auto opened = Reconnect();
                lock.lock();
                connection = std::move(opened);
            }
        }
    }
}

void Link::ReceiveAll(Connection& current) {
    while (auto frame = current.Receive()) {
        if (frame->kind == FrameKind::Reply) {
            TakeReply(std::move(*frame));
        } else {
            receiver(*frame);
        }
    }
}

void Link::TakeReply(Frame frame) {
    {
        const std::lock_guard lock(mutex);
        const auto question = replies.find(frame.tag);
        if (question == replies.end()) {
            return;
        }
        question->second = std::move(frame.payload);
    }
    changed.notify_all();
}

std::shared_ptr<Connection> Link::Reconnect() {
    auto opened = Connection::Open(SocketPath());
    if (!opened) {
        return nullptr;
    }
    for (const Frame& frame : greeting()) {
        if (!opened->Send(frame)) {
            return nullptr;
        }
    }
    return std::make_shared<Connection>(std::move(*opened));
}

} // namespace simulator_link
