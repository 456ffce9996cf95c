// SPDX-License-Identifier: Apache-2.0
// Runs a fuzz target on files, and on mutations of them, where libFuzzer cannot be had.
//
// usage: fuzz_<subject> [--mutations=N] FILE_OR_FOLDER...
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;
using Random = std::mt19937;

Bytes ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) return {path};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    // The order of a folder is the file system's; runs are to be repeatable.
    std::sort(files.begin(), files.end());
    return files;
}

std::ptrdiff_t Place(Random& random, std::size_t size) {
    return static_cast<std::ptrdiff_t>(random() % (size + 1));
}

/// Changes, inserts, removes or doubles a few bytes.
void Mutate(Bytes& bytes, Random& random) {
    const auto byte = static_cast<std::uint8_t>(random());
    const std::ptrdiff_t from = Place(random, bytes.size());
    const std::ptrdiff_t to = Place(random, bytes.size());
    const auto [first, last] = std::minmax(from, to);
    switch (random() % 4) {
        case 0:
            if (first < last) bytes[static_cast<std::size_t>(first)] = byte;
            break;
        case 1:
            bytes.insert(bytes.begin() + first, byte);
            break;
        case 2:
            bytes.erase(bytes.begin() + first, bytes.begin() + last);
            break;
        default: {
            const Bytes piece(bytes.begin() + first, bytes.begin() + last);
            bytes.insert(bytes.begin() + from, piece.begin(), piece.end());
        }
    }
}

void Run(const Bytes& bytes) {
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

void RunWithMutations(const Bytes& seed, int mutations) {
    Random random(static_cast<Random::result_type>(seed.size()));
    Run(seed);
    for (int i = 0; i < mutations; ++i) {
        Bytes bytes = seed;
        for (auto steps = 1 + random() % 8; steps > 0; --steps)
            Mutate(bytes, random);
        Run(bytes);
    }
}

}  // namespace

int main(int argc, char** argv) {
    constexpr const char* kMutations = "--mutations=";
    int mutations = 0;
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument.starts_with(kMutations)) {
            mutations = std::atoi(argument.c_str() + std::string(kMutations).size());
            continue;
        }
        for (const std::filesystem::path& file : FilesOf(argument)) {
            RunWithMutations(ReadFile(file), mutations);
            ++inputs;
        }
    }
    std::cout << inputs << " inputs, " << mutations << " mutations each\n";
    return inputs > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
