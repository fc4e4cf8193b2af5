// SPDX-License-Identifier: Apache-2.0
#include "sdbusplus/bus.hpp"

#include "sdbusplus/details.hpp"

namespace sdbusplus {

namespace {

/** The null-terminated array of C strings that sd-bus calls a strv, valid as long as texts. */
class Strv {
public:
    explicit Strv(const std::vector<std::string>& texts) {
        pointers.reserve(texts.size() + 1);
        for (const auto& text : texts) {
            // sd-bus doesn't write to the strings; its signature only lacks the const.
            pointers.push_back(const_cast<char*>(text.c_str()));
        }
        pointers.push_back(nullptr);
    }

    char** data() { return pointers.data(); }

private:
    std::vector<char*> pointers;
};

} // namespace

void bus_t::Release::operator()(sd_bus* bus) const noexcept {
    if (flush) {
        sd_bus_flush(bus);
    }
    sd_bus_unref(bus);
}

bus_t::bus_t(sd_bus* bus) : handle(sd_bus_ref(bus), Release{false}) {}

bus_t::bus_t(sd_bus* bus, std::false_type) : handle(bus, Release{true}) {}

sd_event* bus_t::get_event() const {
    return sd_bus_get_event(handle.get());
}

void bus_t::attach_event(sd_event* event, int priority) {
    details::Check("sd_bus_attach_event", sd_bus_attach_event(handle.get(), event, priority));
}

void bus_t::request_name(const char* service) {
    details::Check("sd_bus_request_name", sd_bus_request_name(handle.get(), service, 0));
}

message_t bus_t::new_method_call(const char* service, const char* path, const char* interface,
                                 const char* method) {
    sd_bus_message* message = nullptr;
    details::Check(
        "sd_bus_message_new_method_call",
        sd_bus_message_new_method_call(handle.get(), &message, service, path, interface, method));
    return message_t(message, std::false_type());
}

message_t bus_t::call(message_t& message) {
    sd_bus_error error{};
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call(handle.get(), details::Access::handle(message), 0, &error, &reply);
    if (result >= 0) {
        return message_t(reply, std::false_type());
    }
    const auto failure = sd_bus_error_is_set(&error)
                             ? exception::SdBusError(&error, "sd_bus_call")
                             : exception::SdBusError(-result, "sd_bus_call");
    sd_bus_error_free(&error);
    throw failure;
}

void bus_t::emit_interfaces_added(const char* path, const std::vector<std::string>& interfaces) {
    sd_bus_emit_interfaces_added_strv(handle.get(), path, Strv(interfaces).data());
}

void bus_t::emit_interfaces_removed(const char* path, const std::vector<std::string>& interfaces) {
    sd_bus_emit_interfaces_removed_strv(handle.get(), path, Strv(interfaces).data());
}

bus_t bus::new_default_system() {
    sd_bus* connection = nullptr;
    if (sd_bus_default_system(&connection) < 0) {
        connection = nullptr;
    }
    return bus_t(connection, std::false_type());
}

} // namespace sdbusplus
