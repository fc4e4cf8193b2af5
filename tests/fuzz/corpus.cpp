// SPDX-License-Identifier: Apache-2.0
/** The seeds: what the endpoints of scenarios answer to everything that is asked.
 *
 *      fuzz_corpus SCENARIO...              talks to each seed and to what lies around it
 *      fuzz_corpus --write DIR SCENARIO...  writes each seed to a file in DIR */
#include "conversation.hpp"
#include "pldm/terminus.hpp"
#include "scenario/scenario.hpp"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>

namespace {

namespace fs = std::filesystem;
using Seeds = std::map<std::string, Bytes>;

constexpr std::size_t mutationsOfSeed = 50;
constexpr std::size_t prefixesOfSeed = 50;

/** The repository changes once, so that its records come a second time. */
Bytes Conversation(simulator::Terminus terminus) {
    constexpr std::uint8_t repositoryInfo = 0x50;
    Bytes answers;
    int infos = 0;
    ScriptedEndpoint endpoint;
    endpoint.transport.respond = [&](const Bytes& request) {
        if (request.at(2) == repositoryInfo && ++infos == 2) {
            terminus.repository.Touch();
        }
        const auto response =
            simulator::Respond(terminus, request, simulator::Seconds(infos)).value();
        const Bytes bytes(response.begin(), response.end());
        answers.Add(static_cast<std::uint16_t>(bytes.size())).Add(bytes);
        return Answer{.status = 0, .bytes = bytes};
    };
    TalkTo(endpoint);
    return answers;
}

Seeds Make(std::span<const std::string> scenarios) {
    Seeds seeds;
    for (const auto& path : scenarios) {
        for (const auto& card : simulator::ReadScenario(path).cards) {
            const auto& endPoint = card.endPoints.front();
            seeds[fs::path(path).stem().string() + "-" + std::to_string(endPoint.eid)] =
                Conversation(simulator::Terminus(endPoint.terminus));
        }
    }
    return seeds;
}

/** Talks to a seed, to about fifty of its prefixes and to inputs that differ from it in a few
 *  bytes, always the same ones. */
void TalkAround(const Bytes& seed, std::minstd_rand& random) {
    TalkToInput(seed);
    const std::size_t step = std::max<std::size_t>(1, seed.size() / prefixesOfSeed);
    for (std::size_t length = 0; length < seed.size(); length += step) {
        // A copy of its own, so that a read past its end is one past a block.
        TalkToInput(Slice(seed, 0, length));
    }
    for (std::size_t i = 0; i < mutationsOfSeed && !seed.empty(); ++i) {
        Bytes input = seed;
        for (std::size_t bytes = 1 + random() % 4; bytes > 0; --bytes) {
            input[random() % input.size()] = static_cast<std::uint8_t>(random() >> 8);
        }
        TalkToInput(input);
    }
}

void Write(const Seeds& seeds, const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const auto& [name, bytes] : seeds) {
        std::ofstream file(folder / name, std::ios::binary);
        file.exceptions(std::ios::failbit | std::ios::badbit);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() > 2 && arguments[0] == "--write") {
            Write(Make(std::span(arguments).subspan(2)), arguments[1]);
            return 0;
        }
        std::minstd_rand random;
        for (const auto& [name, seed] : Make(arguments)) {
            TalkAround(seed, random);
        }
    } catch (const std::exception& error) {
        std::cerr << "fuzz_corpus: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
