// SPDX-License-Identifier: Apache-2.0
#include "common/process_flags.hpp"

namespace vantric {

bool dbusReady = false;
std::mutex dbusReadyMutex;
std::condition_variable dbusReadyCond;

std::atomic<std::uint32_t> hostPowerState{HOST_POWER_UNKNOWN};
std::uint64_t hostPowerOffs = 0;
std::mutex hostPowerMutex;
std::condition_variable hostPowerCond;

void ReportHostPower(HostPower power) {
    const std::scoped_lock lock(hostPowerMutex);
    hostPowerState = power;
    if (power == HOST_POWER_OFF) {
        ++hostPowerOffs;
    }
    hostPowerCond.notify_all();
}

std::atomic<std::uint32_t> mctpDiscoveryState{MCTP_NO_TABLE_YET};
std::atomic<bool> mctpDiscoveryRunning{false};
std::atomic<bool> useNewEndPoints{false};

} // namespace vantric
