// Runs a fuzz target over every file of the folders (or files) named on the command line, so the
// saved corpus replays as an ordinary test in builds without libFuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

void replay(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    std::filesystem::path root(argv[i]);
    if (std::filesystem::is_directory(root)) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) {
          replay(entry.path());
          ++count;
        }
      }
    } else if (std::filesystem::exists(root)) {
      replay(root);
      ++count;
    }
  }
  std::printf("replayed %zu inputs\n", count);
  return 0;
}
