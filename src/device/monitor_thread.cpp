/** The state machine that a device's thread runs. */
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/status.hpp"

#include <chrono>

namespace vantric {

namespace {

constexpr std::chrono::seconds stepPause{5};
constexpr std::chrono::seconds switchPause{10};
constexpr std::int64_t waitAfterFailure = 120; // seconds

} // namespace

void Device::InvMonThread() {
    while (running) {
        switch (state) {
        case DEVICE_INVENTORY:
            InventoryTheDevice();
            break;
        case DEVICE_MONITORING:
            MonitorStep();
            break;
        case DEVICE_SWITCH_TO_I2C:
            SwitchStep();
            break;
        case DEVICE_WAITING:
            WaitStep();
            break;
        default:
            Pause(stepPause);
            break;
        }
    }
}

void Device::MonitorStep() {
    const VantricStatus status = MonitorTheDevice();
    switch (status) {
    case STATUS_SUCCESS:
        break;
    case STATUS_NEW_END_POINTS:
        Pause(stepPause);
        break;
    case STATUS_INVALID_OR_CHANGED:
        state = DEVICE_INVENTORY;
        break;
    case STATUS_COMMAND_FAILED:
    case STATUS_DEVICE_NOT_READY:
        VANTRIC_LOG(LOG_LEVEL_WARNING, "Device is either not ready or command failed status = %d\n",
                    status);
        break;
    default:
        LeaveFailedEndpoints(status);
        break;
    }
}

void Device::LeaveFailedEndpoints(VantricStatus status) {
    const auto lock = Acquire();
    if (generation != workGeneration) {
        return; // what failed has been replaced meanwhile
    }
    if (status != STATUS_DISCOVERY_RUNNING && useI2C) {
        StartWaiting();
        return;
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE,
                "Warm Reboot or VDM communication failed! Use I2C EP for Slot[%d]\n", slotNumber);
    UseI2C_EIDs();
}

void Device::SwitchStep() {
    {
        const auto lock = Acquire();
        if (state != DEVICE_SWITCH_TO_I2C) {
            return; // a table came first
        }
        if (!useI2C) {
            UseI2C_EIDs();
            return;
        }
    }
    Pause(switchPause);
}

void Device::WaitStep() {
    if (waitSeconds > 0) {
        waitSeconds -= stepPause.count();
        VANTRIC_LOG(LOG_LEVEL_TRACE,
                    "Device in Slot %d waiting %ld seconds before next monitor attempt\n",
                    slotNumber, waitSeconds);
    } else {
        // Only if no table has ended the wait in another way meanwhile.
        DeviceState expected = DEVICE_WAITING;
        state.compare_exchange_strong(expected, DEVICE_MONITORING);
    }
    Pause(stepPause);
}

void Device::StartWaiting() {
    state = DEVICE_WAITING;
    waitSeconds = waitAfterFailure;
}

} // namespace vantric
