// SPDX-License-Identifier: Apache-2.0
/** Every way that a device goes from one state to another, and who gets its endpoints next. */
#include "device/device.hpp"

#include "common/process_flags.hpp"
#include "common/status.hpp"
#include "mctp_transport/played_link.hpp"
#include "support/captured_log.hpp"
#include "support/eventually.hpp"
#include "support/played_card.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"
#include "support/threads.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <regex>
#include <sstream>
#include <thread>

#include <unistd.h>

namespace vantric::test {
namespace {

/** The lives of devices, each in a line and those indented after it: name, endpoints at first,
 *  those of the table that may come, what the device does step by step, and lines that it logs, or
 *  doesn't log where a "!" comes first.
 *
 *  "v11" is the VDM endpoint of EID 11, "i12" the I2C endpoint of EID 12. BDF is the EID; bus
 *  address and instance are its last digit. "5" is a pause of 5 s, "5*25" are 25 of them; "I11,21"
 *  is an inventory that asks EIDs 11 and 21, "M11" a monitor cycle. "=4" makes an inventory or a
 *  cycle end with this status. "!" brings the table: in the pause, or when the work has let go of
 *  the device and before the device says what follows. "x" stops the device's states. The number in
 *  brackets is its state in the last step, 3 where there is none. */
constexpr auto lives = R"(
Done                       | v11     |     | 2 I11 M11 M11
VdmByAddress               | v24 v11 |     | 2 I11,24 M11,24 |
    === Controller EID Map for slot 3 ===; Index 0  ->  EID 11; Index 1  ->  EID 24;
    === End of Controller EID Map ===
EmbeddedByInstance         | NIC.Embedded.1 v14 v21 | | 2 I21,14 M21,14 |
    Device is Embedded sort using instance number instead of BDF
InventoryFailsOverVdm      | v11 i12 |     | 2 I11=4 2 I12 M12 |
    PLDM Inventory failed for slot 3; Use I2C EIDs for slot 3; Updating EID = 12 for slot 3
InventoryFailsWithoutI2c   | v11     |     | 2 I11=4 10 10 10 (4) |
    mI2C_EIDs vector is empty for slot 3
InventoryFailsOverI2c      | i12     |     | 2 I12=4 10 10 (4) | PLDM Inventory failed for slot 3
InventoryFailsOverBoth     | v11 i12 |     | 2 I11=4 2 I12=4 10 10 (4)
GivesWayToAnothersTable    | v11 i12 |     | 2 I11=9 5 2 I11 M11 |
    Use new end points; !PLDM Inventory failed for slot 3
GivesWayToItsTable         | v11 i12 | v31 | 2 I11=9! 5 2 I31 M31 |
    Use new end points; !PLDM Inventory failed for slot 3
FailsJustBeforeItsTable    | v11 i12 | v31 | 2 I11=4! 5 2 I31 M31
EndsJustBeforeItsTable     | i12     | v31 | 2 I12! M31
EndsBeforeATableForSeveral | i12 i23 | v31 v42 | 2 I12,23! 2 I31,42 M31,42
EndsBeforeAnotherOrder     | v11 v24 | v24 v13 | 2 I11,24! 2 I13,24 M13,24
EndsBeforeTheSameTable     | v11 v24 | v24 v11 | 2 I11,24! M11,24
RepositoryChanged          | v11     |     | 2 I11 M11=10 2 I11 M11
CycleGivesWay              | v11     |     | 2 I11 M11=9 5 M11
RefusedOrNotReady          | v11     |     | 2 I11 M11=11 M11=12 M11 |
    Device is either not ready or command failed status = 11;
    Device is either not ready or command failed status = 12
VdmFails                   | v11 i12 |     | 2 I11 M11=3 M12 |
    Warm Reboot or VDM communication failed! Use I2C EP for Slot[3]; Use I2C EIDs for slot 3
VdmFailsInADiscovery       | v11 i12 |     | 2 I11 M11=8 M12 |
    Warm Reboot or VDM communication failed! Use I2C EP for Slot[3]; Use I2C EIDs for slot 3
VdmOfSeveralFails          | v11 v24 i23 i12 | | 2 I11,24 M11,24=1 2 I12,23 M12,23 |
    Index 0  ->  EID 12; Index 1  ->  EID 23
OfOneNameTheLaterCounts    | v11 v24 i12 i22 | | 2 I11,24 M11,24=3 M22,24 | Index 0  ->  EID 22
VdmFailsWithoutI2c         | v11     |     | 2 I11 M11=4 5*25 M11=4 5 (5) |
    mI2C_EIDs vector is empty for slot 3;
    Device in Slot 3 waiting 115 seconds before next monitor attempt;
    Device in Slot 3 waiting 0 seconds before next monitor attempt
I2cFails                   | i12     |     | 2 I12 M12=5 5*25 M12=3 5 (5)
I2cFailsInADiscovery       | i12     |     | 2 I12 M12=8 5 (5) |
    Warm Reboot or VDM communication failed! Use I2C EP for Slot[3];
    Device is already using I2C EP
TableInTheFirstPause       | v11     | v31 | 2! I31 M31
TableEndsTheSwitch         | i12     | i32 | 2 I12=4 10! 2 I32 M32
TableEndsTheWait           | i12     | v31 | 2 I12 M12=3 5 5! M31
TableInTheWaitsLastPause   | i12     | v31 | 2 I12 M12=3 5*24 5! M31
TableEndsTheWaitOfSeveral  | i12 i23 | v31 v42 | 2 I12,23 M12,23=3 5! 2 I31,42 M31,42
TableMovesAMonitoredDevice | i12     | i32 | 2 I12 M12! M32
TableMakesSeveralAnew      | i12 i23 | v31 v42 | 2 I12,23 M12,23! 2 I31,42 M31,42
TableLeavesASurplusUnasked | i12     | v31 v42 | 2 I12 M12! 2 I31 M31
TableMakesAFailureNothing  | v11 i12 | v31 i32 | 2 I11 M11=3! M31
StoppedOnlySleeps          | i12     |     | 2 I12 M12x 5 5 5 (6)
)";

/** The pieces of a text without the blanks around them. */
std::vector<std::string> Split(const std::string& text, char by) {
    std::vector<std::string> pieces;
    std::istringstream in(text);
    for (std::string piece; std::getline(in, piece, by);) {
        const auto begin = piece.find_first_not_of(' ');
        piece.erase(0, std::min(begin, piece.size()));
        piece.erase(piece.find_last_not_of(' ') + 1);
        if (!piece.empty() || by == '|') {
            pieces.push_back(piece);
        }
    }
    return pieces;
}

std::vector<std::string> Lives() {
    std::string text(lives + 1);
    for (auto at = text.find("\n "); at != std::string::npos; at = text.find("\n ")) {
        text.erase(at, 1);
    }
    return Split(text, '\n');
}

std::vector<EID_table> EndPoints(const std::string& text, char medium) {
    std::vector<EID_table> entries;
    for (const auto& word : Split(text, ' ')) {
        if (word.front() == medium) {
            const auto eid = static_cast<std::uint16_t>(std::stoi(word.substr(1)));
            const auto digit = static_cast<std::uint8_t>(eid % 10);
            entries.push_back({.busAddress = digit, .bdf = eid, .eid = eid, .instance = digit});
        }
    }
    return entries;
}

DeviceDetails Details(const std::string& endPoints) {
    DeviceDetails details;
    details.slotNumber = 3;
    details.ldid = endPoints.starts_with("NIC") ? Split(endPoints, ' ').front() : "NIC.Slot.3";
    details.vdmEIDs = EndPoints(endPoints, 'v');
    details.i2cEIDs = EndPoints(endPoints, 'i');
    return details;
}

struct Step {
    std::string event;
    int status = 0;
    char then = 0; ///< '!' or 'x'
};

std::vector<Step> Steps(const std::string& story) {
    std::vector<Step> steps;
    static const std::regex form("([IM]?[\\d,]+)(?:([*=])(\\d+))?([!x]?)");
    for (const auto& word : Split(story, ' ')) {
        std::smatch part;
        std::regex_match(word, part, form);
        const int number = part[3].matched ? std::stoi(part[3]) : 1;
        const Step step{part[1], part[2] == "=" ? number : 0, part[4].str()[0]};
        steps.insert(steps.end(), part[2] == "*" ? number : 1, step);
    }
    return steps;
}

/** Runs the real state machine, and real commands over a played link, through a story. The work of
 *  an inventory is GatherInventory, that of a cycle one command to each endpoint. */
class StagedDevice : public Device {
public:
    StagedDevice(const std::string& now, std::string next, std::vector<Step> steps)
        : Device(Details(now), "/base/", RecordingDoors()), next(std::move(next)),
          steps(std::move(steps)) {
        card.Add({});
        Link().onSend = [this](MctpLinkRequest& request) { return Answer(request); };
        OnPause([this](auto duration) { Happen(std::to_string(duration.count())); });
    }

    ~StagedDevice() override { OnPause({}); }

    std::promise<void> end;          ///< as much has happened as was written
    std::vector<std::string> events; ///< what has happened, up to then
    DeviceState lastState = DEVICE_CREATED;

protected:
    void InventoryTheDevice() override {
        const auto result = GatherInventory();
        HaveWorked("I");
        result == STATUS_SUCCESS ? FinishInventory() : GiveUpInventory();
    }

    VantricStatus MonitorTheDevice() override {
        const auto status = static_cast<VantricStatus>(Due().status);
        {
            const auto lock = endpoints.BeginWork();
            for (const auto& endpoint : cmds) {
                endpoint->GetTID();
            }
        }
        HaveWorked("M");
        return status;
    }

private:
    /** The step that is due; a quiet one after the end. */
    Step Due() const { return events.size() < steps.size() ? steps[events.size()] : Step{}; }

    void HaveWorked(const char* kind) {
        useNewEndPoints = false;
        Happen(kind + std::exchange(askedEids, {}));
    }

    void Happen(const std::string& event) {
        const auto due = Due();
        if (due.event.empty()) {
            return;
        }
        if (due.then == 'x') {
            SetState(DEVICE_STOPPED);
        }
        lastState = State();
        events.push_back(event);
        if (events.size() == steps.size()) {
            end.set_value();
        }
        if (due.then == '!') {
            UpdateEIDTables(EndPoints(next, 'i'), EndPoints(next, 'v'));
        }
    }

    int Answer(MctpLinkRequest& request) {
        const auto eid = std::to_string(request.eid);
        if (!askedEids.ends_with(eid)) {
            askedEids += (askedEids.empty() ? "" : ",") + eid;
        }
        const auto due = Due();
        const int status = due.event.starts_with('I') ? due.status : 0;
        if (status == STATUS_NEW_END_POINTS) {
            useNewEndPoints = true; // and no answer comes
        } else if (status == 0) {
            Complete(request, card.Exchange({request.requestBytes, request.requestLength}).second);
        }
        return status == 0 || status == STATUS_NEW_END_POINTS ? 0 : 1;
    }

    const std::string next;
    const std::vector<Step> steps;
    PlayedCard card;       ///< at every EID
    std::string askedEids; ///< in the order of their first request
};

class DeviceStates : public testing::TestWithParam<std::string> {};

TEST_P(DeviceStates, FollowTheTable) {
    auto life = Split(GetParam(), '|');
    life.resize(5);
    auto& story = life[3];
    auto state = DEVICE_MONITORING;
    if (const auto bracket = story.find('('); bracket != std::string::npos) {
        state = static_cast<DeviceState>(std::stoi(story.substr(bracket + 1)));
        story.resize(bracket);
    }
    const auto steps = Steps(story);
    SetClockScale(0);
    const CapturedLog log;
    {
        StagedDevice device(life[1], life[2], steps);
        EXPECT_EQ(device.State(), DEVICE_CREATED);
        device.Initialize();
        EXPECT_EQ(device.end.get_future().wait_for(std::chrono::seconds(30)),
                  std::future_status::ready);
        device.SetState(DEVICE_STOPPED);
        device.Stop();
        std::vector<std::string> written;
        std::ranges::transform(steps, std::back_inserter(written), &Step::event);
        EXPECT_EQ(device.events, written);
        EXPECT_EQ(device.lastState, state);
        TakePosted();
    }
    EXPECT_EQ(TakePosted().clears.size(), 1U) << "its objects go with it";
    const auto lines = log.Lines();
    for (const auto& text : Split(life[4], ';')) {
        const bool wanted = text.front() != '!';
        const auto line = text.substr(wanted ? 0 : 1) + "\n";
        EXPECT_EQ(std::ranges::count(lines, line, &LogLine::message) != 0, wanted) << line;
    }
    TakePauses();
}

INSTANTIATE_TEST_SUITE_P(All, DeviceStates, testing::ValuesIn(Lives()),
                         [](const auto& info) { return Split(info.param, ' ').front(); });

TEST(Endpoints, ATableThatWaitsComesBeforeTheNextWork) {
    Endpoints endpoints(Details("i12"), RecordingDoors().udids);
    for (int round = 0; round < 20; ++round) {
        auto work = endpoints.BeginWork();
        std::atomic<pid_t> thread{0};
        std::thread table([&] {
            thread = gettid();
            const auto turn = endpoints.Acquire();
            endpoints.Replace({}, {});
        });
        EXPECT_TRUE(Eventually([&] { return thread != 0 && Sleeps(thread); }));
        EXPECT_FALSE(endpoints.HaveChangedSinceWorkBegan());
        work.unlock();
        work = endpoints.Acquire();
        EXPECT_TRUE(endpoints.HaveChangedSinceWorkBegan()) << "a cycle began before the table";
        work.unlock();
        table.join();
    }
}

} // namespace
} // namespace vantric::test
