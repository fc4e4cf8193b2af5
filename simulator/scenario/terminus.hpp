// SPDX-License-Identifier: Apache-2.0
/** What an endpoint tells of itself. */
#pragma once

#include "scenario/effector.hpp"
#include "scenario/fru.hpp"
#include "scenario/sensor.hpp"

#include <array>

namespace simulator {

/** One PLDM type that a terminus supports. */
struct TypeSupport {
    std::vector<std::uint32_t> versions;               /**< ver32 words (DSP0240) */
    std::optional<std::vector<std::uint8_t>> commands; /**< instead of the simulator's own */
};

/** A command that is answered with a completion code. */
struct Refusal {
    std::uint8_t type = 0;
    std::uint8_t command = 0;
    std::uint8_t code = 0;
};

/** How a long answer is cut into parts. */
struct Multipart {
    std::optional<std::size_t> partSize; /**< bytes; a request's own limit holds besides */
    std::array<std::uint8_t, 3> flags{}; /**< first, further and last part */
};

struct Firmware {
    std::uint8_t activeType = 1;
    std::vector<std::uint8_t> active;
    std::uint8_t pendingType = 1;
    std::vector<std::uint8_t> pending;
};

struct TerminusLocator {
    bool valid = true;
    std::uint8_t tid = 0;
    std::uint16_t container = 0;
    std::uint8_t type = 1; /**< 0 UID, 1 MCTP EID, 2 SMBus relative, 3 system software */
    std::vector<std::uint8_t> value;
};

/** The PDR repository beyond what the described things give. */
struct RepositoryTraits {
    std::uint8_t state = 0;
    std::uint16_t changeNumber = 0;
    std::optional<std::uint32_t> recordCount;   /**< claimed instead of the true one */
    std::optional<std::uint32_t> largestRecord; /**< claimed instead of the true one */
    std::vector<std::vector<std::uint8_t>> rawFirst;
    std::vector<std::vector<std::uint8_t>> rawLast;
};

struct TerminusDescription {
    std::uint8_t tid = 1;
    std::map<std::uint8_t, TypeSupport> types;
    std::vector<Refusal> refusals;
    Multipart versionParts{{}, {1, 2, 4}};
    Multipart fruParts{{}, {0, 1, 4}};
    Multipart pdrParts{{}, {1, 0, 4}};
    Firmware firmware;
    std::optional<Fru> fru;
    EntityTree entities;
    std::vector<NumericSensor> numericSensors;
    std::vector<StateSensor> stateSensors;
    std::vector<NumericEffector> numericEffectors;
    std::vector<StateEffector> stateEffectors;
    std::vector<TerminusLocator> locators;
    RepositoryTraits repository;
};

} // namespace simulator
