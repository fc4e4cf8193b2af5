// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/platform_callbacks.hpp"

#include "common/log.hpp"
#include "common/process_flags.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/platform_reads.hpp"

#include <sdbusplus/message/native_types.hpp>

#include <string_view>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

namespace vantric {

namespace {

/** What the properties of a signal may hold. */
using PropertyValue =
    std::variant<std::vector<std::string>, std::string, std::int64_t, std::uint64_t, double,
                 std::int32_t, std::uint32_t, std::int16_t, std::uint16_t, std::uint8_t, bool>;

void TakeHostState(std::string_view state) {
    if (state.find("TransitioningToOff") != std::string_view::npos) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "HOST_POWER_OFF\n");
        ReportHostPower(HOST_POWER_OFF);
    } else if (state.find("Running") != std::string_view::npos) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "HOST_POWER_ON\n");
        ReportHostPower(HOST_POWER_ON);
    }
}

/** The slot of a path that ends in PCIESLOT7_FRU or PCIESLOT7.
 *  @throws std::exception if there is no number where it should stand. */
std::uint8_t SlotOf(const std::string& path) {
    const auto begin = path.find_last_of("PCIESLOT") + 1;
    const auto underscore = path.rfind('_');
    const auto end =
        underscore == std::string::npos || underscore < begin ? path.size() : underscore;
    return static_cast<std::uint8_t>(std::stoi(path.substr(begin, end - begin)));
}

} // namespace

void HostPowerStatusCB(sdbusplus::message_t& message) {
    try {
        const char* member = message.get_member();
        if (message.is_method_error() || member == nullptr ||
            std::string_view(member) != "PropertiesChanged") {
            return;
        }
        std::string interface;
        std::vector<std::pair<std::string, PropertyValue>> changed;
        message.read(interface, changed);
        for (const auto& [name, value] : changed) {
            const auto* state = std::get_if<std::string>(&value);
            if (name == "CurrentHostState" && state != nullptr) {
                TakeHostState(*state);
            }
        }
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "failed to read message err[%s]\n", error.what());
    }
}

void FRUEventCallback(sdbusplus::message_t& message) {
    try {
        sdbusplus::message::object_path path;
        message.read(path);
        if (path.str.find(fruPath) == std::string::npos) {
            return;
        }
        std::thread(&PublishedObjects::UpdateSensorType, &DBusHandler::instance().Objects(),
                    SlotOf(path.str))
            .detach();
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "failed to read message err[%s]\n", error.what());
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "failed to read message\n");
    }
}

} // namespace vantric
