// SPDX-License-Identifier: Apache-2.0
/** The seeds of the fuzz targets, from what the simulator's endpoints say and some things that no
 *  scenario can.
 *
 *      fuzz_corpus SCENARIO...              runs each target over its seeds and what lies around
 * them fuzz_corpus --write DIR SCENARIO...  writes the seeds to DIR/TARGET/NAME */
#include "pldm/terminus.hpp"
#include "pldm_cmds/pdr_builders.hpp"
#include "scenario/scenario.hpp"
#include "targets.hpp"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mutationsOfSeed = 100;
constexpr std::size_t prefixesOfSeed = 100;

Bytes From(const simulator::Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

class Corpus {
public:
    void AddTerminus(const std::string& name, const simulator::TerminusDescription& description) {
        simulator::Terminus terminus(description);
        if (!terminus.fruTable.empty()) {
            seeds["fru"][name] = From(terminus.fruTable);
        }
        AddRecords(name, terminus.repository);
        seeds["responses"][name] = Conversation(terminus);
    }

    /** What the simulator's scenarios don't say. */
    void AddOddOnes() {
        seeds["fru"]["timestamp"] = {0, 0, 0, 0, 0, 9, 5, 7, 12, 3, 0xE5, 7, 0};
        seeds["fru"]["field-above-15"] = {1, 0, 1, 2, 1, 16, 1, 'x', 15, 2, 0x8C, 0x1A};
        // A member without a name between two names, one of them beyond the first plane.
        seeds["names"]["three-members"] = {3, 1,   'e', 'n', 0,    0,    'T',  0,    0, 0, 0,
                                           0, 'd', 'e', 0,   0xD8, 0x3D, 0xDE, 0x00, 0, 0};
        seeds["pdr"]["narrow-sensor-id"] =
            AsChunk(NumericSensorPdr{.idWidth = 1, .dataSize = 7, .rangeFormat = 8}.Build());
    }

    std::map<std::string, std::map<std::string, Bytes>> seeds; ///< by target and name

private:
    /** All records in one input, and one input for each type that comes the first time. */
    void AddRecords(const std::string& name, const simulator::Repository& repository) {
        constexpr std::size_t typeOffset = 5;
        constexpr std::size_t namesOffset = 14;
        constexpr std::uint8_t auxiliaryNames = 6;
        Bytes all;
        std::uint32_t handle = repository.Count() == 0 ? 0 : 1;
        for (; handle != 0; handle = repository.Next(handle)) {
            const Bytes record = From(*repository.Find(handle));
            all.Add(AsChunk(record));
            const auto label = name + "-" + std::to_string(handle);
            const auto type = record.size() > typeOffset ? record[typeOffset] : std::uint8_t{0};
            if (typesSeen.insert(type).second) {
                seeds["pdr"][label] = AsChunk(record);
            }
            if (type == auxiliaryNames && record.size() > namesOffset) {
                seeds["names"][label] = Bytes(record.begin() + namesOffset, record.end());
            }
        }
        seeds["pdr"][name] = all;
    }

    /** The answers to everything that is asked. The repository changes once, so that its records
     *  come a second time. */
    static Bytes Conversation(simulator::Terminus& terminus) {
        constexpr std::uint8_t repositoryInfo = 0x50;
        Bytes answers;
        int infos = 0;
        ScriptedEndpoint endpoint;
        endpoint.transport.respond = [&](const Bytes& request) {
            if (request.at(2) == repositoryInfo && ++infos == 2) {
                terminus.repository.Touch();
            }
            const auto response = simulator::Respond(terminus, request, simulator::Seconds(infos));
            answers.Add(AsChunk(From(response.value())));
            return Answer{.status = 0, .bytes = From(*response)};
        };
        TalkTo(endpoint);
        return answers;
    }

    std::set<std::uint8_t> typesSeen;
};

/** Runs a target over a seed, about a hundred of its prefixes and a hundred inputs that differ from
 *  it in a few bytes, always the same ones. */
void RunAround(FuzzTarget target, const Bytes& seed, std::minstd_rand& random) {
    target(seed);
    const std::size_t step = std::max<std::size_t>(1, seed.size() / prefixesOfSeed);
    for (std::size_t length = 0; length < seed.size(); length += step) {
        // A copy of its own, so that a read behind its end is one behind a block.
        target(Bytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length)));
    }
    for (std::size_t i = 0; i < mutationsOfSeed && !seed.empty(); ++i) {
        Bytes input = seed;
        for (std::size_t bytes = 1 + random() % 4; bytes > 0; --bytes) {
            input[random() % input.size()] = static_cast<std::uint8_t>(random() >> 8);
        }
        target(input);
    }
}

Corpus Make(const std::vector<std::string>& scenarios) {
    Corpus corpus;
    for (const auto& path : scenarios) {
        for (const auto& card : simulator::ReadScenario(path).cards) {
            const auto& endPoint = card.endPoints.front();
            corpus.AddTerminus(fs::path(path).stem().string() + "-" + std::to_string(endPoint.eid),
                               endPoint.terminus);
        }
    }
    corpus.AddOddOnes();
    return corpus;
}

void Run(const Corpus& corpus) {
    std::minstd_rand random;
    for (const auto& [name, target] : fuzzTargets) {
        for (const auto& [label, seed] : corpus.seeds.at(name)) {
            RunAround(target, seed, random);
        }
    }
}

void Write(const Corpus& corpus, const fs::path& root) {
    for (const auto& [target, seeds] : corpus.seeds) {
        fs::remove_all(root / target);
        fs::create_directories(root / target);
        for (const auto& [name, bytes] : seeds) {
            std::ofstream file(root / target / name, std::ios::binary);
            file.exceptions(std::ios::failbit | std::ios::badbit);
            file.write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() > 2 && arguments[0] == "--write") {
            Write(Make({arguments.begin() + 2, arguments.end()}), arguments[1]);
        } else {
            Run(Make(arguments));
        }
    } catch (const std::exception& error) {
        std::cerr << "fuzz_corpus: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
