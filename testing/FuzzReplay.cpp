// Gives a fuzzer's function the files of a folder: whole, cut at many places, and with bytes changed here and there. What it
// throws, and what ends the process, is a failure; the name printed last tells of which file.
//
//     replay_csv brvUtils/data/fuzz/csv

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t cuts = 300; // of each file, unless it has fewer bytes
constexpr int damages = 300;

void give(const std::string& bytes)
{
    const std::vector<std::uint8_t> exactly(bytes.begin(), bytes.end()); // sanitizers see reads behind its end
    LLVMFuzzerTestOneInput(exactly.data(), exactly.size());
}

void replay(const std::string& bytes, std::minstd_rand& random)
{
    give(bytes);
    for (std::size_t end = 0; end < bytes.size(); end += std::max<std::size_t>(1, bytes.size() / cuts)) {
        give(bytes.substr(0, end));
    }
    for (int i = 0; i < damages && !bytes.empty(); ++i) {
        std::string damaged = bytes;
        for (auto count = 1 + random() % 4; count > 0; --count) {
            damaged[random() % damaged.size()] = static_cast<char>(random() >> 8 & 0xFF);
        }
        give(damaged);
    }
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::filesystem::path> files;
    if (argc == 2 && std::filesystem::is_directory(argv[1])) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
            files.push_back(entry.path());
        }
    }
    if (files.empty()) {
        std::cerr << "usage: " << argv[0] << " FOLDER, with files in it\n";
        return 2;
    }
    std::sort(files.begin(), files.end());
    std::minstd_rand random(1);
    for (const std::filesystem::path& file : files) {
        std::cout << file.filename().string() << std::endl; // at once: the next line may never be reached
        std::ifstream stream(file, std::ios::binary);
        replay({std::istreambuf_iterator<char>(stream), {}}, random);
    }
    return 0;
}
