// The resource file object over real files in every container form: what it reads, the
// C-level functions and their null-object answers, handles, and edits written back.
#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <set>
#include <string>

#include "builders/resource_fork_builder.h"
#include "platform/linux/fork_writer.h"
#include "resources/resource_file.h"
#include "support/mac_fixtures.h"
#include "support/test_paths.h"

namespace typeprint {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::ResourceForkBuilder;

Bytes copyOf(ByteSpan s) { return Bytes(s.begin(), s.end()); }

std::string typeText(uint32_t type) {
  return {char(type >> 24), char(type >> 16), char(type >> 8), char(type)};
}

struct FileCloser {
  void operator()(void* rf) const { FreeResourceFile(rf); }
};
using ResourceFilePtr = std::unique_ptr<void, FileCloser>;

ResourceFilePtr open(const std::string& path, bool readOnly = true) {
  return ResourceFilePtr(AllocateResourceFile(path.c_str(), readOnly));
}

TypeprintResourceFile* object(const ResourceFilePtr& rf) { return static_cast<TypeprintResourceFile*>(rf.get()); }

// One line per resource, in map order, read through the C-level functions and handles.
std::vector<std::string> listing(void* rf) {
  auto* file = static_cast<TypeprintResourceFile*>(rf);
  std::vector<std::string> lines;
  for (int t = 1; t <= file->count1ResTypes(); ++t) {
    uint32_t type = 0;
    file->getResourceTypeViaGet1IndType(&type, t);
    for (int i = 1; i <= countResType(rf, type); ++i) {
      Handle h = getHandleOfTypeAndIndex(rf, type, i);
      int16_t id = 0;
      uint32_t infoType = 0;
      std::string name;
      EXPECT_TRUE(GetResInfo(h, &id, &infoType, &name));
      EXPECT_EQ(infoType, type);
      ByteSpan bytes = HandleBytes(h);
      char crc[9];
      snprintf(crc, sizeof crc, "%08lx", crc32(0, bytes.data, uInt(bytes.size)));
      lines.push_back(typeText(type) + " " + std::to_string(id) + " " + std::to_string(bytes.size) + " " + crc + " " +
                      (name.empty() ? "-" : name));
      ReleaseResource(h);
    }
  }
  return lines;
}

std::vector<std::string> expectedListing(const test::ExpectedFile& file) {
  std::vector<std::string> lines;
  for (const auto& r : file.resources) {
    char crc[9];
    snprintf(crc, sizeof crc, "%08x", r.crc);
    lines.push_back(r.type + " " + std::to_string(r.id) + " " + std::to_string(r.size) + " " + crc + " " + r.name);
  }
  return lines;
}

TEST(ResourceFile, ReadsEveryFixtureAsTheIndependentDumperDoes) {
  const auto files = test::loadMacExpectations();
  ASSERT_GE(files.size(), 20u);
  for (const auto& file : files) {
    SCOPED_TRACE(file.path);
    auto rf = open(test::macFixture(file.path));
    if (file.mapSource == "none") {
      EXPECT_FALSE(rf);
      continue;
    }
    ASSERT_TRUE(rf);
    EXPECT_EQ(object(rf)->isDataFork(), file.mapSource == "data");
    EXPECT_EQ(object(rf)->forks().type, file.type == "-" ? 0 : test::fourCC(file.type));
    EXPECT_EQ(object(rf)->forks().creator, file.creator == "-" ? 0 : test::fourCC(file.creator));
    EXPECT_EQ(listing(rf.get()), expectedListing(file));
    for (const auto& r : file.resources) {
      Handle h = getHandleOfTypeAndResID(rf.get(), test::fourCC(r.type), int16_t(r.id));
      ASSERT_TRUE(h);
      EXPECT_EQ(GetHandleSize(h), r.size);
    }
  }
}

TEST(ResourceFile, EveryContainerFormGivesTheSameResources) {
  const struct {
    const char* reference;
    std::vector<const char*> forms;
  } families[] = {
      {"d-t1mac-lwfn/macbinary/C059Rom",
       {"d-t1mac-lwfn/macbinary-i/C059Rom", "d-t1mac-lwfn/macbinary-stale-crc/C059Rom", "d-t1mac-lwfn/applesingle/C059Rom",
        "d-t1mac-lwfn/appledouble/C059Rom", "d-t1mac-lwfn/netatalk/C059Rom"}},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", {"b-suitcase-truetype/appledouble/DejaVuSans"}},
      {"c-type1-family/macbinary/NimbusSans", {"c-type1-family/appledouble/NimbusSans"}},
      {"c-type1-family/macbinary/NimbuSanReg", {"c-type1-family/appledouble/NimbuSanReg"}},
      {"a-dfont/DejaVuSans.dfont", {"a-dfont/DejaVuSans.dfont.bin"}},
  };
  for (const auto& family : families) {
    auto reference = open(test::macFixture(family.reference));
    ASSERT_TRUE(reference);
    for (const char* form : family.forms) {
      SCOPED_TRACE(form);
      auto rf = open(test::macFixture(form));
      ASSERT_TRUE(rf);
      EXPECT_EQ(listing(rf.get()), listing(reference.get()));
      EXPECT_EQ(object(rf)->isDataFork(), object(reference)->isDataFork());
      if (object(reference)->forks().type != 0) {
        EXPECT_EQ(object(rf)->forks().type, object(reference)->forks().type);
        EXPECT_EQ(object(rf)->forks().creator, object(reference)->forks().creator);
      }
    }
  }
}

TEST(ResourceFile, PredicatesOnRealFiles) {
  const struct {
    const char* path;
    bool fonds, posts, nfnts, printerFont;
  } rows[] = {
      {"c-type1-family/appledouble/NimbusSans", true, false, true, false},
      {"c-type1-family/appledouble/NimbuSanReg", false, true, false, true},
      {"d-t1mac-lwfn/macbinary/C059Rom", false, true, false, true},
      {"b-suitcase-truetype/macbinary/DejaVuSans.bin", true, false, true, false},
      {"a-dfont/NimbusSans-CFF.dfont", true, false, false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    auto rf = open(test::macFixture(row.path));
    ASSERT_TRUE(rf);
    EXPECT_EQ(FileHasFONDsInResourceFork(rf.get()), row.fonds);
    EXPECT_EQ(FileHasPOSTsInResourceFork(rf.get()), row.posts);
    EXPECT_EQ(is_psfont(rf.get()), row.nfnts);
    EXPECT_EQ(is_psprinterfont(rf.get()), row.printerFont);
    EXPECT_FALSE(hasValidResourcePSHeader(rf.get()));  // no writer makes typ1 outlines
  }
}

TEST(ResourceFile, TypeOneOutlineHeader) {
  const struct {
    const char* what;
    Bytes firstSfnt;
    bool valid;
  } rows[] = {
      {"typ1", test::bytesOf("typ1 and more"), true},
      {"exactly typ1", test::bytesOf("typ1"), true},
      {"three bytes", test::bytesOf("typ"), false},
      {"true", test::bytesOf("true...."), false},
      {"OTTO", test::bytesOf("OTTO...."), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    test::ScratchDir scratch;
    // Only the first sfnt counts.
    Bytes fork = ResourceForkBuilder().add("sfnt", 2, row.firstSfnt).add("sfnt", 1, test::bytesOf("typ1")).build();
    test::writeFile(scratch.file("font.dfont"), std::string(fork.begin(), fork.end()));
    auto rf = open(scratch.file("font.dfont"));
    ASSERT_TRUE(rf);
    EXPECT_EQ(hasValidResourcePSHeader(rf.get()), row.valid);
  }
}

TEST(ResourceFile, SortedIdsAndIndexBounds) {
  test::ScratchDir scratch;
  Bytes fork = ResourceForkBuilder()
                   .add("NFNT", 300, {1})
                   .add("NFNT", -5, {2})
                   .add("NFNT", 128, {3})
                   .add("NFNT", 128, {4})
                   .add("FOND", 1, {5})
                   .build();
  test::writeFile(scratch.file("f.dfont"), std::string(fork.begin(), fork.end()));
  auto rf = open(scratch.file("f.dfont"));
  ASSERT_TRUE(rf);
  EXPECT_EQ(object(rf)->getSortedResIDsForType(kTypeNFNT), (std::vector<int16_t>{-5, 128, 300}));
  EXPECT_EQ(object(rf)->getSortedResIDsForType(kTypeFOND), (std::vector<int16_t>{1}));
  EXPECT_TRUE(object(rf)->getSortedResIDsForType(kTypePOST).empty());
  EXPECT_EQ(countResType(rf.get(), kTypeNFNT), 4);
  EXPECT_FALSE(getHandleOfTypeAndIndex(rf.get(), kTypeNFNT, 0));
  EXPECT_FALSE(getHandleOfTypeAndIndex(rf.get(), kTypeNFNT, 5));
  EXPECT_FALSE(getHandleOfTypeAndIndex(rf.get(), kTypeNFNT, -1));
  // The first of two resources with one ID is the one found by ID.
  EXPECT_EQ(HandleBytes(getHandleOfTypeAndResID(rf.get(), kTypeNFNT, 128)).data[0], 3);
  // Asking again gives the same handle.
  EXPECT_EQ(getHandleOfTypeAndIndex(rf.get(), kTypeNFNT, 3), getHandleOfTypeAndResID(rf.get(), kTypeNFNT, 128));
  uint32_t type = 1;
  object(rf)->getResourceTypeViaGet1IndType(&type, 3);
  EXPECT_EQ(type, 0u);
  object(rf)->getResourceTypeViaGet1IndType(nullptr, 1);
  EXPECT_EQ(object(rf)->count1ResTypes(), 2);
  EXPECT_EQ(object(rf)->file(), scratch.file("f.dfont"));
}

TEST(ResourceFile, NullObjectAndFilesWithoutAMap) {
  EXPECT_EQ(countResType(nullptr, kTypeFOND), 0);
  EXPECT_FALSE(getHandleOfTypeAndIndex(nullptr, kTypeFOND, 1));
  EXPECT_FALSE(getHandleOfTypeAndResID(nullptr, kTypeFOND, 128));
  EXPECT_FALSE(FileHasFONDsInResourceFork(nullptr));
  EXPECT_FALSE(FileHasPOSTsInResourceFork(nullptr));
  EXPECT_FALSE(is_psfont(nullptr));
  EXPECT_FALSE(is_psprinterfont(nullptr));
  EXPECT_FALSE(hasValidResourcePSHeader(nullptr));
  FreeResourceFile(nullptr);
  ReleaseResource(nullptr);
  EXPECT_FALSE(GetResInfo(nullptr, nullptr, nullptr, nullptr));
  EXPECT_FALSE(ChangedResource(nullptr));
  EXPECT_FALSE(DetachResource(nullptr));
  EXPECT_FALSE(AllocateResourceFile(nullptr, true));

  for (const char* path : {"../sfnt/DejaVuSans-kern.ttf", "../sfnt/NimbusSans-Regular.otf", "../sfnt/missing.ttf",
                           "d-t1mac-lwfn/appledouble/._C059Rom"}) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(open(test::macFixture(path)));
  }
  // A free handle belongs to no file.
  Handle free = NewHandleFromBytes(test::bytesOf("x"));
  EXPECT_FALSE(GetResInfo(free, nullptr, nullptr, nullptr));
  EXPECT_FALSE(RemoveResource(free));
  DisposeHandle(free);
}

TEST(ResourceFile, HandlesOwnedDetachedAndDisposed) {
  Handle detached = nullptr;
  {
    auto rf = open(test::macFixture("d-t1mac-lwfn/macbinary/C059Rom"));
    ASSERT_TRUE(rf);
    detached = getHandleOfTypeAndResID(rf.get(), kTypePOST, 501);
    ASSERT_TRUE(DetachResource(detached));
    EXPECT_FALSE(GetResInfo(detached, nullptr, nullptr, nullptr));
    // The resource itself stays in the map; a new handle is made for it.
    Handle fresh = getHandleOfTypeAndResID(rf.get(), kTypePOST, 501);
    EXPECT_NE(fresh, detached);
    // Disposing a handle the file owns takes it from the file first.
    DisposeHandle(fresh);
    Handle another = getHandleOfTypeAndResID(rf.get(), kTypePOST, 502);
    EXPECT_EQ(GetHandleSize(another), 2048u);
  }
  // The detached handle outlives its file.
  ASSERT_EQ(GetHandleSize(detached), 899u);
  EXPECT_EQ(std::string(*detached, 2), std::string("\x01\x00", 2));
  EXPECT_EQ(std::string(*detached + 2, 10), "%!PS-Adobe");
  DisposeHandle(detached);
}

TEST(ResourceFile, ActivationReadsThePrinterFontsOfItsFolderOnce) {
  auto rf = open(test::macFixture("c-type1-family/macbinary/NimbusSans"));
  ASSERT_TRUE(rf);
  EXPECT_FALSE(object(rf)->isActivated());
  EXPECT_TRUE(object(rf)->activatedFonts().empty());
  object(rf)->activate();
  ASSERT_TRUE(object(rf)->isActivated());
  // The four LWFN files beside the suitcase (which has no POST resources of its own).
  EXPECT_EQ(object(rf)->activatedFonts().size(), 4u);
  object(rf)->deactivate();
  EXPECT_FALSE(object(rf)->isActivated());
  EXPECT_TRUE(object(rf)->activatedFonts().empty());
}

// --- Writing back ---------------------------------------------------------------------------

// Every file below `dir`, with its bytes.
std::map<std::string, std::string> snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::recursive_directory_iterator(dir))
    if (e.is_regular_file()) files[e.path().lexically_relative(dir).string()] = test::readFile(e.path().string());
  return files;
}

struct Edit {
  uint32_t removed, renamed, rewritten;  // types; the first resource of each is edited
};

const struct WriteRow {
  const char* path;
  Edit edit;
} kWriteRows[] = {
    {"d-t1mac-lwfn/macbinary/C059Rom", {tag("T1UT"), tag("POST"), tag("ICN#")}},
    {"d-t1mac-lwfn/macbinary-i/C059Rom", {tag("T1UT"), tag("POST"), tag("ICN#")}},
    {"d-t1mac-lwfn/macbinary-stale-crc/C059Rom", {tag("T1UT"), tag("POST"), tag("ICN#")}},
    {"d-t1mac-lwfn/applesingle/C059Rom", {tag("T1UT"), tag("POST"), tag("ICN#")}},
    {"d-t1mac-lwfn/appledouble/C059Rom", {tag("T1UT"), tag("POST"), tag("ICN#")}},
    {"d-t1mac-lwfn/netatalk/C059Rom", {tag("T1UT"), tag("POST"), tag("ICN#")}},
    {"b-suitcase-truetype/macbinary/DejaVuSans.bin", {tag("NFNT"), tag("FOND"), tag("sfnt")}},
    {"b-suitcase-truetype/appledouble/DejaVuSans", {tag("NFNT"), tag("FOND"), tag("sfnt")}},
    {"c-type1-family/appledouble/NimbusSans", {tag("NFNT"), tag("FOND"), tag("FOND")}},
    {"a-dfont/DejaVuSans.dfont", {tag("sfnt"), tag("FOND"), tag("FOND")}},
    {"a-dfont/DejaVuSans.dfont.bin", {tag("sfnt"), tag("FOND"), tag("FOND")}},
};

// Applies the row's edits through the handle-level calls: remove the first resource of one
// type, rename the first of another, change the bytes of the first of a third.
void applyEdits(void* rf, const Edit& edit) {
  Handle removed = getHandleOfTypeAndIndex(rf, edit.removed, 1);
  ASSERT_TRUE(RemoveResource(removed));
  DisposeHandle(removed);
  Handle renamed = getHandleOfTypeAndIndex(rf, edit.renamed, 1);
  int16_t id = 0;
  ASSERT_TRUE(GetResInfo(renamed, &id, nullptr, nullptr));
  const std::string name = "Edited name";
  ASSERT_TRUE(SetResInfo(renamed, int16_t(id + 1000), &name));
  Handle rewritten = getHandleOfTypeAndIndex(rf, edit.rewritten, 1);
  ASSERT_TRUE(SetHandleSize(rewritten, GetHandleSize(rewritten) + 3));
  (*rewritten)[GetHandleSize(rewritten) - 1] = 'Z';
  ASSERT_TRUE(ChangedResource(rewritten));
}

// The listing expected after applyEdits, computed on the listing of the unedited file.
std::vector<std::string> editedListing(void* rf, const Edit& edit) {
  std::vector<std::string> lines;
  auto* file = static_cast<TypeprintResourceFile*>(rf);
  for (int t = 1; t <= file->count1ResTypes(); ++t) {
    uint32_t type = 0;
    file->getResourceTypeViaGet1IndType(&type, t);
    for (int i = 1; i <= countResType(rf, type); ++i) {
      ByteSpan bytes = HandleBytes(getHandleOfTypeAndIndex(rf, type, i));
      int16_t id = 0;
      std::string name;
      GetResInfo(getHandleOfTypeAndIndex(rf, type, i), &id, nullptr, &name);
      Bytes data = copyOf(bytes);
      if (i == 1 && type == edit.removed) continue;
      if (i == 1 && type == edit.renamed) {
        id = int16_t(id + 1000);
        name = "Edited name";
      }
      if (i == 1 && type == edit.rewritten) data.insert(data.end(), {0, 0, 'Z'});
      char crc[9];
      snprintf(crc, sizeof crc, "%08lx", crc32(0, data.data(), uInt(data.size())));
      lines.push_back(typeText(type) + " " + std::to_string(id) + " " + std::to_string(data.size()) + " " + crc + " " +
                      (name.empty() ? "-" : name));
    }
  }
  return lines;
}

TEST(ResourceFile, EditsAreWrittenBackIntoEveryContainerForm) {
  for (const WriteRow& row : kWriteRows) {
    SCOPED_TRACE(row.path);
    test::ScratchDir scratch;
    const std::string path = test::copyMacFixture(row.path, scratch.path());
    std::vector<std::string> filesBefore;
    for (const auto& [name, bytes] : snapshot(scratch.path())) filesBefore.push_back(name);
    std::vector<std::string> expected;
    ForkSource source;
    uint32_t type, creator;
    Bytes dataForkBefore;
    bool dataMap;
    {
      auto rf = open(path, false);
      ASSERT_TRUE(rf);
      expected = editedListing(rf.get(), row.edit);
      source = object(rf)->forks().source;
      type = object(rf)->forks().type;
      creator = object(rf)->forks().creator;
      dataMap = object(rf)->isDataFork();
      dataForkBefore = copyOf(object(rf)->forks().dataFork);
      applyEdits(rf.get(), row.edit);
    }  // closing writes the changes
    auto rf = open(path);
    ASSERT_TRUE(rf);
    EXPECT_EQ(listing(rf.get()), expected);
    EXPECT_EQ(object(rf)->forks().source, source);
    EXPECT_EQ(object(rf)->forks().type, type);
    EXPECT_EQ(object(rf)->forks().creator, creator);
    EXPECT_EQ(object(rf)->isDataFork(), dataMap);
    if (!dataMap) {
      EXPECT_EQ(copyOf(object(rf)->forks().dataFork), dataForkBefore);
    }
    // Nothing is left behind: the same files as before, no temporary ones.
    std::vector<std::string> filesAfter;
    for (const auto& [name, bytes] : snapshot(scratch.path())) filesAfter.push_back(name);
    EXPECT_EQ(filesAfter, filesBefore);
  }
}

TEST(ResourceFile, UnchangedFilesAreNotRewritten) {
  test::ScratchDir scratch;
  const std::string path = test::copyMacFixture("d-t1mac-lwfn/macbinary-stale-crc/C059Rom", scratch.path());
  auto before = snapshot(scratch.path());
  {
    auto rf = open(path, false);
    ASSERT_TRUE(rf);
    listing(rf.get());
    EXPECT_TRUE(object(rf)->updateResFile());
  }
  EXPECT_EQ(snapshot(scratch.path()), before);
}

TEST(ResourceFile, ReadOnlyFilesRefuseToWrite) {
  test::ScratchDir scratch;
  const std::string path = test::copyMacFixture("b-suitcase-truetype/appledouble/DejaVuSans", scratch.path());
  auto before = snapshot(scratch.path());
  {
    auto rf = open(path, true);
    ASSERT_TRUE(rf);
    applyEdits(rf.get(), {tag("NFNT"), tag("FOND"), tag("sfnt")});
    EXPECT_EQ(countResType(rf.get(), kTypeNFNT), 3);  // the edit is visible in memory
    EXPECT_FALSE(object(rf)->updateResFile());
  }
  EXPECT_EQ(snapshot(scratch.path()), before);
}

TEST(ResourceFile, AnInterruptedWriteLeavesTheOriginal) {
  for (const WriteRow& row : kWriteRows) {
    SCOPED_TRACE(row.path);
    test::ScratchDir scratch;
    const std::string path = test::copyMacFixture(row.path, scratch.path());
    auto before = snapshot(scratch.path());
    setReplaceFaultForTesting([](const std::string& temp) {
      EXPECT_TRUE(fs::exists(temp));  // fully written, just not renamed
      return false;
    });
    {
      auto rf = open(path, false);
      ASSERT_TRUE(rf);
      applyEdits(rf.get(), row.edit);
      EXPECT_FALSE(object(rf)->updateResFile());
    }  // closing tries once more, and fails the same way
    setReplaceFaultForTesting(nullptr);
    EXPECT_EQ(snapshot(scratch.path()), before);
  }
}

TEST(ResourceFile, AddedResourcesAreWritten) {
  test::ScratchDir scratch;
  const std::string path = test::copyMacFixture("c-type1-family/appledouble/NimbuSanReg", scratch.path());
  {
    auto rf = open(path, false);
    ASSERT_TRUE(rf);
    Handle h = NewHandleFromBytes(test::bytesOf("\x05"));
    const std::string name = "Added";
    ASSERT_TRUE(object(rf)->addResource(h, kTypePOST, 600, &name));
    EXPECT_FALSE(object(rf)->addResource(h, kTypePOST, 601, nullptr));  // already the file's
    EXPECT_TRUE(object(rf)->updateResFile());
  }
  auto rf = open(path);
  ASSERT_TRUE(rf);
  EXPECT_EQ(object(rf)->getSortedResIDsForType(kTypePOST), (std::vector<int16_t>{501, 502, 503, 504, 505, 600}));
  std::string name;
  EXPECT_TRUE(GetResInfo(getHandleOfTypeAndResID(rf.get(), kTypePOST, 600), nullptr, nullptr, &name));
  EXPECT_EQ(name, "Added");
}

}  // namespace
}  // namespace typeprint
