// SPDX-License-Identifier: Apache-2.0
#include "sensorstore.hpp"

#include "sensorstore_reader.hpp"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <set>
#include <vector>

namespace {

/** Every probe object has the same few property names, types and services: one copy serves all. */
class Words {
public:
    const std::string* Of(const std::string& text) { return &*words.insert(text).first; }

private:
    std::set<std::string> words;
};

struct Property {
    const std::string* name;
    SensorStoreValue value;
};

struct Object {
    std::vector<Property> properties;
    std::size_t reporters = 0; ///< probe objects that report to it
    bool created = false;      ///< came in through sensorstore_probeobj_create: stays until removed

    Property* Find(const std::string& name) {
        const auto found = std::ranges::find_if(
            properties, [&name](const auto& property) { return *property.name == name; });
        return found == properties.end() ? nullptr : &*found;
    }
};

using Objects = std::map<std::string, Object>;

struct Target {
    const std::string* type;
    const std::string* service;
    std::string path;
};

/** Everything that the store holds. It lives as long as the process, so that probe objects that go
 *  away during the process's exit still find it. */
struct Store {
    std::mutex mutex;
    Words words;
    Objects objects;
    std::map<std::string, Target> keys;
    std::map<const SensorStoreCluster*, std::vector<Objects::iterator>> reported;

    void Set(Object& object, const std::string& name, const SensorStoreValue& value) {
        if (Property* known = object.Find(name)) {
            known->value = value;
        } else {
            object.properties.push_back({words.Of(name), value});
        }
    }

    /** Forgets an object without a keeper. */
    void Release(Objects::iterator object) {
        if (!object->second.created && object->second.reporters == 0) {
            objects.erase(object);
        }
    }
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
    for (const auto object : own->second) {
        object->second.reporters -= 1;
        store.Release(object);
    }
    store.reported.erase(own);
}

void SensorStoreCluster::PropertyChanged(const std::string& path, const std::string& property,
                                         const SensorStoreValue& value) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto object = store.objects.try_emplace(path).first;
    store.Set(object->second, property, value);
    auto& own = store.reported[this];
    if (std::ranges::find(own, object) == own.end()) {
        own.push_back(object);
        object->second.reporters += 1;
    }
}

int SensorStoreKeys::set_key(const std::string& key, const std::string& type,
                             const std::string& path, const std::string& service) {
    if (key.empty() || path.empty()) {
        return -EINVAL;
    }
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    store.keys.insert_or_assign(key, Target{store.words.Of(type), store.words.Of(service), path});
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
    Object& object = store.objects[path];
    if (object.created) {
        return -EEXIST;
    }
    object.created = true;
    object.properties.clear();
    for (const auto& [name, value] : values) {
        store.Set(object, name, value);
    }
    return 0;
}

int sensorstore_probeobj_set_property(const std::string& path, const std::string& property,
                                      const SensorStoreValue& value) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto object = store.objects.find(path);
    if (object == store.objects.end() || !object->second.created) {
        return -ENOENT;
    }
    const Property* known = object->second.Find(property);
    if (known != nullptr && known->value.index() != value.index()) {
        return -EINVAL; // readers count on a property keeping its type
    }
    store.Set(object->second, property, value);
    return 0;
}

int sensorstore_probeobj_remove(const std::string& path) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto object = store.objects.find(path);
    if (object == store.objects.end() || !object->second.created) {
        return -ENOENT;
    }
    object->second.created = false;
    object->second.properties.clear();
    store.Release(object);
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
    const Property* found = object == store.objects.end() ? nullptr : object->second.Find(property);
    return found == nullptr ? std::nullopt : std::optional(found->value);
}

std::optional<SensorStoreObject> sensorstore_find_object(const std::string& key) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    const auto found = store.keys.find(key);
    if (found == store.keys.end()) {
        return std::nullopt;
    }
    const auto& [type, service, path] = found->second;
    return SensorStoreObject{*type, path, *service};
}
