// Feeds the files of the folders given, and cuts of them, to the fuzz target, without a fuzzing engine.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {
constexpr std::size_t mostCuts = 1024; // all of a shorter file
}

int main(int argc, char** argv)
{
    std::size_t files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream in(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
            const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
            const std::size_t step = 1 + bytes.size() / mostCuts;
            for (std::size_t size = 0; size < bytes.size(); size += step)
                LLVMFuzzerTestOneInput(data, size);
            LLVMFuzzerTestOneInput(data, bytes.size());
            ++files;
        }
    }
    std::printf("%zu files\n", files);
    return files > 0 ? 0 : 1;
}
