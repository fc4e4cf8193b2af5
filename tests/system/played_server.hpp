// SPDX-License-Identifier: Apache-2.0
/** A whole played server: private bus, simulator with a scenario, and the daemon as it ships. */
#pragma once

#include "support/bus_client.hpp"
#include "support/private_bus.hpp"
#include "support/process.hpp"
#include "system/simulator_process.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vantric::test {

/** What the daemon publishes: object path to interface to property to text. */
using PublishedObjects = std::map<std::string, Interfaces>;

/** Starts the three in this order and ends them in the other. The daemon's clock runs 50 times as
 *  fast as the wall's, so that a cycle takes 0.1 s and a dead endpoint 1 s.
 *
 *  A story on it has one line for each step. A step that waits in vain for 30 s, or for a daemon
 *  that has ended, throws std::runtime_error, which ends the test as a failure. */
class PlayedServer {
public:
    static constexpr auto serviceName = "com.korv.zenth.vantricd";

    /** @param scenario text of a scenario, as docs/simulator.md tells
     *  @param logLevel what of the daemon's log is kept */
    explicit PlayedServer(const std::string& scenario, int logLevel = 4);

    /** Has the simulator carry out a command of simctl. */
    PlayedServer& Do(const std::string& command);

    /** Waits until the bus shows an object with a property, such as
     *  "temperature/NIC_Slot_3_sensorid_5 Value=61": the end of its path, the property's name on
     *  whichever interface, and its text without quotation marks. */
    PlayedServer& See(const std::string& shown);

    /** Waits until the bus shows no object whose path ends so. */
    PlayedServer& Miss(const std::string& path);

    /** Waits until the daemon has logged the text at least so many times. */
    PlayedServer& Read(const std::string& text, int times = 1);

    /** Ends the daemon and starts another one on the same bus and simulator. */
    void RestartDaemon();

    /** Ends the simulator and starts another one in its place, with a scenario of its own. */
    void RestartSimulator(const std::string& scenario);

    /** How many requests each endpoint has answered so far, by EID. */
    std::map<int, int> Answered() const;

    /** Has the simulator carry out the words of a command and returns what it says. */
    std::string Simctl(const std::vector<std::string>& words) const;

    /** What stands on the bus now; empty while the daemon has no name. */
    PublishedObjects Objects();

    /** What the daemon has logged so far. */
    const std::string& Log() { return daemon->Log(); }

    BusClient& Client() { return *client; }
    Process& Daemon() { return *daemon; }
    PrivateBus& Bus() { return *bus; }

private:
    void StartDaemon();
    void Await(const std::string& what, const std::function<bool()>& done);

    const int logLevel;
    std::unique_ptr<PrivateBus> bus;
    std::unique_ptr<SimulatorProcess> simulator;
    std::unique_ptr<Process> daemon;
    std::unique_ptr<BusClient> client;
};

/** How often a piece stands in a text. */
int CountOf(const std::string& text, const std::string& piece);

/** The text of one of the simulator's own scenarios, by its file's name. */
std::string ReadScenario(const std::string& name);

} // namespace vantric::test
