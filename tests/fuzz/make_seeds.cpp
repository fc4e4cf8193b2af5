/** Writes the seed inputs of all fuzz targets: make_seeds DIRECTORY [STAMP]. The stamp is a file
 *  that says to a build when that was. */
#include "chunks.hpp"
#include "pldm_cmds/pdr_builders.hpp"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

/** One record of each type that has a parser. */
std::vector<Bytes> Records() {
    const Bytes name = Bytes{'e', 'n', 0, 0, 'T', 0xD8, 0x3D, 0xDE, 0x00, 0, 0};
    Bytes locator(12, 1);
    Bytes stateEffector(32, 2);
    Bytes numericEffector(76, 5);
    return {
        Pdr(1, locator),
        NumericSensorPdr{}.Build(),
        NumericSensorPdr{.idWidth = 1, .dataSize = 7, .rangeFormat = 8}.Build(),
        Pdr(4, Bytes{0, 0, 9, 0, 144, 0, 1, 0, 1, 0, 0, 0, 2, 1, 0, 1, 6, 33, 0, 2, 6, 1}),
        Pdr(6, Bytes{0, 0, 5, 0, 1, 1}.Add(name)),
        Pdr(6, Bytes{0, 0, 9, 0, 2, 1}.Add(name).Add(name)),
        Pdr(9, numericEffector),
        Pdr(10, Bytes(7, 3)),
        Pdr(11, stateEffector),
        Pdr(12, Bytes(22, 4)),
        Pdr(15, Bytes{1, 0, 0, 68, 0, 1, 0, 0, 0, 1, 144, 0, 1, 0, 1, 0}),
        CompactSensorPdr{.nameLength = 5, .name = Bytes().Add("GPU0").AddZeros(1)}.Build(),
    };
}

Bytes FruTable() {
    return Bytes{1, 0, 1, 4, 1}
        .Add({4, 5, 'S', 'N', '1', '2', '3'})
        .Add({6, 13, 0, 0, 0, 0, 0, 9, 5, 7, 12, 3, 0xE5, 7, 0})
        .Add({15, 4, 0x8C, 0x1A, 0, 0})
        .Add({16, 1, 'x'});
}

Bytes Good(const Bytes& data) {
    return AsChunk(Bytes{0, 0, 0, 0}.Add(data));
}

/** The answers of a whole inventory and one reading. */
Bytes Inventory() {
    Bytes input = Good({0x35, 0, 0, 0, 0, 0, 0, 0});
    input.Add(Good(Bytes(7, 0).Add({5, 0, 0}).Add("1.2.3")));
    input.Add(Good(Bytes(6, 0).Add(std::uint32_t{300}).AddZeros(2).Add(std::uint16_t{1})));
    input.Add(Good(Bytes{0, 0, 0, 0, 5}.Add(FruTable())));
    for (int type = 0; type < 4; ++type) {
        input.Add(Good(Bytes{0, 0, 0, 0, 5}.Add(std::uint32_t{0xF1F2F000}).AddZeros(4)));
    }
    for (int i = 0; i < 8; ++i) {
        input.Add(Good({0x7F})); // commands and selections
    }
    input.Add(Good({7}));
    const auto records = Records();
    input.Add(Good(Bytes(1 + 13 + 13, 0)
                       .Add(static_cast<std::uint32_t>(records.size()))
                       .Add(std::uint32_t{2000})
                       .Add(std::uint32_t{200})
                       .Add(std::uint8_t{0})));
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto next = static_cast<std::uint32_t>((i + 1) % records.size());
        input.Add(Good(Bytes().Add(next).AddZeros(4).Add({5, 0, 0}).Add(records[i])));
    }
    for (int sensor = 0; sensor < 6; ++sensor) {
        input.Add(Good({2, 0, 0, 1, 1, 1, 40, 0}));
    }
    return input;
}

void Write(const std::filesystem::path& directory, const std::string& name, const Bytes& bytes) {
    std::filesystem::create_directories(directory);
    std::ofstream(directory / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        return 1;
    }
    const std::filesystem::path root(argv[1]);
    Bytes all;
    const auto records = Records();
    for (std::size_t i = 0; i < records.size(); ++i) {
        Write(root / "fuzz_pdr", std::to_string(i), AsChunk(records[i]));
        all.Add(AsChunk(records[i]));
    }
    Write(root / "fuzz_pdr", "all", all);
    Write(root / "fuzz_responses", "inventory", Inventory());
    Write(root / "fuzz_fru", "table", FruTable());
    Write(root / "fuzz_fru", "timestamp", {0, 0, 0, 0, 0, 9, 5, 7, 12, 3, 0xE5, 7, 0});
    Write(root / "fuzz_names", "names",
          {1, 2, 'e', 'n', 0, 0, 'T', 0, 0, 'd', 'e', 0, 0xD8, 0x3D, 0xDE, 0x00, 0, 0});
    if (argc == 3) {
        std::ofstream(argv[2]) << "written\n";
    }
    return 0;
}
