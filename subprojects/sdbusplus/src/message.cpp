// SPDX-License-Identifier: Apache-2.0
#include "sdbusplus/message.hpp"

#include "sdbusplus/details.hpp"

#include <cerrno>

namespace sdbusplus {

using details::Check;

message_t::message_t(sd_bus_message* message)
    : message_t(sd_bus_message_ref(message), std::false_type()) {}

message_t::message_t(sd_bus_message* message, std::false_type) : handle(message) {}

const char* message_t::get_member() const {
    return sd_bus_message_get_member(handle.get());
}

bool message_t::is_method_error() const {
    return sd_bus_message_is_method_error(handle.get(), nullptr) > 0;
}

namespace message::details {

namespace {

/** Like Check(); zero is how sd-bus says that there is nothing more to read. */
void CheckRead(const char* function, int result) {
    Check(function, result == 0 ? -ENXIO : result);
}

} // namespace

void AppendBasic(sd_bus_message* message, char type, const void* value) {
    Check("sd_bus_message_append_basic", sd_bus_message_append_basic(message, type, value));
}

AppendContainer::AppendContainer(sd_bus_message* message, char type, const char* contents)
    : message(message) {
    Check("sd_bus_message_open_container", sd_bus_message_open_container(message, type, contents));
}

void AppendContainer::close() {
    Check("sd_bus_message_close_container", sd_bus_message_close_container(message));
}

void ReadBasic(sd_bus_message* message, char type, void* value) {
    CheckRead("sd_bus_message_read_basic", sd_bus_message_read_basic(message, type, value));
}

const char* ReadText(sd_bus_message* message, char type) {
    const char* text = nullptr;
    CheckRead("sd_bus_message_read_basic string", sd_bus_message_read_basic(message, type, &text));
    return text;
}

ReadContainer::ReadContainer(sd_bus_message* message, char type, const char* contents)
    : message(message) {
    CheckRead("sd_bus_message_enter_container",
              sd_bus_message_enter_container(message, type, contents));
}

bool ReadContainer::at_end() const {
    return Check("sd_bus_message_at_end", sd_bus_message_at_end(message, false)) > 0;
}

void ReadContainer::close() {
    Check("sd_bus_message_exit_container", sd_bus_message_exit_container(message));
}

bool IsVariantOf(sd_bus_message* message, const char* signature) {
    return Check("sd_bus_message_verify_type",
                 sd_bus_message_verify_type(message, SD_BUS_TYPE_VARIANT, signature)) > 0;
}

void Skip(sd_bus_message* message, const char* signature) {
    CheckRead("sd_bus_message_skip", sd_bus_message_skip(message, signature));
}

} // namespace message::details

} // namespace sdbusplus
