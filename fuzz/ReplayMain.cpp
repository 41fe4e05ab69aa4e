// Runs a fuzz target over saved inputs without libFuzzer: every argument is a
// file or a directory of files, each fed once to LLVMFuzzerTestOneInput.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int failures = 0;
    std::size_t inputs = 0;
    const auto replay = [&](const std::filesystem::path& file) {
        ++inputs;
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "cannot read %s\n", file.c_str());
            ++failures;
            return;
        }
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    };
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            replay(argv[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
            if (entry.is_regular_file()) replay(entry.path());
    }
    std::printf("replayed %zu inputs\n", inputs);
    return failures == 0 && inputs > 0 ? 0 : 1;
}
