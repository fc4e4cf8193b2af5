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

/** Publishes what construct makes for the path in its final form. An object that exists stays
 *  untouched. A failure is logged and leaves no object.
 *  @param construct  takes the path and returns a shared pointer to the object */
template <typename Composition, typename Construct>
void PublishedObjects::createDbusObj(ObjectStore<Composition>& store, const std::string& ldid,
                                     std::string path, Construct construct) {
    NormalisePath(path);
    if (FindObject(store, ldid, path)) {
        return;
    }
    try {
        std::shared_ptr<Composition> object = construct(std::as_const(path));
        Composition::Announced::EmitAdded(*object);
        const std::lock_guard lock(objectsMutex);
        store[ldid].try_emplace(std::move(path), std::move(object));
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s\n", error.what());
    }
}

} // namespace vantric
