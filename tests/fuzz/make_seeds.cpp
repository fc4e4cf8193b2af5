/** Writes the seed inputs of all fuzz targets: make_seeds DIRECTORY STAMP SCENARIO... They are what
 *  the simulator's endpoints say, and some things that no scenario can. The stamp is a file that
 *  says to a build when that was. */
#include "chunks.hpp"
#include "conversation.hpp"
#include "pldm/terminus.hpp"
#include "pldm_cmds/pdr_builders.hpp"
#include "scenario/scenario.hpp"

#include <array>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

/** The inputs of one target: DIRECTORY/TARGET/NAME. */
class Seeds {
public:
    Seeds(const fs::path& root, const char* target) : directory(root / target) {
        fs::remove_all(directory);
        fs::create_directories(directory);
    }

    void Write(const std::string& name, const Bytes& bytes) const {
        std::ofstream file(directory / name, std::ios::binary);
        file.exceptions(std::ios::failbit | std::ios::badbit);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        file.close();
    }

private:
    fs::path directory;
};

Bytes From(const simulator::Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

class SeedWriter {
public:
    explicit SeedWriter(const fs::path& root)
        : fru(root, "fuzz_fru"), names(root, "fuzz_names"), pdr(root, "fuzz_pdr"),
          responses(root, "fuzz_responses") {}

    void WriteTerminus(const std::string& name, const simulator::TerminusDescription& description) {
        simulator::Terminus terminus(description);
        if (!terminus.fruTable.empty()) {
            fru.Write(name, From(terminus.fruTable));
        }
        WriteRecords(name, terminus.repository);
        responses.Write(name, Conversation(terminus));
    }

    /** What the simulator's scenarios don't say. */
    void WriteOddOnes() const {
        fru.Write("timestamp", {0, 0, 0, 0, 0, 9, 5, 7, 12, 3, 0xE5, 7, 0});
        fru.Write("field-above-15", {1, 0, 1, 2, 1, 16, 1, 'x', 15, 2, 0x8C, 0x1A});
        // A member without a name between two names, one of them beyond the first plane.
        names.Write("three-members", {3, 1,   'e', 'n', 0,    0,    'T',  0,    0, 0, 0,
                                      0, 'd', 'e', 0,   0xD8, 0x3D, 0xDE, 0x00, 0, 0});
        pdr.Write("narrow-sensor-id",
                  AsChunk(NumericSensorPdr{.idWidth = 1, .dataSize = 7, .rangeFormat = 8}.Build()));
    }

private:
    /** All records in one input, and one input for each type that comes the first time. */
    void WriteRecords(const std::string& name, const simulator::Repository& repository) {
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
                pdr.Write(label, AsChunk(record));
            }
            if (type == auxiliaryNames && record.size() > namesOffset) {
                names.Write(label, Bytes(record.begin() + namesOffset, record.end()));
            }
        }
        pdr.Write(name, all);
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

    Seeds fru;
    Seeds names;
    Seeds pdr;
    Seeds responses;
    std::set<std::uint8_t> typesSeen;
};

void WriteAll(const fs::path& root, const std::vector<std::string>& scenarios) {
    SeedWriter writer(root);
    for (const auto& path : scenarios) {
        for (const auto& card : simulator::ReadScenario(path).cards) {
            const auto& endPoint = card.endPoints.front();
            writer.WriteTerminus(fs::path(path).stem().string() + "-" +
                                     std::to_string(endPoint.eid),
                                 endPoint.terminus);
        }
    }
    writer.WriteOddOnes();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: make_seeds DIRECTORY STAMP SCENARIO...\n";
        return 2;
    }
    try {
        WriteAll(argv[1], {argv + 3, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "make_seeds: " << error.what() << "\n";
        return 1;
    }
    std::ofstream(argv[2]) << "written\n";
    return 0;
}
