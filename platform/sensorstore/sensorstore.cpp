#include "sensorstore.hpp"

#include "sensorstore_reader.hpp"

#include <cerrno>
#include <mutex>
#include <set>

namespace {

using Properties = std::map<std::string, SensorStoreValue>;

/// Everything that the store holds. It lives as long as the process, so that probe objects that go
/// away during the process's exit still find it.
struct Store {
    std::mutex mutex;
    std::map<std::string, Properties> objects;
    std::map<std::string, SensorStoreObject> keys;
    /// Objects that came in through sensorstore_probeobj_create and stay until they are removed.
    std::set<std::string> created;
    /// Objects that a probe object only reports to; they go with it.
    std::map<const SensorStoreCluster*, std::set<std::string>> reported;
};

Store& TheStore() {
    static auto* store = new Store;
    return *store;
}

} // namespace

SensorStoreCluster::SensorStoreCluster() = default;

SensorStoreCluster::~SensorStoreCluster() {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto own = store.reported.find(this);
    if (own == store.reported.end()) {
        return;
    }
    for (const std::string& path : own->second) {
        if (!store.created.contains(path)) {
            store.objects.erase(path);
        }
    }
    store.reported.erase(own);
}

void SensorStoreCluster::PropertyChanged(const std::string& path, const std::string& property,
                                         const SensorStoreValue& value) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    store.objects[path].insert_or_assign(property, value);
    store.reported[this].insert(path);
}

int SensorStoreKeys::set_key(const std::string& key, const std::string& type,
                             const std::string& path, const std::string& service) {
    if (key.empty() || path.empty()) {
        return -EINVAL;
    }
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    store.keys.insert_or_assign(key, SensorStoreObject{type, path, service});
    return 0;
}

int SensorStoreKeys::remove(const std::string& key) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    return store.keys.erase(key) == 0 ? -ENOENT : 0;
}

int sensorstore_probeobj_create(const std::string& path,
                                const std::map<std::string, SensorStoreValue>& values) {
    if (path.empty()) {
        return -EINVAL;
    }
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    if (!store.created.insert(path).second) {
        return -EEXIST;
    }
    store.objects.insert_or_assign(path, values);
    return 0;
}

int sensorstore_probeobj_set_property(const std::string& path, const std::string& property,
                                      const SensorStoreValue& value) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    if (!store.created.contains(path)) {
        return -ENOENT;
    }
    Properties& properties = store.objects[path];
    const auto known = properties.find(property);
    if (known != properties.end() && known->second.index() != value.index()) {
        return -EINVAL; // readers count on a property keeping its type
    }
    properties.insert_or_assign(property, value);
    return 0;
}

int sensorstore_probeobj_remove(const std::string& path) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    if (store.created.erase(path) == 0) {
        return -ENOENT;
    }
    store.objects.erase(path);
    return 0;
}

std::string sensorstore_service() {
    return "com.korv.zenth.vantricd";
}

std::optional<SensorStoreValue> sensorstore_find_value(const std::string& path,
                                                       const std::string& property) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto object = store.objects.find(path);
    if (object == store.objects.end()) {
        return std::nullopt;
    }
    const auto found = object->second.find(property);
    return found == object->second.end() ? std::nullopt : std::optional(found->second);
}

std::optional<SensorStoreObject> sensorstore_find_object(const std::string& key) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto found = store.keys.find(key);
    return found == store.keys.end() ? std::nullopt : std::optional(found->second);
}
