// Takes each file of the folders (or each file) named on the command line through the fuzz target that this is linked
// with, once, as libFuzzer would. A folder that is not there holds nothing; no file at all is a failure.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> files_below(const std::filesystem::path& place) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_regular_file(place)) files.push_back(place);
    if (!std::filesystem::is_directory(place)) return files;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // The name is the last thing said if this input brings the program down.
    std::printf("%s\n", path.filename().c_str());
    std::fflush(stdout);
    // A copy without a terminating 0, for a read behind the end to be seen.
    const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const std::filesystem::path& path : files_below(argv[i])) {
            replay(path);
            ++count;
        }
    }
    if (count == 0) std::fprintf(stderr, "nothing to replay\n");
    return count == 0 ? 1 : 0;
}
