// SPDX-License-Identifier: Apache-2.0
/** What an interface tells of its first values, and what a client may write. A few classes stand
 * for all: they come from the same template. */
#include "interfaces/served_bus.hpp"

#include <com/korv/zenth/Sensor/ProbeObj/server.hpp>
#include <xyz/openbmc_project/Association/Definitions/server.hpp>
#include <xyz/openbmc_project/Sensor/Value/server.hpp>

namespace vantric::test {

namespace {

using sdbusplus::server::com::korv::zenth::sensor::ProbeObj;
using sdbusplus::server::xyz::openbmc_project::association::Definitions;
using sdbusplus::server::xyz::openbmc_project::sensor::Value;

constexpr auto path = "/sensors/one";

/** PropertiesChanged for one property of the object. */
Signal Changed(const std::string& interface, const std::string& property,
               const std::string& value) {
    return {path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
            '"' + interface + "\", {\"" + property + "\": " + value + "}, []"};
}

class Binding : public ServedBus {
protected:
    /** The signals that the service sent since the last call. */
    std::vector<Signal> Sent() {
        client.Settle(service);
        return client.TakeSignals();
    }

    /** Writes a property of the object as a client; returns the error's name. */
    template <typename T>
    std::string Write(const char* interface, const char* property, const T& value) {
        return client.SetProperty(service, path, interface, property, value).error;
    }
};

TEST_F(Binding, WritesTheMapInItsOrderAndTellsNoChangeOfAConstProperty) {
    const std::map<std::string, ProbeObj::PropertiesVariant> values{
        {"ProbeReading", std::int32_t{0x7FFFFFFF}},
        {"Key", std::string("k")},
        {"meta-NonCached", std::string("ignored")},
        {"ObjectStatus", std::uint8_t{6}},
        {"ProbeStatus", std::uint8_t{0}}};
    const ProbeObj probe(bus, path, values);
    EXPECT_EQ((std::vector{Changed(ProbeObj::interface, "ObjectStatus", "6"),
                           Changed(ProbeObj::interface, "ProbeReading", "2147483647")}),
              Sent());
    const ProbeObj silent(bus, "/sensors/two", values, true);
    EXPECT_EQ("k", silent.key());
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

TEST_F(Binding, LetsAClientWrite) {
    Value sensor(bus, path);
    ProbeObj probe(bus, path);
    Definitions definitions(bus, path);
    const std::string volts = "xyz.openbmc_project.Sensor.Value.Unit.Volts";
    const std::tuple<int, int, int, int, int, int> thresholds{1, -2, 3, 4, 5, 6};
    const std::vector<std::tuple<std::string, std::string, std::string>> links{{"a", "b", "/c"}};
    EXPECT_EQ("", Write(Value::interface, "Unit", volts));
    EXPECT_EQ("", Write(ProbeObj::interface, "ProbeThresholds", thresholds));
    EXPECT_EQ("", Write(Definitions::interface, "Associations", links));
    EXPECT_EQ(Value::Unit::Volts, sensor.unit());
    EXPECT_EQ(thresholds, probe.probeThresholds());
    EXPECT_EQ(links, definitions.associations());
    EXPECT_EQ(3U, Sent().size());
}

TEST_F(Binding, RefusesWhatAClientCantWrite) {
    Value sensor(bus, path);
    ProbeObj probe(bus, path);
    const std::string error = "org.freedesktop.DBus.Error.";
    const std::string text = "5";
    EXPECT_EQ(error + "InvalidArgs", Write(Value::interface, "Unit", text));
    EXPECT_EQ(error + "InvalidArgs", Write(Value::interface, "Value", text));
    EXPECT_EQ(error + "PropertyReadOnly", Write(ProbeObj::interface, "ProbeReading", 5));
    EXPECT_EQ(error + "PropertyReadOnly", Write(ProbeObj::interface, "Key", text));
    EXPECT_EQ(error + "UnknownProperty", Write(Value::interface, "Other", 5.0));
    EXPECT_EQ(Value::Unit::Amperes, sensor.unit());
    EXPECT_EQ(0, sensor.value());
    EXPECT_EQ(0, probe.probeReading());
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

} // namespace

} // namespace vantric::test
