/** A device whose life is written down beforehand. */
#pragma once

#include "device/device.hpp"
#include "support/played_card.hpp"

#include <mctplink.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vantric::test {

/** What a device should do, step by step, and what the world does in each step.
 *
 * Words of the text: "5" is a pause of 5 s, "5*25" are 25 of them; "I11,21" is an inventory that
 * asked EIDs 11 and 21, "M11" a monitor cycle. "=4" behind an inventory or a cycle makes it end
 * with this status. "!" behind any word brings a new endpoint table: in the pause, or when the work
 * has let go of the device and before it says what follows. */
class Story {
public:
    struct Step {
        std::string event;
        int status = 0;
        bool table = false;
    };

    explicit Story(const std::string& text);

    /** The step that is due; a quiet one behind the end. */
    Step Due() const;

    /** Notes what the device has done, and in which state. Nothing is noted behind the end. */
    void Note(const std::string& event, DeviceState state);

    /** Waits until as much has happened as was written. */
    bool WaitForEnd();

    /** What was written, and what has happened, as text. */
    std::string Written() const;
    std::string Happened() const;

    /** The state with the last step. */
    DeviceState LastState() const;

private:
    std::vector<Step> steps;
    mutable std::mutex mutex;
    std::condition_variable ended;
    std::vector<std::string> events;
    DeviceState state = DEVICE_CREATED;
};

/** Runs the real state machine, and real commands over a played link, through a story. The work of
 *  an inventory is GatherInventory, that of a cycle one command to each endpoint. */
class StagedDevice : public Device {
public:
    /** Endpoints are texts such as "v11 i12": medium and EID. An endpoint's BDF is its EID; bus
     *  address and instance are the EID's last digit.
     *  @param now the endpoints at first
     *  @param next those of the table that may come
     *  @param story outlives this */
    StagedDevice(const std::string& ldid, const std::string& now, std::string next, Story& story);
    ~StagedDevice() override;

protected:
    void InventoryTheDevice() override;
    VantricStatus MonitorTheDevice() override;

private:
    void Work(const char* kind, const Story::Step& due);
    int Answer(MctpLinkRequest& request, const Story::Step& due);
    void Rest(std::chrono::seconds duration);
    void BringTable();
    void AwaitTable();

    Story& story;
    std::string next;
    PlayedCard card;            ///< behind every EID
    std::string askedEids;      ///< in the order of their first request
    std::thread callbackThread; ///< the library's, with a table
};

} // namespace vantric::test
