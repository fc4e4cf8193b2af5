/** One PCIe add-in device and its thread. */
#pragma once

#include "device/device_details.hpp"
#include "modeling/modeling.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "publisher/publisher.hpp"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
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

/** A device with its endpoints, its controllers and its monitor thread.
 *
 * Its own thread works on it, the callback thread of the MCTP client library in Initialize,
 * UpdateEIDTables and Stop, and the device manager's thread in Stop when the host's power is off.
 * deviceMutex orders them: it is held for a monitor cycle, for the commands of an inventory, and
 * while endpoints change. */
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
    bool UsesI2C() const { return useI2C; }
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

    /** True once in ten cycles; starts the next ten. */
    bool PeriodicCheckIsDue();

    /** Reads the endpoint's records again if its repository has changed, and returns whether it
     *  has; false also where that failed. */
    static bool RepositoryHasChanged(PLDMCmds& endpoint);

    /** True in one turn of six. */
    bool StateSensorsAreDue() const;

    /** Reads the endpoint's state sensors and hands what has changed to their objects. */
    void RefreshStateSensors(PLDMCmds& endpoint, std::uint8_t controller);

    /** Hands readings to their objects. */
    void PublishReadings(const ReadingMap& readings, std::uint8_t controller);

    /** Logs that a cycle ends with this status and returns it. */
    VantricStatus FailedCycle(VantricStatus status) const;

    /** Makes the pause between two cycles; without deviceMutex. Returns status 0. */
    static VantricStatus PauseAfterCycle();

    /** Reads the endpoint's firmware version and keeps it, also if it is empty.
     *  @param publish whether the inventory objects get it too, unless it is empty */
    void RefreshFWVersion(PLDMCmds& endpoint, bool publish);

    /** Posts the object of a controller; index counts from 1. */
    void UpdateControllerInvData(std::uint8_t index);

    /** Takes deviceMutex for the commands of an inventory or of a monitor cycle. Monitor thread. */
    std::unique_lock<std::mutex> BeginWork();

    const BusDoors doors;
    std::uint16_t slotNumber;
    std::vector<EID_table> mI2C_EIDs;
    std::vector<EID_table> mVDM_EIDs;
    std::string inventoryBasePath;
    PciIdentity identity;
    std::uint16_t cpuAffinity;
    std::atomic<DeviceState> state{DEVICE_CREATED};
    std::string ldid;
    std::atomic<bool> running{false};
    std::map<std::uint8_t, std::uint16_t> controllerEIDMap; ///< index to EID; deviceMutex
    std::vector<std::unique_ptr<PLDMCmds>> cmds; ///< one for each controller, in index order
    std::unique_ptr<Modeling> modeling;
    std::uint8_t monitorCycles = 0;     ///< cycles since the last firmware and PDR check
    std::uint8_t stateSensorCycles = 0; ///< cycles since state sensors were last read
    std::string firmwareVersion;
    std::atomic<bool> useI2C{false};
    std::atomic<bool> fwUpdateInProgress{false};
    std::int64_t waitSeconds = 0; ///< what is left in DEVICE_WAITING; monitor thread

private:
    void InvMonThread();
    void MonitorStep();
    void SwitchStep();
    void WaitStep();
    void StartWaiting();
    void LeaveFailedEndpoints(VantricStatus status);
    // These five are called with deviceMutex held, or before the monitor thread exists.
    void UseI2C_EIDs();
    void Update_Controller_EID_Map();
    void OrderVdmControllers();
    void OrderI2cControllers();
    void ResetControllerEIDs();
    VantricStatus GatherEndpoint(PLDMCmds& endpoint);
    void FRUInventory(PLDMCmds& endpoint);
    void UpdateFWVersion(const std::string& version);
    std::string ObjectPath() const;
    bool IsEmbedded() const;

    /** Takes deviceMutex, after whoever asked for it before. Any thread. */
    std::unique_lock<std::mutex> Acquire();

    std::mutex deviceMutex;
    /// Held only while waiting for deviceMutex: who waits there blocks those who come later, so
    /// that a monitor thread that starts its next cycle at once can't overtake a waiting table.
    std::mutex turnMutex;
    std::uint32_t generation = 0;     ///< endpoint tables taken over; deviceMutex
    std::uint32_t workGeneration = 0; ///< generation when the current work began; deviceMutex
    std::map<std::uint8_t, std::uint16_t> workControllers; ///< those it began with; deviceMutex
    bool gaveWay = false; ///< the last inventory ended for a new table; monitor thread
    std::thread monitorThread;
};

} // namespace vantric
