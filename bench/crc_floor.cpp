// The floor the library is measured against: read every file listed on standard input and
// CRC its bytes with zlib's crc32. Prints the same fields as corpus_driver.
#include <sys/resource.h>
#include <zlib.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

int main() {
  std::vector<std::string> files;
  for (std::string line; std::getline(std::cin, line);)
    if (!line.empty()) files.push_back(line);
  std::vector<unsigned char> buffer(1 << 20);
  uint64_t bytes = 0;
  uLong total = 0;
  auto start = std::chrono::steady_clock::now();
  for (const std::string& path : files) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) continue;
    uLong crc = crc32(0, nullptr, 0);
    for (size_t n; (n = std::fread(buffer.data(), 1, buffer.size(), f)) > 0;) {
      crc = crc32(crc, buffer.data(), uInt(n));
      bytes += n;
    }
    std::fclose(f);
    total ^= crc;
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  std::printf("files %zu faces 0 bytes %llu seconds %.6f maxrss_kb %ld crc %08lx\n", files.size(),
              (unsigned long long)bytes, seconds, usage.ru_maxrss, total);
  return 0;
}
