// SPDX-License-Identifier: Apache-2.0
/** What this library's own store holds, for readers inside the process.
 *
 * These calls belong to the default library alone; whatever takes its place has readers of its
 * own. Any thread. */
#pragma once

#include "sensorstore.hpp"

#include <optional>
#include <string>

/** The value last reported for a property, or nothing if the object or the property is unknown. */
std::optional<SensorStoreValue> sensorstore_find_value(const std::string& path,
                                                       const std::string& property);

/** What a key resolves to. */
struct SensorStoreObject {
    std::string type;
    std::string path;
    std::string service;
};

/** The object that a key stands for, or nothing. */
std::optional<SensorStoreObject> sensorstore_find_object(const std::string& key);
