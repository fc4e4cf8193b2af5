// SPDX-License-Identifier: Apache-2.0
/** The attachment to the kernel's MCTP. */
#include "board_file.hpp"
#include "endpoint_table.hpp"
#include "exchanges.hpp"
#include "log.hpp"
#include "mctpd.hpp"
#include "session.hpp"
#include "worker.hpp"

#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <cstring>
#include <thread>

namespace mctplink {

namespace {

/** All that the session's thread works on; it outlives a session that one of the thread's own
 *  completions ends.
 *
 * One thread waits for everything, completes requests and follows mctpd. Tables have another one,
 * since their callback may take seconds, and waits for requests meanwhile. */
class Attached {
public:
    explicit Attached(MctpLinkCallback callback) : callback(callback) {}

    /** Prepares all; false if something is missing, which is in the log then. Before Run(). */
    bool Prepare();

    /** Serves until Stop(). */
    void Run();

    /** Makes Run() return; nothing is called back by its thread from then on, but for what is just
     *  being called. Any thread. */
    void Stop();

    Exchanges exchanges;
    platform_support::Worker tables{"mctplink-table"};

private:
    static int OnStop(sd_event_source* source, int descriptor, std::uint32_t events, void* self);

    void TellDiscovery();
    void TakeEndpoints(const std::vector<Endpoint>& endpoints);
    void Remark(const std::vector<std::string>& remarks);

    MctpLinkCallback callback;
    board::Board board;
    bool discoveryTold = false; ///< and no table since
    std::vector<std::string> remarked;
    platform_support::FileDescriptor stop;
    EventHandle event;
    Mctpd mctpd{{.onDiscovery = [this] { TellDiscovery(); },
                 .onEndpoints = [this](const auto& endpoints) { TakeEndpoints(endpoints); }}};
};

bool Attached::Prepare() {
    if (!exchanges.Open()) {
        board::Log(board::LOG_ERROR, std::string("No MCTP socket: ") + std::strerror(errno));
        return false;
    }
    auto file = board::ReadBoardFile(board::BoardFilePath());
    board = std::move(file.board);
    for (const auto& mistake : file.mistakes) {
        board::Log(board::LOG_ERROR, mistake);
    }
    sd_event* made = nullptr;
    stop = platform_support::FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    const bool looping = sd_event_new(&made) >= 0;
    event.reset(made);
    if (!looping || !stop.Valid() ||
        sd_event_add_io(event.get(), nullptr, stop.Get(), EPOLLIN, OnStop, nullptr) < 0 ||
        !exchanges.Watch(sd_event_get_fd(event.get()))) {
        board::Log(board::LOG_ERROR, "No event loop");
        return false;
    }
    if (!mctpd.Start(event.get())) {
        board::Log(board::LOG_ERROR, "No system bus");
        return false;
    }
    return true;
}

void Attached::Run() {
    int pending = 0;
    while (pending >= 0 && sd_event_get_state(event.get()) != SD_EVENT_FINISHED) {
        pending = sd_event_prepare(event.get());
        if (pending == 0) {
            // Not a source of the event loop, which reads three clocks each time that it wakes.
            exchanges.Receive();
            pending = sd_event_wait(event.get(), 0);
        }
        if (pending > 0) {
            pending = sd_event_dispatch(event.get());
        }
    }
}

void Attached::Stop() {
    exchanges.Stop();
    static_cast<void>(eventfd_write(stop.Get(), 1)); // fails only if it has been written before
}

int Attached::OnStop(sd_event_source* source, int /*descriptor*/, std::uint32_t /*events*/,
                     void* /*self*/) {
    return sd_event_exit(sd_event_source_get_event(source), 0);
}

void Attached::TellDiscovery() {
    discoveryTold = true;
    tables.Post([call = callback] {
        MctpLinkCallbackInfo info{};
        info.callbackType = MCTPLINK_DISCOVERY_STARTED;
        call(&info);
    });
}

void Attached::TakeEndpoints(const std::vector<Endpoint>& endpoints) {
    EndpointTable table = MakeTable(endpoints, board);
    Remark(table.remarks);
    // Whoever gets an empty table keeps what it has, and so do its requests: without mctpd the
    // kernel still knows its routes.
    if (!table.entries.empty()) {
        exchanges.SetNetworks(std::move(table.networks));
    }
    // A discovery ends with a table even if nothing has changed: until then the client takes a
    // refused request for a part of it, and keeps readings that are no longer true.
    if (table.entries.empty() && !discoveryTold) {
        return;
    }
    discoveryTold = false;
    tables.Post([call = callback, entries = std::move(table.entries)] {
        if (auto* const info = MakeDelivery(entries)) {
            call(info);
        }
    });
}

void Attached::Remark(const std::vector<std::string>& remarks) {
    if (remarks != remarked) {
        for (const auto& remark : remarks) {
            board::Log(board::LOG_WARNING, remark);
        }
        remarked = remarks;
    }
}

class KernelSession final : public Session {
public:
    explicit KernelSession(MctpLinkCallback callback)
        : attached(std::make_shared<Attached>(callback)) {}
    ~KernelSession() override { End(); }

    bool Start(std::uint32_t /*linkType*/, std::uint32_t /*filter*/) override {
        if (!attached->Prepare()) {
            return false;
        }
        thread = std::thread([shared = attached] { shared->Run(); });
        pthread_setname_np(thread.native_handle(), "mctplink");
        return true;
    }

    bool Send(MctpLinkRequest& record) override { return attached->exchanges.Send(record); }

    void Clear(std::uint8_t eid) override { attached->exchanges.Clear(eid); }

    void Stop() override { End(); }

private:
    void End() {
        if (thread.joinable()) {
            attached->Stop();
        }
        platform_support::JoinOrLeave(thread);
        attached->tables.Stop();
    }

    std::shared_ptr<Attached> attached;
    std::thread thread;
};

} // namespace

std::shared_ptr<Session> MakeSession(MctpLinkCallback callback) {
    return std::make_shared<KernelSession>(callback);
}

} // namespace mctplink
