#include "devicemanager/minimal_nic.hpp"

#include "nicdevice/nic_device.hpp"

#include <mutex>
#include <utility>

namespace vantric {

namespace {

std::mutex hookMutex;
std::function<void(const test::NicStep&)> stepHook;

void Step(const test::NicStep& step) {
    std::unique_lock lock(hookMutex);
    const auto hook = stepHook;
    lock.unlock();
    if (hook) {
        hook(step);
    }
}

std::vector<std::uint16_t> Values(const Endpoints::Controllers& controllers) {
    std::vector<std::uint16_t> eids;
    for (const auto& [index, eid] : controllers) {
        eids.push_back(eid);
    }
    return eids;
}

} // namespace

namespace test {

void OnStep(std::function<void(const NicStep&)> hook) {
    const std::scoped_lock lock(hookMutex);
    stepHook = std::move(hook);
}

} // namespace test

NicDevice::NicDevice(const DeviceDetails& details, const std::string& basePath,
                     const BusDoors& doors)
    : Device(details, basePath, doors) {}

void NicDevice::InventoryTheDevice() {
    {
        const auto lock = endpoints.BeginWork();
        Step({slotNumber, Values(endpoints.ControllerEIDMap()), true, *this});
    }
    FinishInventory();
}

VantricStatus NicDevice::MonitorTheDevice() {
    {
        const auto lock = endpoints.BeginWork();
        Step({slotNumber, Values(endpoints.ControllerEIDMap()), false, *this});
    }
    return PauseAfterCycle();
}

} // namespace vantric
