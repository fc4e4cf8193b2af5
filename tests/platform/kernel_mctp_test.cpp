// SPDX-License-Identifier: Apache-2.0
/** The MCTP client library on a played kernel, with a played mctpd. */
#include "platform/played_kernel.hpp"
#include "support/link_client.hpp"
#include "support/private_bus.hpp"
#include "support/temporary_folder.hpp"

#include <sdbusplus/bus.hpp>
#include <sdbusplus/message.hpp>

#include <cstring>
#include <future>
#include <map>
#include <optional>
#include <thread>
#include <variant>

namespace vantric::test {

namespace {

using mctplink::Arrival;
using mctplink::Peer;

/** mctpd's objects on the bus. It is served while the test waits. */
class PlayedMctpd {
public:
    using Value = std::variant<std::uint8_t, std::uint32_t, std::int32_t, std::vector<std::uint8_t>,
                               std::string>;
    using Interfaces = std::map<std::string, std::map<std::string, Value>>;

    PlayedMctpd() {
        sd_bus_open_system(&bus);
        sd_bus_add_object(bus, nullptr, root, OnCall, this);
        sd_bus_request_name(bus, service, 0);
    }
    PlayedMctpd(const PlayedMctpd&) = delete;
    PlayedMctpd& operator=(const PlayedMctpd&) = delete;
    ~PlayedMctpd() { sd_bus_flush_close_unref(bus); }

    void LocalEids(std::vector<std::uint8_t> eids) {
        objects[networks + "1"] = {
            {"au.com.codeconstruct.MCTP.Network1", {{"LocalEIDs", std::move(eids)}}}};
    }

    template <typename NetworkId>
    void Endpoint(NetworkId network, std::uint8_t eid, std::vector<std::uint8_t> types,
                  const std::string& uuid = "") {
        const auto path = networks + std::to_string(network) + "/endpoints/" + std::to_string(eid);
        Interfaces interfaces{
            {"xyz.openbmc_project.MCTP.Endpoint",
             {{"EID", eid}, {"NetworkId", network}, {"SupportedMessageTypes", std::move(types)}}},
            {"au.com.codeconstruct.MCTP.Endpoint1", {{"Connectivity", std::string("Degraded")}}}};
        if (!uuid.empty()) {
            interfaces["xyz.openbmc_project.Common.UUID"] = {{"UUID", uuid}};
        }
        objects[path] = interfaces;
        Emit("InterfacesAdded", path, interfaces);
    }

    void Remove(const std::string& endpoint) {
        objects.erase(networks + endpoint);
        Emit("InterfacesRemoved", networks + endpoint, std::vector<std::string>{"x.y"});
    }

    /** Waits for a condition. */
    bool Until(const std::function<bool()>& done) {
        return Eventually([&] {
            while (sd_bus_process(bus, nullptr) > 0) {
            }
            return done();
        });
    }

private:
    static constexpr auto service = "au.com.codeconstruct.MCTP1";
    static constexpr auto root = "/au/com/codeconstruct/mctp1";
    static constexpr auto manager = "org.freedesktop.DBus.ObjectManager";
    inline static const std::string networks = "/au/com/codeconstruct/mctp1/networks/";

    template <typename Argument>
    void Emit(const char* member, const std::string& path, const Argument& argument) {
        sd_bus_message* made = nullptr;
        sd_bus_message_new_signal(bus, &made, root, manager, member);
        sdbusplus::message_t message(made, std::false_type());
        message.append(sdbusplus::message::object_path(path), argument);
        sd_bus_send(bus, made, nullptr);
    }

    static int OnCall(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        sd_bus_message* made = nullptr;
        if (sd_bus_message_is_method_call(call, manager, "GetManagedObjects") <= 0) {
            return 0;
        }
        sd_bus_message_new_method_return(call, &made);
        sdbusplus::message_t reply(made, std::false_type());
        auto& mctpd = *static_cast<PlayedMctpd*>(self);
        reply.append(mctpd.objects);
        return sd_bus_send(nullptr, made, nullptr);
    }

    sd_bus* bus = nullptr;
    std::map<sdbusplus::message::object_path, Interfaces> objects;
};

/** An entry as one line: EID, slot, type, how it is reached, addresses and LDID. */
std::string Shown(const MctpLinkEndPoint& entry) {
    const std::map<int, std::string> slotTypes{{0, "slot"}, {4, "embedded"}, {255, "nowhere"}};
    return std::to_string(entry.eid) + " " + slotTypes.at(entry.slotType) + " " +
           std::to_string(entry.slotNumber) + " type " + std::to_string(entry.endPointType) +
           (entry.i2c != 0 ? " i2c " : "") + (entry.vdm != 0 ? " vdm " : " ") +
           (entry.pldm != 0 ? "pldm " : "") + std::to_string(entry.bdf) + "/" +
           std::to_string(entry.busAddress) + " " + std::string(entry.ldid, entry.ldidLength);
}

constexpr const char* boardFile = R"({
    "slots": [{"slot": 3, "class": "nic", "vendor": 1, "device": 2},
              {"slot": 5, "class": "accelerator", "vendor": 1, "device": 2}],
    "endpoints": [
        {"eid": 9, "slot": 3, "medium": "vdm", "bdf": "3b:00.1"},
        {"network": 2, "eid": 10, "slot": 3, "medium": "i2c", "bus-address": "0x1d"},
        {"uuid": "5F2C1A0E-93d4-4b61-8a7e-000000000002", "slot": 5, "medium": "vdm"},
        {"eid": 20, "slot": 1, "embedded": true, "medium": "vdm", "instance": 2}]})";

class KernelMctp : public testing::Test {
protected:
    KernelMctp() {
        setenv("VANTRIC_BOARD", folder.Write("board.json", boardFile).c_str(), 1);
        heard = &events;
        kernel = std::make_unique<PlayedKernel>();
        StartMctpd();
    }
    ~KernelMctp() override { MctpLinkDetach(); }

    void StartMctpd() {
        mctpd.emplace();
        mctpd->LocalEids({8, 12});
        mctpd->Endpoint(1U, 8, {0, 1});
        mctpd->Endpoint(1U, 9, {0, 1});
        mctpd->Endpoint(2, 10, {1});
    }

    /** Attaches and waits for the first table. */
    void Attach() {
        ASSERT_EQ(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0));
        ASSERT_TRUE(HasTables(1));
    }

    bool HasTables(std::size_t count) {
        return mctpd->Until([&] {
            const std::lock_guard lock(events.mutex);
            return events.tables.size() == count;
        });
    }

    /** The entries of the latest table. */
    std::vector<std::string> Table() {
        const std::lock_guard lock(events.mutex);
        const auto& bytes = events.tables.back();
        std::vector<std::string> lines;
        for (std::size_t at = 20; at < bytes.size(); at += sizeof(MctpLinkEndPoint)) {
            MctpLinkEndPoint entry;
            std::memcpy(&entry, bytes.data() + at, sizeof(entry));
            lines.push_back(Shown(entry));
        }
        return lines;
    }

    TemporaryFolder folder;
    PrivateBus daemon;
    Heard events;
    std::optional<PlayedMctpd> mctpd;
};

using Lines = std::vector<std::string>;
const Lines twoEndpoints{"9 slot 3 type 2 vdm pldm 15105/0 NIC.Slot.3-1-1",
                         "10 slot 3 type 2 i2c  pldm 0/29 NIC.Slot.3-1-1"};

TEST_F(KernelMctp, TheTableJoinsMctpdsEndpointsAndTheBoardFile) {
    mctpd->Endpoint(2U, 8, {1}, "5f2c1a0e-93d4-4b61-8a7e-000000000002"); // 8 is network 1's own
    mctpd->Endpoint(1U, 20, {1, 0});
    mctpd->Endpoint(1U, 11, {1});
    mctpd->Endpoint(1U, 12, {1});  // the board's own
    mctpd->Endpoint(1U, 13, {0});  // no PLDM
    mctpd->Endpoint(1U, 255, {1}); // no EID
    mctpd->Endpoint(2U, 9, {1});   // network 1 has that one
    Attach();
    const Lines others{"8 slot 5 type 13 vdm pldm 0/0 ProcAccelerator.Slot.5-1-1",
                       "20 embedded 1 type 2 vdm pldm 0/0 NIC.Embedded.2-1-1",
                       "11 nowhere 0 type 0 pldm 0/0 "};
    Lines expected = twoEndpoints;
    expected.insert(expected.end(), others.begin(), others.end());
    EXPECT_EQ(expected, Table());
    EXPECT_EQ("01 00 00 00 01 00 00 00 00 00 00 00 02 00 00 00 05 00 00 00",
              HexText(std::span(events.tables[0]).first(20)));
    EXPECT_EQ(0, events.discoveries);
}

TEST_F(KernelMctp, AChangeIsADiscoveryThatEndsWithATable) {
    Attach();
    mctpd->Remove("1/endpoints/9");
    mctpd->Endpoint(1U, 9, {0, 1}); // is back before it has been missed
    ASSERT_TRUE(HasTables(2));
    EXPECT_EQ(twoEndpoints, Table());
    mctpd->Remove("2/endpoints/10");
    ASSERT_TRUE(HasTables(3));
    EXPECT_EQ(Lines{twoEndpoints[0]}, Table());
    EXPECT_EQ(2, events.discoveries);
}

TEST_F(KernelMctp, TheServiceMayComeAndGo) {
    mctpd.reset();
    ASSERT_EQ(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0));
    StartMctpd();
    ASSERT_TRUE(HasTables(1));
    EXPECT_EQ(twoEndpoints, Table());
    mctpd.reset();
    ASSERT_TRUE(events.HasTables(2));
    EXPECT_EQ(Lines{}, Table());
    kernel->answersItself = true;
    EXPECT_EQ("81 00 02", Exchange(9, "81 00 02").Answer()) << "the kernel's routes are left";
    StartMctpd();
    ASSERT_TRUE(HasTables(3));
    EXPECT_EQ(twoEndpoints, Table());
}

TEST_F(KernelMctp, ARequestIsAnsweredOrRefused) {
    Attach();
    Exchange first(10, "81 00 02");
    ASSERT_TRUE(first.Send());
    EXPECT_EQ((Peer{2, 10}), kernel->Take().to);
    kernel->answersItself = true;
    for (const int refusal : {EHOSTUNREACH, EBUSY, ENOBUFS, 0}) {
        kernel->refusal = refusal;
        EXPECT_EQ(refusal == 0 ? "81 00 02" : "refused", Exchange(10, "81 00 02").Answer());
    }
    EXPECT_EQ("refused", Exchange(99, "81 00 02").Answer()) << "no network has it";
    EXPECT_EQ("81 00", Exchange(9, "81 00 02", 2).Answer()) << "cut to its buffer";
    Exchange long64k(9, "81", 65536);
    long64k.request.resize(65536, 0x5A);
    long64k.record.requestBytes = long64k.request.data();
    long64k.record.requestLength = 65536;
    EXPECT_EQ(HexText(long64k.request), long64k.Answer());
}

TEST_F(KernelMctp, WhatIsNoAnswerReachesNobody) {
    Attach();
    Exchange exchange(9, "81 00 02");
    ASSERT_TRUE(exchange.Send());
    const auto request = kernel->Take();
    for (const Arrival& arrival : {Arrival{{1, 10}, 1, true, 0}, Arrival{{2, 9}, 1, true, 0},
                                   Arrival{{1, 9}, 2, true, 0}, Arrival{{1, 9}, 1, false, 0}}) {
        request.Answer(arrival, {0xBA, 0xD0});
    }
    request.Answer({0x01});
    ASSERT_TRUE(exchange.Completes());
    EXPECT_EQ("01", HexText(std::span(exchange.response).first(exchange.record.responseLength)));
}

TEST_F(KernelMctp, ARequestTakenBackKeepsItsTagUntilItsLateAnswerWhichReachesNobody) {
    Attach();
    const auto sendAndClear = [] {
        const auto exchange = std::make_unique<Exchange>(9, "81 00 02");
        EXPECT_TRUE(exchange->Send());
        MctpLinkClearRequest(9, 0);
        return kernel->Take();
    };
    const auto first = sendAndClear();
    EXPECT_NE(first.far, sendAndClear().far);
    EXPECT_FALSE(first.Closed()) << "or the next request would get its tag, and its answer";
    first.Answer({0xBA, 0xD0});
    EXPECT_TRUE(Eventually([&] { return sendAndClear().far == first.far; })) << "it serves again";
}

TEST_F(KernelMctp, OneSocketServesOneSenderAndThreadsMaySendAndClear) {
    Attach();
    kernel->answersItself = true;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ("81", Exchange(9, "81").Answer());
    }
    EXPECT_EQ(1U, kernel->opened);
    std::thread other([] { SendAndClear(9, 300); });
    SendAndClear(10, 300);
    other.join();
}

TEST_F(KernelMctp, ACallbackMayDetach) {
    Attach();
    kernel->answersItself = true;
    Exchange exchange(9, "81 00 02");
    std::promise<void> detached;
    exchange.onCompletion = [&] {
        MctpLinkDetach();
        detached.set_value();
    };
    ASSERT_TRUE(exchange.Send());
    detached.get_future().wait();
    EXPECT_FALSE(Exchange(9, "81 00 02").Send());
}

} // namespace

} // namespace vantric::test
