/** The wrappers of the bus: values in messages, calls, matches, failures. */
#include "interfaces/served_bus.hpp"

#include <sdbusplus/bus/match.hpp>
#include <sdbusplus/exception.hpp>
#include <sdbusplus/server/manager.hpp>

#include <limits>
#include <optional>
#include <stdexcept>

namespace vantric::test {

namespace {

using sdbusplus::message_t;
using sdbusplus::exception::SdBusError;
using sdbusplus::message::object_path;

class Wrapper : public ServedBus {
protected:
    /** A message to fill, and the same one to read. */
    sd_bus_message* New() {
        sd_bus_message* message = nullptr;
        EXPECT_LE(0, sd_bus_message_new_signal(connection, &message, "/a", "a.b", "C"));
        return message;
    }

    /** A message that holds the values, ready to be read. */
    template <typename... T>
    message_t Holding(const T&... values) {
        sd_bus_message* raw = New();
        message_t message(raw, std::false_type());
        message.append(values...);
        EXPECT_LE(0, sd_bus_message_seal(raw, 1, 0));
        return message;
    }

    /** Appends, checks the signature and reads back. */
    template <typename T>
    void ExpectRoundTrip(const char* signature, const T& value) {
        sd_bus_message* raw = New();
        message_t message(raw, std::false_type());
        message.append(value);
        ASSERT_LE(0, sd_bus_message_seal(raw, 1, 0));
        EXPECT_STREQ(signature, sd_bus_message_get_signature(raw, true));
        T read{};
        message.read(read);
        EXPECT_EQ(value, read) << signature;
    }
};

TEST_F(Wrapper, BringsThroughAMessageWhatNoObjectHas) {
    ExpectRoundTrip("n", std::int16_t{-32768});
    ExpectRoundTrip("x", std::numeric_limits<std::int64_t>::min());
    ExpectRoundTrip("t", std::numeric_limits<std::uint64_t>::max());
    ExpectRoundTrip("d", -0.1);
    ExpectRoundTrip("o", object_path("/a/b"));
    ExpectRoundTrip("ab", std::vector{true, false, true});
    ExpectRoundTrip("a{uy}", std::unordered_map<std::uint32_t, std::uint8_t>{{1, 2}, {3, 4}});
    ExpectRoundTrip("a{sv}", std::vector<std::pair<std::string, std::variant<std::int32_t, bool>>>{
                                 {"second", true}, {"first", 1}});
    ExpectRoundTrip("v", std::variant<std::string, std::vector<double>>(std::vector{1.5, 2.5}));
}

TEST_F(Wrapper, PassesOverAVariantOfAnotherType) {
    using Foreign = std::variant<object_path, std::map<std::string, std::uint8_t>, bool>;
    auto message = Holding(std::map<std::string, Foreign>{{"a", true}, {"b", object_path("/x")}},
                           Foreign(std::map<std::string, std::uint8_t>{{"c", 1}}), "behind");
    std::map<std::string, std::variant<std::int64_t, bool>> values;
    std::variant<std::int64_t, std::string> kept = "kept";
    std::string behind;
    message.read(values, kept, behind);
    EXPECT_EQ((decltype(values){{"a", true}, {"b", std::int64_t{0}}}), values);
    EXPECT_EQ("kept", std::get<std::string>(kept));
    EXPECT_EQ("behind", behind);
}

TEST_F(Wrapper, SurvivesAMissingBus) {
    sdbusplus::bus_t none(nullptr);
    EXPECT_EQ(nullptr, none.get_event());
    none.emit_interfaces_added("/a", {"a.b"});
    none.emit_interfaces_removed("/a", {"a.b"});
    const sdbusplus::server::manager_t manager(none, "/a");
    EXPECT_THROW(none.request_name("a.b"), SdBusError);
    EXPECT_THROW(none.attach_event(nullptr, 0), SdBusError);
    EXPECT_THROW(sdbusplus::bus::match_t(none, "type='signal'", [](auto&) {}), SdBusError);
}

TEST_F(Wrapper, CallsTheMatchUntilItGoes) {
    std::vector<std::string> seen;
    std::optional<sdbusplus::bus::match_t> match;
    match.emplace(bus, "type='signal',member='InterfacesRemoved',path='/sensors',",
                  [&](message_t& message) {
                      object_path removed;
                      message.read(removed);
                      seen.push_back(removed.str);
                      if (seen.size() == 1) {
                          throw std::runtime_error("not this one");
                      }
                  });
    // A match that has moved is still the same match.
    std::optional<sdbusplus::bus::match_t> moved(std::move(*match));
    match.reset();
    EXPECT_THROW(sdbusplus::bus::match_t(bus, std::string("no rule"), [](auto&) {}), SdBusError);

    sd_bus* raw = Open();
    sdbusplus::bus_t other(raw, std::false_type());
    client.Serve(raw);
    const sdbusplus::server::manager_t manager(other, "/sensors");
    const auto remove = [&](const char* path) {
        other.emit_interfaces_removed(path, {"org.freedesktop.DBus.Peer"});
        return client.WaitUntil([&] { return !seen.empty() && seen.back() == path; });
    };
    EXPECT_TRUE(remove("/sensors/one"));
    EXPECT_TRUE(remove("/sensors/two"));
    moved.reset();
    other.emit_interfaces_removed("/sensors/three", {"org.freedesktop.DBus.Peer"});
    client.Settle(service);
    EXPECT_EQ((std::vector<std::string>{"/sensors/one", "/sensors/two"}), seen);
}

} // namespace

} // namespace vantric::test
