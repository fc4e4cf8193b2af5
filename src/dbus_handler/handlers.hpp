// SPDX-License-Identifier: Apache-2.0
/** The functions that carry requests out on the main thread, each bound to the record it takes. */
#pragma once

#include "common/log.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "publisher/publisher.hpp"

#include <oneway_channel.hpp>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vantric {

/** Result of a post for which there is no channel. */
inline constexpr int requestNotTaken = -1;

/** A text as a template argument. */
template <std::size_t size>
struct FixedText {
    consteval FixedText(const char (&source)[size]) { std::ranges::copy(source, text); }

    char text[size]{};
};

/** The record that a piece of work takes. */
template <typename Record>
Record RecordOf(void (PublishedObjects::*work)(const Record&));

/** A kind of request: a function for the channel, and the only way to post to it.
 *
 * @tparam name        the function's name in log lines
 * @tparam work        the operation of PublishedObjects that it ends in
 * @tparam nullText    what is logged where there is no record
 * @tparam neededPath  the field of the record without which the work can't begin; null: none
 * @tparam pathText    what is logged where that field is empty */
template <FixedText name, auto work, FixedText nullText = "requestData or requestSize is null",
          auto neededPath = nullptr, FixedText pathText = "">
class Handler {
public:
    using Record = decltype(RecordOf(work));

    /** Does the work for a Record, which it owns. Main thread.
     *  @return 0, or -1 for a request that can't be begun with; the failures of the work itself are
     *          logged and don't change the result. Without a record it releases nothing. */
    static int Function(void* /*context*/, void* requestData, unsigned long requestSize) {
        if (requestData == nullptr || requestSize == 0) {
            return Refuse(nullText.text);
        }
        const std::unique_ptr<const Record> record(static_cast<const Record*>(requestData));
        if constexpr (neededPath != nullptr) {
            if (std::invoke(neededPath, *record).empty()) {
                return Refuse(pathText.text);
            }
        }
        std::invoke(work, DBusHandler::instance().Objects(), *record);
        return 0;
    }

    /** Copies the record to the heap and posts it to the main thread. Any thread, never waits; the
     *  function's own result reaches no caller. */
    static PostResult Post(Record record) {
        try {
            auto owned = std::make_unique<Record>(std::move(record));
            const int result =
                OneWayChannel::GetInstance().Execute(Function, owned.get(), sizeof(Record), false);
            if (result == 0) {
                static_cast<void>(owned.release()); // the function frees it
            }
            return PostResult(result);
        } catch (const std::exception&) {
            // A channel that can't be made must not end the poster's thread.
            return PostResult(requestNotTaken);
        }
    }

private:
    static int Refuse(const char* why) {
        tracelog_printf(LOG_LEVEL_ERROR, logModule, "%s:%s:%s:%u:%s\n", get_thread_name(),
                        __FILE_NAME__, name.text, static_cast<unsigned>(__LINE__), why);
        return -1;
    }
};

inline constexpr Handler<"dbusDataInsert", &PublishedObjects::InsertSensor, "Required data is null",
                         &SensorInsertRequest::objectPath, "Path is NULL!">
    dbusDataInsert;
inline constexpr Handler<"dbusSetSensorValue", &PublishedObjects::SetSensorValue>
    dbusSetSensorValue;
inline constexpr Handler<"dbusStateSensorDataInsert", &PublishedObjects::InsertStateSensor,
                         "requestData or requestSize is null", &StateSensorRequest::statePath,
                         "Dbus path emtpy!">
    dbusStateSensorDataInsert;
inline constexpr Handler<"dbusSetStateSensorValue", &PublishedObjects::SetStateSensorValue>
    dbusSetStateSensorValue;
inline constexpr Handler<"dbusUpdateDeviceHealthStatus",
                         &PublishedObjects::UpdateDeviceHealthStatus>
    dbusUpdateDeviceHealthStatus;
inline constexpr Handler<"dbusInvDataInsert", &PublishedObjects::InsertPlainInventory>
    dbusInvDataInsert;
inline constexpr Handler<"dbusFruDataInsert", &PublishedObjects::InsertFruInventory>
    dbusFruDataInsert;
inline constexpr Handler<"dbusControllerData", &PublishedObjects::UpdateControllerInventory>
    dbusControllerData;
inline constexpr Handler<"dbusFWDataUpdate", &PublishedObjects::updateFWVersion> dbusFWDataUpdate;
inline constexpr Handler<"dbusClear", &PublishedObjects::Clear> dbusClear;
inline constexpr Handler<"dbusResetNumbering", &PublishedObjects::ForgetNumbering>
    dbusResetNumbering;
inline constexpr Handler<"dbusRetypeSensors", &PublishedObjects::RetypeSensors> dbusRetypeSensors;

} // namespace vantric
