// Throughput of the hot path of a scan: naming-table reading, collection face CRCs without
// materialising faces (against materialising them), and whole-file CRCs against a plain
// read-and-zlib loop.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <string>
#include <vector>

#include "analysis/checksums.h"
#include "analysis/name_table.h"
#include "analysis/ttc_split.h"
#include "platform/linux/fork_locator.h"

namespace {

using namespace typeprint;

const char* const kFonts[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf",
    "/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf",
};

// The source tree, found from this file's own path (the build passes absolute paths).
std::string sourcePath(const char* relative) {
  std::string self = __FILE__;
  return self.substr(0, self.rfind("/bench/") + 1) + relative;
}

void NameTable(benchmark::State& state) {
  std::vector<FileForks> fonts;
  size_t bytes = 0;
  for (const char* path : kFonts)
    if (auto f = openForks(path)) fonts.push_back(*f);
  if (fonts.empty()) return state.SkipWithError("no fonts installed");
  for (auto _ : state) {
    for (const FileForks& f : fonts) {
      UxString family, postScript, full, styled;
      benchmark::DoNotOptimize(getMetaDataFromNamesTable(f.dataFork, nullptr, &family, nullptr,
                                                         &postScript, &styled, &full, nullptr));
      bytes += f.dataFork.size;
    }
  }
  state.SetBytesProcessed(int64_t(bytes));
  state.SetLabel("MB/s of font files whose names are read");
}
BENCHMARK(NameTable);

// A collection of many faces sharing one large table, as the big CJK collections are built.
std::vector<uint8_t> sharedTableCollection(unsigned faces, size_t sharedSize) {
  std::vector<uint8_t> out;
  auto u32 = [&](size_t at, uint32_t v) { for (int i = 0; i < 4; ++i) out[at + i] = uint8_t(v >> (24 - 8 * i)); };
  size_t header = 12 + 4 * faces, faceSize = 12 + 16 * 2;
  size_t shared = header + faces * faceSize, own = shared + sharedSize;
  out.assign(own + faces * 64, 0);
  for (size_t i = shared; i < own; ++i) out[i] = uint8_t(i * 131);
  u32(0, 0x74746366);
  u32(4, 0x00010000);
  u32(8, faces);
  for (unsigned f = 0; f < faces; ++f) {
    size_t at = header + f * faceSize;
    u32(12 + 4 * f, uint32_t(at));
    u32(at, 0x00010000);
    out[at + 5] = 2;
    u32(at + 12, 0x676C7966), u32(at + 20, uint32_t(shared)), u32(at + 24, uint32_t(sharedSize));
    u32(at + 28, 0x6E616D65), u32(at + 36, uint32_t(own + 64 * f)), u32(at + 40, 64);
  }
  return out;
}

void CollectionFaceCrcAssembled(benchmark::State& state) {
  std::vector<uint8_t> ttc = sharedTableCollection(8, 4 << 20);
  size_t bytes = 0;
  for (auto _ : state) {
    TrueTypeCollectionFont collection{ByteSpan(ttc)};
    for (unsigned face = 0; face < collection.faceCount(); ++face) {
      TTCFace layout;
      collection.GetFaceLayout(face, layout);
      benchmark::DoNotOptimize(layout.crc());
    }
    bytes += ttc.size();
  }
  state.SetBytesProcessed(int64_t(bytes));
  state.SetLabel("MB/s of collection file");
}
BENCHMARK(CollectionFaceCrcAssembled);

void CollectionFaceCrcMaterialised(benchmark::State& state) {
  std::vector<uint8_t> ttc = sharedTableCollection(8, 4 << 20);
  size_t bytes = 0;
  std::vector<uint8_t> face;
  for (auto _ : state) {
    TrueTypeCollectionFont collection{ByteSpan(ttc)};
    for (unsigned i = 0; i < collection.faceCount(); ++i) {
      collection.GetDataPtrForFace(i, face);
      benchmark::DoNotOptimize(CChecksum::icrc(ByteSpan(face), 0));
    }
    bytes += ttc.size();
  }
  state.SetBytesProcessed(int64_t(bytes));
  state.SetLabel("MB/s of collection file");
}
BENCHMARK(CollectionFaceCrcMaterialised);

void RealCollectionFaceCrc(benchmark::State& state) {
  auto forks = openForks(sourcePath("tests/fonts/sfnt/DejaVuSans-3faces.ttc"));
  if (!forks) return state.SkipWithError("fixture missing");
  size_t bytes = 0;
  for (auto _ : state) {
    TrueTypeCollectionFont collection{forks->dataFork};
    for (unsigned face = 0; face < collection.faceCount(); ++face) {
      TTCFace layout;
      collection.GetFaceLayout(face, layout);
      benchmark::DoNotOptimize(layout.crc());
    }
    bytes += forks->dataFork.size;
  }
  state.SetBytesProcessed(int64_t(bytes));
}
BENCHMARK(RealCollectionFaceCrc);

void WholeFileCrc(benchmark::State& state) {
  size_t bytes = 0;
  for (auto _ : state) {
    for (const char* path : kFonts) {
      auto forks = openForks(path);
      if (!forks) continue;
      uint32_t crc = 0;
      CChecksum::CalculateFileChecksum(&*forks, &crc, nullptr);
      benchmark::DoNotOptimize(crc);
      bytes += forks->dataFork.size;
    }
  }
  state.SetBytesProcessed(int64_t(bytes));
  state.SetLabel("map + CRC");
}
BENCHMARK(WholeFileCrc);

// The floor a scan is held to: read() every file and zlib-CRC it.
void ReadAndZlibCrcFloor(benchmark::State& state) {
  size_t bytes = 0;
  std::vector<uint8_t> buffer;
  for (auto _ : state) {
    for (const char* path : kFonts) {
      int fd = open(path, O_RDONLY);
      if (fd < 0) continue;
      off_t size = lseek(fd, 0, SEEK_END);
      lseek(fd, 0, SEEK_SET);
      buffer.resize(size_t(size));
      ssize_t n = read(fd, buffer.data(), buffer.size());
      close(fd);
      benchmark::DoNotOptimize(crc32(0, buffer.data(), uInt(n > 0 ? n : 0)));
      bytes += size_t(size);
    }
  }
  state.SetBytesProcessed(int64_t(bytes));
  state.SetLabel("read + zlib crc32");
}
BENCHMARK(ReadAndZlibCrcFloor);

}  // namespace
