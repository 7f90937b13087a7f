// The foundry and classification getters as a caller sees them, answered from the installed data.
#include <gtest/gtest.h>

#include <memory>

#include "api/font_specifier.h"
#include "base/be_reader.h"
#include "typeprint.h"

namespace {

using typeprint::tag;

struct ArrayDeleter {
  void operator()(TP_FontArray* a) const { TP_SpecifierFree(a); }
};
using Array = std::unique_ptr<TP_FontArray, ArrayDeleter>;

Array oneFace(const char* platform, const char* foundry, uint32_t fileCreator, uint32_t outlineCreator,
              uint32_t mask = TP_ATTR_ALL) {
  TP_FontSpecifier face;
  face.platform = platform;
  face.foundryName = foundry;
  face.fileCreator = fileCreator;
  face.outlineFileCreator = outlineCreator;
  face.attributes = mask;
  Array array(new TP_FontArray);
  array->append(face);
  return array;
}

TEST(FoundryGetters, ModernTrustsTheTextLegacyTheCreatorCodes) {
  const struct { const char *what, *platform, *foundry; uint32_t fileCreator, outlineCreator;
                 const char *modern, *legacy; } rows[] = {
      {"URW notice beside an Adobe creator code", "crossplatform", "URW Software, Copyright 2015 by URW",
       tag("ASPF"), 0, "URW++", "Adobe"},
      {"Mac face: creator code over a known text", "mac", "Copyright (c) 2003 by Bitstream, Inc.", tag("ASPF"), 0,
       "Adobe", "Adobe"},
      {"Mac face: outline file's creator code", "mac", "Anonymous", 0, tag("ASPF"), "Adobe", "Adobe"},
      {"questionable file creator: the text first", "mac", "Copyright (c) 2003 by Bitstream, Inc.", tag("ACp1"),
       tag("ASPF"), "Bitstream", "Bitstream"},
      {"questionable code and unknown text: known outline creator", "mac", "Anonymous", tag("ACp1"), tag("ASPF"),
       "Adobe", "Adobe"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Array array = oneFace(row.platform, row.foundry, row.fileCreator, row.outlineCreator);
    char buffer[64];
    ASSERT_EQ(TP_GetFoundryName(array.get(), 0, buffer, sizeof buffer), TP_STATUS_OK);
    EXPECT_STREQ(buffer, row.modern);
    ASSERT_EQ(TP_GetLegacyFoundryName(array.get(), 0, buffer, sizeof buffer), TP_STATUS_OK);
    EXPECT_STREQ(buffer, row.legacy);
  }
}

TEST(FoundryGetters, StatusOrder) {
  Array ungated = oneFace("crossplatform", "DejaVu fonts team", 0, 0, TP_ATTR_ALL & ~TP_ATTR_FOUNDRY_NAME);
  Array macUngated = oneFace("mac", "DejaVu fonts team", tag("ASPF"), 0, TP_ATTR_FAMILY_NAME);
  for (auto get : {TP_GetFoundryName, TP_GetLegacyFoundryName}) {
    char buffer[16];
    EXPECT_EQ(get(nullptr, 5, nullptr, 16), TP_STATUS_FAILED);
    EXPECT_EQ(get(ungated.get(), 1, buffer, sizeof buffer), TP_STATUS_RANGE);
    EXPECT_EQ(get(ungated.get(), 0, buffer, sizeof buffer), TP_STATUS_NOT_COLLECTED);
    EXPECT_EQ(get(macUngated.get(), 0, buffer, sizeof buffer), TP_STATUS_NOT_COLLECTED) << "a creator code alone";
  }
}

TEST(ClassificationGetter, FamilyThenOtherFamilyAndArgumentChecks) {
  const struct { const char *family, *other, *expected; } rows[] = {
      {"DEJAVU SERIF", "Courier", "Serif"},  // the first family wins when it is known
      {"Unlisted Family", "Courier", "Monospace"},
      {"Unlisted Family", nullptr, "--"},
      {"", "URW Chancery L", "Script"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.family);
    char buffer[32];
    ASSERT_EQ(TP_GetClassificationFromFamily(row.family, row.other, buffer, sizeof buffer), TP_STATUS_OK);
    EXPECT_STREQ(buffer, row.expected);
  }
  char buffer[16] = "untouched";
  EXPECT_EQ(TP_GetClassificationFromFamily(nullptr, "Courier", buffer, sizeof buffer), TP_STATUS_FAILED);
  EXPECT_EQ(TP_GetClassificationFromFamily("Courier", "Courier", nullptr, 16), TP_STATUS_FAILED);
  EXPECT_STREQ(buffer, "untouched");
  EXPECT_EQ(TP_GetClassificationFromFamily("Helvetica", nullptr, buffer, 5), TP_STATUS_OK);
  EXPECT_STREQ(buffer, "Sans");
}

}  // namespace
