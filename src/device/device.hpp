// SPDX-License-Identifier: Apache-2.0
/** One PCIe add-in device and its thread. */
#pragma once

#include "device/cycle_counter.hpp"
#include "device/endpoints.hpp"
#include "modeling/modeling.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "publisher/publisher.hpp"
#include "vocabulary/timing.hpp"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace vantric {

/** Where a device's thread stands. docs/architecture.md has the picture. */
enum DeviceState : std::int32_t {
    DEVICE_CREATED = 1,       ///< until Initialize
    DEVICE_INVENTORY = 2,     ///< the next step is an inventory
    DEVICE_MONITORING = 3,    ///< the next step is a monitor cycle
    DEVICE_SWITCH_TO_I2C = 4, ///< inventory has failed, or I2C has nothing to offer
    DEVICE_WAITING = 5,       ///< I2C failed too: wait, then try monitoring again
    DEVICE_STOPPED = 6,       ///< about to be removed
};

/** What becomes of the firmware version that is read. */
enum class FirmwareUse {
    KEEP,   ///< it is for the inventory object that comes next
    PUBLISH ///< the inventory objects get it, unless it is empty
};

/** A device's state machine, and the thread that runs it.
 *
 * Its own thread works on it, the callback thread of the MCTP client library in Initialize,
 * UpdateEIDTables and Stop, and the device manager's thread in Stop when the host's power is off.
 * The mutex of its endpoints orders them. */
class Device {
public:
    /** @param details what discovery learned
     *  @param basePath inventory path of the device's class, ends in a slash
     *  @param doors to the bus side; they outlive this */
    Device(const DeviceDetails& details, std::string basePath, const BusDoors& doors);

    /** Removes the device's objects from the bus. The device must have been stopped. */
    virtual ~Device();

    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    /** Orders the endpoints into controllers, makes what serves them and starts the monitor thread.
     *  Called once, on the callback thread, right after construction. */
    void Initialize();

    /** Tells the monitor thread to end and waits for it. Nothing interrupts a running step, so this
     *  can take as long as a monitor cycle or an inventory. */
    void Stop();

    /** Takes over the endpoints of a new table. Callback thread; waits for the monitor thread to
     *  let go of the device, which useNewEndPoints hastens. */
    void UpdateEIDTables(std::vector<EID_table> i2cEIDs, std::vector<EID_table> vdmEIDs);

    /** Any thread. */
    DeviceState State() const { return state; }
    void SetState(DeviceState next) { state = next; }
    bool UsesI2C() const { return endpoints.UsesI2C(); }
    void SetFwUpdateInProgress(bool inProgress) { fwUpdateInProgress = inProgress; }

protected:
    /** One inventory pass; sets state. Monitor thread. */
    virtual void InventoryTheDevice() = 0;

    /** One monitor cycle. Monitor thread. Returns its status. */
    virtual VantricStatus MonitorTheDevice() = 0;

    /** Runs the PLDM sequence on every endpoint. Returns 0, or 1 when a step failed that the
     *  inventory can't do without. Monitor thread. */
    VantricStatus GatherInventory();

    /** Ends a successful inventory: on to monitoring, or to another inventory if a table has
     *  rearranged several controllers since it began. Monitor thread.
     *  @param outcome the word for success in the log line */
    void FinishInventory(const char* outcome = "successful");

    /** Decides what follows a failed inventory: another one if it gave way to a new table, or if a
     *  table has brought new endpoints since it began; else the change to I2C. Monitor thread. */
    void GiveUpInventory();

    // Pieces of a monitor cycle. Monitor thread, with deviceMutex held unless told otherwise.

    /** Reads the endpoint's records again if its repository has changed, and returns whether it
     *  has; false also where that failed. */
    static bool ReadChangedRepository(PLDMCmds& endpoint);

    /** Reads the endpoint's state sensors and hands what has changed to their objects. */
    void RefreshStateSensors(PLDMCmds& endpoint, const Controller& controller);

    /** Hands readings to their objects. */
    void PublishReadings(const ReadingMap& readings, const Controller& controller);

    /** Logs that a cycle ends with this status and returns it. */
    VantricStatus FailedCycle(VantricStatus status) const;

    /** Makes the pause between two cycles; without deviceMutex. Returns status 0. */
    static VantricStatus PauseAfterCycle();

    /** Reads the endpoint's firmware version and keeps it, also if it is empty. */
    void RefreshFWVersion(PLDMCmds& endpoint, FirmwareUse use);

    /** The device's controller of this number, from 1. */
    Controller ControllerAt(std::uint8_t number) const {
        return cmds.size() == 1 ? onlyController : OneOfSeveral(number);
    }

    /** Posts the object of a controller. */
    void UpdateControllerInvData(const Controller& controller);

    /** Inventory path of the device. */
    std::string ObjectPath() const { return inventoryBasePath + std::to_string(slotNumber); }

    const BusDoors doors;
    const std::uint16_t slotNumber;
    const std::string ldid;
    const std::string inventoryBasePath;
    const PciIdentity identity;
    const std::uint16_t cpuAffinity;
    Endpoints endpoints;
    std::atomic<DeviceState> state{DEVICE_CREATED};
    std::vector<std::unique_ptr<PLDMCmds>> cmds; ///< one for each controller, in index order
    std::unique_ptr<Modeling> modeling;
    CycleCounter monitorCycles{cyclesBetweenChecks, 0}; ///< since the firmware and PDR check
    CycleCounter stateSensorCycles{cyclesBetweenStates, cyclesBetweenStates};
    std::atomic<bool> fwUpdateInProgress{false};

private:
    void InvMonThread();
    void MonitorStep();
    void SwitchStep();
    void WaitStep();
    void LeaveFailedEndpoints(VantricStatus status);
    // These three are called with deviceMutex held.
    void UseI2C_EIDs();
    void StartWaiting();
    void ResetControllerEIDs();
    VantricStatus GatherEndpoint(PLDMCmds& endpoint);
    void FRUInventory(PLDMCmds& endpoint);
    void UpdateFWVersion(const std::string& version);

    std::atomic<bool> running{false};
    std::string firmwareVersion;
    std::chrono::seconds waitSeconds{0}; ///< what is left in DEVICE_WAITING; monitor thread
    bool gaveWay = false; ///< the last inventory ended for a new table; monitor thread
    std::thread monitorThread;
};

} // namespace vantric
