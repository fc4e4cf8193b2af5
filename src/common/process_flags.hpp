// SPDX-License-Identifier: Apache-2.0
/** The few flags that the whole process shares. docs/architecture.md has their writers and readers.
 */
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace vantric {

/** Values of hostPowerState; any other value than HOST_POWER_OFF counts as powered. */
enum HostPower : std::uint32_t {
    HOST_POWER_OFF = 0,
    HOST_POWER_ON = 1,
    HOST_POWER_UNKNOWN = 4,
};

/** Values of mctpDiscoveryState. */
enum MctpDiscovery : std::uint32_t {
    MCTP_TABLE_DELIVERED = 2,
    MCTP_DISCOVERY_STARTED = 3,
    MCTP_NO_TABLE_YET = 4,
};

/** True once both signal matches of the D-Bus side stand. Guarded by dbusReadyMutex. */
extern bool dbusReady;
extern std::mutex dbusReadyMutex;
extern std::condition_variable dbusReadyCond;

/** Host power as last heard. Written by ReportHostPower only. */
extern std::atomic<std::uint32_t> hostPowerState;
/** Counts the power offs heard of, so that none is missed. Guarded by hostPowerMutex. */
extern std::uint64_t hostPowerOffs;
extern std::mutex hostPowerMutex;
extern std::condition_variable hostPowerCond;

/** Takes in what was heard of host power and wakes who waits on hostPowerCond. Any thread. */
void ReportHostPower(HostPower power);

/** Where the MCTP discovery stands. Written and read by the endpoint table callback. */
extern std::atomic<std::uint32_t> mctpDiscoveryState;

/** True from a discovery's start to the next good table. */
extern std::atomic<bool> mctpDiscoveryRunning;

/** True while a new endpoint table wants to reach a device: whoever times out gives way. */
extern std::atomic<bool> useNewEndPoints;

} // namespace vantric
