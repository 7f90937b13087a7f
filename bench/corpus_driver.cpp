// Identifies every file listed on standard input with every attribute bit, on one thread, and
// prints files, faces, bytes, seconds and peak RSS: the library side of bench/corpus.sh.
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "typeprint.h"

int main() {
  std::vector<std::string> files;
  for (std::string line; std::getline(std::cin, line);)
    if (!line.empty()) files.push_back(line);
  uint64_t bytes = 0, faces = 0;
  auto start = std::chrono::steady_clock::now();
  for (const std::string& path : files) {
    struct stat st;
    if (stat(path.c_str(), &st) == 0) bytes += uint64_t(st.st_size);
    TP_FontArray* array = nullptr;
    if (TP_CreateSpecifier(path.c_str(), 0, TP_ATTR_ALL, &array) != TP_STATUS_OK) continue;
    uint32_t count = 0;
    TP_GetFontCount(array, &count);
    faces += count;
    TP_SpecifierFree(array);
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  std::printf("files %zu faces %llu bytes %llu seconds %.6f maxrss_kb %ld\n", files.size(),
              (unsigned long long)faces, (unsigned long long)bytes, seconds, usage.ru_maxrss);
  return 0;
}
