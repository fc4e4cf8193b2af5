// SPDX-License-Identifier: Apache-2.0
/** The state machine that a device's thread runs; and with it when a device goes to I2C. */
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/process_flags.hpp"
#include "common/status.hpp"

namespace vantric {

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
            Pause(idlePause);
            break;
        }
    }
}

void Device::FinishInventory(const char* outcome) {
    {
        const auto lock = endpoints.Acquire();
        if (!endpoints.SeveralMovedSinceWorkBegan()) {
            state = DEVICE_MONITORING;
        }
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Inventory %s for slot %d\n", outcome, slotNumber);
}

void Device::GiveUpInventory() {
    bool newEndPoints = false;
    {
        // The table's thread may have come and gone since a command gave way to it, for this device
        // or for another: then its flag is clear again.
        const auto lock = endpoints.Acquire();
        newEndPoints = gaveWay || useNewEndPoints || endpoints.HaveChangedSinceWorkBegan();
        state = newEndPoints ? DEVICE_INVENTORY : DEVICE_SWITCH_TO_I2C;
    }
    if (newEndPoints) {
        Pause(retryPause);
    } else {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "PLDM Inventory failed for slot %d\n", slotNumber);
    }
}

void Device::MonitorStep() {
    const VantricStatus status = MonitorTheDevice();
    switch (status) {
    case STATUS_SUCCESS:
        break;
    case STATUS_NEW_END_POINTS:
        Pause(retryPause);
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
    const auto lock = endpoints.Acquire();
    if (endpoints.HaveChangedSinceWorkBegan()) {
        return; // what failed has been replaced meanwhile
    }
    if (status != STATUS_DISCOVERY_RUNNING && endpoints.UsesI2C()) {
        StartWaiting();
        return;
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE,
                "Warm Reboot or VDM communication failed! Use I2C EP for Slot[%d]\n", slotNumber);
    UseI2C_EIDs();
}

void Device::UseI2C_EIDs() {
    if (endpoints.UseI2C_EIDs()) {
        ResetControllerEIDs();
    } else if (state == DEVICE_MONITORING) {
        StartWaiting();
    } else {
        state = DEVICE_SWITCH_TO_I2C;
    }
}

void Device::SwitchStep() {
    {
        const auto lock = endpoints.Acquire();
        if (state != DEVICE_SWITCH_TO_I2C) {
            return; // a table came first
        }
        if (!endpoints.UsesI2C()) {
            UseI2C_EIDs();
            return;
        }
    }
    Pause(switchPause);
}

void Device::StartWaiting() {
    state = DEVICE_WAITING;
    waitSeconds = waitAfterFailure;
}

void Device::WaitStep() {
    if (waitSeconds.count() > 0) {
        waitSeconds -= idlePause;
        VANTRIC_LOG(LOG_LEVEL_TRACE,
                    "Device in Slot %d waiting %ld seconds before next monitor attempt\n",
                    slotNumber, static_cast<long>(waitSeconds.count()));
    } else {
        // Only if no table has ended the wait in another way meanwhile.
        DeviceState expected = DEVICE_WAITING;
        state.compare_exchange_strong(expected, DEVICE_MONITORING);
    }
    Pause(idlePause);
}

} // namespace vantric
