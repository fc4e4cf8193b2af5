// SPDX-License-Identifier: Apache-2.0
/** Sensor data cache of the platform: keeps the values of probe objects for its other readers.
 *
 * Every call may be made from any thread. Calls that return int return 0 on success. */
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <variant>

/** A property value on its way to the cache. */
using SensorStoreValue =
    std::variant<int32_t, std::string,
                 std::tuple<int32_t, int32_t, int32_t, int32_t, int32_t, int32_t>, uint16_t,
                 uint32_t, uint8_t>;

/** Base of every probe object: reports its changes to the cache. */
class SensorStoreCluster {
public:
    SensorStoreCluster();
    virtual ~SensorStoreCluster();
    SensorStoreCluster(const SensorStoreCluster&) = delete;
    SensorStoreCluster& operator=(const SensorStoreCluster&) = delete;

    /** Tells the cache that a property of the object at path has a new value. */
    void PropertyChanged(const std::string& path, const std::string& property,
                         const SensorStoreValue& value);
};

/** Keys under which the cache finds objects. */
struct SensorStoreKeys {
    /** Makes key resolve to the object of the given type at path of service. */
    static int set_key(const std::string& key, const std::string& type, const std::string& path,
                       const std::string& service);
    /** Makes key resolve to nothing. */
    static int remove(const std::string& key);
};

/** Makes the object at path known to the cache, with its first values. */
int sensorstore_probeobj_create(const std::string& path,
                                const std::map<std::string, SensorStoreValue>& values);

/** Offers a new value to the cache. Non-zero: the cache refused it. */
int sensorstore_probeobj_set_property(const std::string& path, const std::string& property,
                                      const SensorStoreValue& value);

/** Makes the cache forget the object at path. */
int sensorstore_probeobj_remove(const std::string& path);

/** The name of the service that serves the objects of this process. */
std::string sensorstore_service();
