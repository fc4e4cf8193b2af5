// SPDX-License-Identifier: Apache-2.0
/** How objects come to the bus: the private templates of PublishedObjects, for the files of this
 * folder that create objects. */
#pragma once

#include "common/log.hpp"
#include "dbus_handler/published_objects.hpp"

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace vantric {

/** Makes a path of LDIDs and names fit for the bus: "." and "-" become "_". */
inline void NormalisePath(std::string& path) {
    std::ranges::replace(path, '.', '_');
    std::ranges::replace(path, '-', '_');
}

/** Publishes an object at the path in its final form. One that exists stays untouched. A failure is
 *  logged and leaves no object.
 *  @param build  takes the path and returns the PropertyBags that the object starts with */
template <typename Composition, typename Build>
void PublishedObjects::createDbusObj(ObjectStore<Composition>& store, const std::string& ldid,
                                     std::string path, Build build) {
    NormalisePath(path);
    if (FindObject(store, ldid, path)) {
        return;
    }
    try {
        auto object = std::make_shared<Composition>(*bus, path, build(std::as_const(path)));
        Composition::Announced::EmitAdded(*object);
        const std::lock_guard lock(objectsMutex);
        store[ldid].try_emplace(std::move(path), std::move(object));
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s\n", error.what());
    }
}

} // namespace vantric
