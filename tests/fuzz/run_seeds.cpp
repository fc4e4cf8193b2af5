/** Runs a fuzz target without a fuzzer: over each seed of a directory, about a hundred of its
 * prefixes and a hundred inputs that differ from it in a few bytes, always the same ones. */
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;

constexpr std::size_t mutationsOfSeed = 100;
constexpr std::size_t prefixesOfSeed = 100;

void Run(const Input& input) {
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

void RunAround(const Input& seed, std::minstd_rand& random) {
    Run(seed);
    const std::size_t step = std::max<std::size_t>(1, seed.size() / prefixesOfSeed);
    for (std::size_t length = 0; length < seed.size(); length += step) {
        // A copy of its own, so that a read behind its end is one behind a block.
        Run(Input(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length)));
    }
    for (std::size_t i = 0; i < mutationsOfSeed && !seed.empty(); ++i) {
        Input input = seed;
        for (std::size_t bytes = 1 + random() % 4; bytes > 0; --bytes) {
            input[random() % input.size()] = static_cast<std::uint8_t>(random() >> 8);
        }
        Run(input);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 1;
    }
    std::vector<std::filesystem::path> seeds;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        seeds.push_back(entry.path());
    }
    std::ranges::sort(seeds);
    std::minstd_rand random;
    for (const auto& seed : seeds) {
        std::ifstream file(seed, std::ios::binary);
        RunAround(Input(std::istreambuf_iterator<char>(file), {}), random);
    }
    std::printf("%zu seeds\n", seeds.size());
    return seeds.empty() ? 1 : 0;
}
