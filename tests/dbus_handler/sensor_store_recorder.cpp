// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/sensor_store_recorder.hpp"

#include <sensorstore.hpp>

#include <utility>

namespace vantric::test {

namespace {

std::vector<std::string> calls;

struct ToText {
    std::string operator()(const std::string& text) const { return text; }
    template <typename Number>
    std::string operator()(Number number) const {
        return std::to_string(number);
    }
    template <typename... Numbers>
    std::string operator()(const std::tuple<Numbers...>& numbers) const {
        return std::apply([](auto... number) { return ((std::to_string(number) + ";") + ...); },
                          numbers);
    }
};

std::string Text(const SensorStoreValue& value) {
    return std::to_string(value.index()) + ":" + std::visit(ToText(), value);
}

} // namespace

std::vector<std::string> TakeStoreCalls() {
    return std::exchange(calls, {});
}

} // namespace vantric::test

using vantric::test::calls;

SensorStoreCluster::SensorStoreCluster() {
    calls.push_back("cluster");
}

SensorStoreCluster::~SensorStoreCluster() {
    calls.push_back("~cluster");
}

void SensorStoreCluster::PropertyChanged(const std::string& path, const std::string& property,
                                         const SensorStoreValue& value) {
    calls.push_back("changed " + path + " " + property + "=" + vantric::test::Text(value));
}

int SensorStoreKeys::set_key(const std::string& key, const std::string& type,
                             const std::string& path, const std::string& service) {
    calls.push_back("set_key " + key + " " + type + " " + path + " " + service);
    return 0;
}

int SensorStoreKeys::remove(const std::string& key) {
    calls.push_back("remove_key " + key);
    return 0;
}

int sensorstore_probeobj_create(const std::string& path,
                                const std::map<std::string, SensorStoreValue>& /*values*/) {
    calls.push_back("create " + path);
    return 0;
}

int sensorstore_probeobj_set_property(const std::string& path, const std::string& property,
                                      const SensorStoreValue& /*value*/) {
    calls.push_back("set " + path + " " + property);
    return 0;
}

int sensorstore_probeobj_remove(const std::string& path) {
    calls.push_back("remove " + path);
    return 0;
}

std::string sensorstore_service() {
    return "store";
}
