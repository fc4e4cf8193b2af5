#include "device/staged_device.hpp"

#include "common/process_flags.hpp"
#include "common/status.hpp"
#include "mctp_transport/played_link.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"

#include <algorithm>
#include <sstream>

namespace vantric::test {

namespace {

constexpr std::uint16_t slot = 3;

/** The endpoints of one medium. */
std::vector<EID_table> Entries(const std::string& text, char medium) {
    std::vector<EID_table> entries;
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        if (word.front() == medium) {
            const auto eid = static_cast<std::uint16_t>(std::stoi(word.substr(1)));
            entries.push_back({.busAddress = static_cast<std::uint8_t>(eid % 10),
                               .bdf = eid,
                               .eid = eid,
                               .instance = eid % 10U});
        }
    }
    return entries;
}

DeviceDetails Details(const std::string& ldid, const std::string& endpoints) {
    DeviceDetails details;
    details.slotNumber = slot;
    details.ldid = ldid;
    details.vdmEIDs = Entries(endpoints, 'v');
    details.i2cEIDs = Entries(endpoints, 'i');
    return details;
}

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

} // namespace

Story::Story(const std::string& text) {
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        Step step;
        if (word.back() == '!') {
            step.table = true;
            word.pop_back();
        }
        int times = 1;
        if (const auto at = word.find('*'); at != std::string::npos) {
            times = std::stoi(word.substr(at + 1));
            word.resize(at);
        }
        if (const auto at = word.find('='); at != std::string::npos) {
            step.status = std::stoi(word.substr(at + 1));
            word.resize(at);
        }
        step.event = word;
        steps.insert(steps.end(), times, step);
    }
}

Story::Step Story::Due() const {
    const std::scoped_lock lock(mutex);
    return events.size() < steps.size() ? steps[events.size()] : Step{};
}

void Story::Note(const std::string& event, DeviceState now) {
    const std::scoped_lock lock(mutex);
    if (events.size() < steps.size()) {
        events.push_back(event);
        state = now;
        ended.notify_all();
    }
}

bool Story::WaitForEnd() {
    std::unique_lock lock(mutex);
    return ended.wait_for(lock, std::chrono::seconds(30),
                          [this] { return events.size() == steps.size(); });
}

std::string Story::Written() const {
    std::vector<std::string> words;
    for (const auto& step : steps) {
        words.push_back(step.event);
    }
    return Joined(words);
}

std::string Story::Happened() const {
    const std::scoped_lock lock(mutex);
    return Joined(events);
}

DeviceState Story::LastState() const {
    const std::scoped_lock lock(mutex);
    return state;
}

StagedDevice::StagedDevice(const std::string& ldid, const std::string& now, std::string next,
                           Story& story)
    : Device(Details(ldid, now), "/base/", RecordingDoors()), story(story), next(std::move(next)) {
    card.Add({});
    OnPause([this](std::chrono::seconds duration) { Rest(duration); });
}

StagedDevice::~StagedDevice() {
    AwaitTable();
    OnPause({});
}

void StagedDevice::InventoryTheDevice() {
    // The pause for the bus's clients comes first, inside.
    Link().onSend = [this](MctpLinkRequest& request) { return Answer(request, story.Due()); };
    const int result = GatherInventory();
    const auto due = story.Due();
    story.Note("I" + std::exchange(askedEids, {}), State());
    if (due.table) {
        BringTable();
    }
    AwaitTable();
    if (result != 0) {
        GiveUpInventory();
    } else {
        FinishInventory();
    }
}

VantricStatus StagedDevice::MonitorTheDevice() {
    const auto due = story.Due();
    {
        const auto lock = endpoints.BeginWork();
        Link().onSend = [this](MctpLinkRequest& request) { return Answer(request, {}); };
        for (const auto& endpoint : cmds) {
            endpoint->GetTID();
        }
    }
    story.Note("M" + std::exchange(askedEids, {}), State());
    if (due.table) {
        BringTable();
    }
    AwaitTable();
    return static_cast<VantricStatus>(due.status);
}

int StagedDevice::Answer(MctpLinkRequest& request, const Story::Step& due) {
    const auto eid = std::to_string(request.eid);
    if (!askedEids.ends_with(eid)) {
        askedEids += (askedEids.empty() ? "" : ",") + eid;
    }
    if (due.status == STATUS_NEW_END_POINTS) {
        // No answer; the table for which the command gives way is this device's or another's.
        if (due.table) {
            BringTable();
        }
        useNewEndPoints = true;
        return 0;
    }
    if (due.status != 0) {
        return 1;
    }
    Complete(request, card.Exchange({request.requestBytes, request.requestLength}).second);
    return 0;
}

void StagedDevice::Rest(std::chrono::seconds duration) {
    const auto due = story.Due();
    story.Note(std::to_string(duration.count()), State());
    if (due.table) {
        BringTable();
        AwaitTable();
    }
}

void StagedDevice::BringTable() {
    if (!callbackThread.joinable()) {
        callbackThread =
            std::thread([this] { UpdateEIDTables(Entries(next, 'i'), Entries(next, 'v')); });
    }
}

/** Waits until the table has been taken over, and its flag is clear again. */
void StagedDevice::AwaitTable() {
    if (callbackThread.joinable()) {
        callbackThread.join();
    }
    useNewEndPoints = false;
}

} // namespace vantric::test
