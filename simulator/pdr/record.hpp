// SPDX-License-Identifier: Apache-2.0
/** Platform Descriptor Records as bytes (DSP0248). */
#pragma once

#include "payload.hpp"
#include "scenario/terminus.hpp"

namespace simulator {

using Bytes = std::vector<std::uint8_t>;

/** PDR types. */
enum class PdrType : std::uint8_t {
    TerminusLocator = 1,
    NumericSensor = 2,
    StateSensor = 4,
    SensorAuxiliaryNames = 6,
    NumericEffector = 9,
    NumericEffectorInitialization = 10,
    StateEffector = 11,
    StateEffectorInitialization = 12,
    EntityAssociation = 15,
    CompactNumericSensor = 21,
};

/** A record without its handle, which the repository gives it. */
struct Pdr {
    PdrType type;
    Bytes body;
};

Pdr EncodeNumericSensor(const NumericSensor& sensor);
Pdr EncodeStateSensor(const StateSensor& sensor);
/** The names of a sensor, one list for each member; all lists have the same length. */
Pdr EncodeNames(std::uint16_t sensorId, const std::vector<std::vector<LocalName>>& members);
Pdr EncodeAssociation(const Association& association);
Pdr EncodeNumericEffector(const NumericEffector& effector);
Pdr EncodeNumericEffectorInitialization(const NumericEffector& effector);
Pdr EncodeStateEffector(const StateEffector& effector);
Pdr EncodeStateEffectorInitialization(const StateEffector& effector);
Pdr EncodeLocator(const TerminusLocator& locator);

/** All described things of a terminus as records, in the order of the repository: a sensor's names
 *  follow the sensor. Raw records are not among them. */
std::vector<Pdr> EncodeDescribed(const TerminusDescription& terminus);

/** Appends type, instance and container. */
void WriteEntity(simulator_link::PayloadWriter& writer, const EntityId& entity);

/** Appends a bit field of states, as many bytes as the highest state needs, after its length. */
void WriteStates(simulator_link::PayloadWriter& writer, const std::vector<std::uint8_t>& states);

/** The handle of the terminus that owns the records. */
constexpr std::uint16_t terminusHandle = 1;

} // namespace simulator
