// SPDX-License-Identifier: Apache-2.0
#include "support/private_bus.hpp"

#include "support/eventually.hpp"

#include <systemd/sd-bus.h>

#include <cstdlib>
#include <stdexcept>

namespace vantric::test {

namespace {

constexpr auto addressVariable = "DBUS_SYSTEM_BUS_ADDRESS";

std::string Configuration(const std::string& address) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>)" +
           address + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

/** Whether the daemon answers a client; before that, it isn't ready to be stopped in good order. */
bool Answers() {
    sd_bus* bus = nullptr;
    const char* name = nullptr;
    const bool answers = sd_bus_open_system(&bus) >= 0 && sd_bus_get_unique_name(bus, &name) >= 0;
    sd_bus_close_unref(bus);
    return answers;
}

} // namespace

PrivateBus::PrivateBus() {
    const std::string address = "unix:path=" + Folder() + "/socket";
    const auto file = folder.Write("config", Configuration(address));
    setenv(addressVariable, address.c_str(), 1);
    daemon.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--config-file=" + file},
                   std::map<std::string, std::string>{}, folder.path / "log");
    Eventually([this] { return Answers() || !daemon->Runs(); });
    if (!daemon->Runs()) {
        throw std::runtime_error("dbus-daemon doesn't start: " + daemon->Log());
    }
}

PrivateBus::~PrivateBus() {
    unsetenv(addressVariable);
}

} // namespace vantric::test
