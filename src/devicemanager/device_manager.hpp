// SPDX-License-Identifier: Apache-2.0
/** Which devices exist. */
#pragma once

#include "device/device.hpp"
#include "event_handler/event_handler.hpp"
#include "event_handler/mctp_client.hpp"

#include <any>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace vantric {

/** Owns every device: creates, updates and removes them as endpoint tables say, and removes all of
 *  them when the host goes off. One object, which lives as long as the process. */
class DeviceManager : public EventHandler {
public:
    /** What a table shows, by LDID. */
    using DiscoveredMap = std::map<std::string, DeviceDetails>;

    /** @param doors handed to every device; they outlive this */
    explicit DeviceManager(const BusDoors& doors) : doors(doors) {}

    /** Body of the thread "PLDM_DevMgr": waits for the D-Bus side, attaches to MCTP, subscribes to
     *  notifications and serves host power off. Never returns. */
    void DevMgrThread();

    /** Acts on an event, on the thread of the library that reported it. A table keeps that thread
     *  until its devices are made and the gone ones removed: at least 2 s for each of those. */
    void Update(EventKind kind, const std::any& payload) override;

    /** The devices that a table shows. Asks the PCIe table, changes nothing.
     *  @param payload of END_POINT_TABLE_UPDATED; anything else shows no device */
    DiscoveredMap filterPLDMSupportedDevices(const std::any& payload) const;

private:
    void createDevicesFromDiscoveredMap(const DiscoveredMap& discovered);
    /** Makes a device, or updates it. Returns false if its class isn't served. */
    bool createDevice(const std::string& ldid, const DeviceDetails& details);
    /** Returns false if there is no such device. */
    bool UpdateExistingDevice(const std::string& ldid, const DeviceDetails& details);
    void RemoveUndiscoveredDevices();
    void SetFwUpdateInProgress(bool inProgress);
    [[noreturn]] void DeleteDevicesThread();
    static std::uint64_t PowerOffsHeard();
    /** Removes all devices, unless that was done for as many power offs. With tableMutex. */
    void ServePowerOffs(std::uint64_t heard);
    void DeleteAllDevices();
    void TakeTable(const std::any& payload);

    const BusDoors doors;
    std::unique_ptr<MctpClient> mctpClient;
    std::mutex tableMutex; ///< one table or power off at a time; before devicesMutex
    std::unordered_map<std::string, std::shared_ptr<Device>> devices; ///< by LDID; devicesMutex
    std::mutex devicesMutex;                                          ///< before any deviceMutex
    std::vector<std::string> discoveredDevices;  ///< from the latest table; tableMutex
    std::uint64_t powerOffsServed = 0;           ///< of hostPowerOffs; hostPowerMutex
    std::atomic<bool> fwUpdateInProgress{false}; ///< as the latest notification has it
};

} // namespace vantric
