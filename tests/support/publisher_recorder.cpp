// SPDX-License-Identifier: Apache-2.0
#include "support/publisher_recorder.hpp"

#include <mutex>
#include <utility>

namespace vantric::test {

namespace {

class Recorder : public Publisher, public UdidReader {
public:
    PostResult InsertSensor(SensorInsertRequest request) override {
        return Keep(__func__, &PostedRequests::sensors, std::move(request));
    }
    PostResult SetSensorValue(SensorValueRequest request) override {
        return Keep(__func__, &PostedRequests::values, std::move(request));
    }
    PostResult InsertStateSensor(StateSensorRequest request) override {
        return Keep(__func__, &PostedRequests::stateSensors, std::move(request));
    }
    PostResult SetStateSensorValue(StateSensorRequest request) override {
        return Keep(__func__, &PostedRequests::states, std::move(request));
    }
    PostResult InsertFruInventory(FruInventoryRequest request) override {
        return Keep(__func__, &PostedRequests::fruInventories, std::move(request));
    }
    PostResult InsertPlainInventory(PlainInventoryRequest request) override {
        return Keep(__func__, &PostedRequests::plainInventories, std::move(request));
    }
    PostResult UpdateControllerInventory(ControllerRequest request) override {
        return Keep(__func__, &PostedRequests::controllers, std::move(request));
    }
    PostResult UpdateFWVersion(FirmwareRequest request) override {
        return Keep(__func__, &PostedRequests::firmware, std::move(request));
    }
    PostResult UpdateDeviceHealthStatus(HealthStatusRequest request) override {
        return Keep(__func__, &PostedRequests::healths, std::move(request));
    }
    PostResult Clear(ClearRequest request) override {
        return Keep(__func__, &PostedRequests::clears, std::move(request));
    }
    PostResult ResetNumbering() override {
        const std::scoped_lock lock(mutex);
        posted.order.emplace_back(__func__);
        return PostResult(0);
    }

    std::string getUDIDPropertyVal(std::uint8_t /*slot*/,
                                   std::uint8_t /*busAddress*/) const override {
        return {};
    }

    PostedRequests Take() {
        const std::scoped_lock lock(mutex);
        return std::exchange(posted, {});
    }

    void SetResult(int next) {
        const std::scoped_lock lock(mutex);
        result = next;
    }

private:
    template <typename Record>
    PostResult Keep(const char* operation, std::vector<Record> PostedRequests::*list,
                    Record request) {
        const std::scoped_lock lock(mutex);
        if (result == 0) {
            posted.order.emplace_back(operation);
            (posted.*list).push_back(std::move(request));
        }
        return PostResult(result);
    }

    std::mutex mutex;
    PostedRequests posted;
    int result = 0;
};

Recorder& TheRecorder() {
    static Recorder recorder;
    return recorder;
}

} // namespace

BusDoors RecordingDoors() {
    return {.publisher = TheRecorder(), .udids = TheRecorder()};
}

PostedRequests TakePosted() {
    return TheRecorder().Take();
}

void SetPostResult(int result) {
    TheRecorder().SetResult(result);
}

} // namespace vantric::test
