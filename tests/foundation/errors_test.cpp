// The foundation's exceptions and their exact texts, the debug line and the deadbeef fill.
#include <gtest/gtest.h>

#include <cstring>
#include <locale>
#include <string>

#include "foundation/errors.h"
#include "foundation/file_location.h"
#include "foundation/ux_string.h"

namespace typeprint {
namespace {

TEST(Errors, MessagesJoinTextAndCodeWithAColon) {
  EXPECT_EQ(ErrMsgWithValue("x", -5), "x:-5");
  EXPECT_EQ(ErrMsgWithValue("Error in UxFileSpecification::GetName", -36, true),
            "Error in UxFileSpecification::GetName:-36");
  EXPECT_EQ(AppErrorString(-43), "-43");
  EXPECT_EQ(AppErrorString(0), "0");

  OSErrException os("Open failed", -36);
  EXPECT_STREQ(os.what(), "Open failed:-36");
  EXPECT_EQ(os.code(), -36);
  UXFileSystemException fs("Bad filename in UxFileSpecification::GetName", -37);
  const OSErrException& asBase = fs;
  EXPECT_STREQ(asBase.what(), "Bad filename in UxFileSpecification::GetName:-37");
  EXPECT_EQ(asBase.code(), -37);
  DataRetrieveError data("KeywordTable.plist - Style array");
  EXPECT_STREQ(data.what(), "KeywordTable.plist - Style array");
}

struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Errors, ValueStringUsesTheGivenLocaleOnly) {
  std::locale grouped(std::locale::classic(), new Grouping);
  EXPECT_EQ(ValueString(1234567), "1234567");
  EXPECT_EQ(ValueString(-1234567, &grouped), "-1,234,567");
}

TEST(Errors, FailOnErrorToleratesFileNotFound) {
  UxFileSpecification location;
  EXPECT_EQ(location.FailOnError(0), 0);
  EXPECT_NO_THROW(location.FailOnError(-43));
  const struct {
    short code;
    const char* what;
  } rows[] = {{-36, "Error in UxFileSpecification::GetName:-36"}, {-37, "Error in UxFileSpecification::GetName:-37"},
              {1, "Error in UxFileSpecification::GetName:1"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code);
    try {
      location.FailOnError(row.code);
      ADD_FAILURE() << "no exception";
    } catch (const UXFileSystemException& e) {
      EXPECT_STREQ(e.what(), row.what);
      EXPECT_EQ(e.code(), row.code);
    }
  }
}

TEST(Errors, AppErrorFailureThrowsTheStringListText) {
  const applicationErrorEnumeration codes[] = {kAppErrUnexpected, kAppErrFileNotFound, kAppErrDataFile};
  for (applicationErrorEnumeration code : codes) {
    SCOPED_TRACE(code);
    try {
      AppError_Failure(code);
    } catch (const OSErrException&) {
      ADD_FAILURE() << "a plain runtime_error is expected";
    } catch (const std::runtime_error& e) {
      EXPECT_NE(std::string(e.what()), "");
      EXPECT_EQ(std::string(e.what()), std::string(UxString(2, code)));
    }
  }
}

TEST(Errors, DebugStringIsOneLineOnStandardError) {
  testing::internal::CaptureStderr();
  OutputFormattedDebugString("font %d of %s", 3, "Garamond");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "font 3 of Garamond\n");

  std::string longText(3000, 'x');
  testing::internal::CaptureStderr();
  OutputFormattedDebugString("%s", longText.c_str());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string(2047, 'x') + "\n");
}

TEST(Errors, DeadbeefFillStartsWithDEAtAnyAlignment) {
  const struct {
    size_t offset, size;
    std::string bytes;
  } rows[] = {
      {0, 6, "\xDE\xAD\xBE\xEF\xDE\xAD"},
      {1, 3, "\xDE\xAD\xBE"},
      {0, 4, "\xDE\xAD\xBE\xEF"},
      {2, 7, "\xDE\xAD\xBE\xEF\xDE\xAD\xBE"},
      {0, 0, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.offset) + "+" + std::to_string(row.size));
    alignas(4) unsigned char block[16];
    std::memset(block, 0x55, sizeof block);
    _fill_deadbeef_(block + row.offset, row.size);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(block + row.offset), row.size), row.bytes);
    if (row.offset > 0) {
      EXPECT_EQ(block[row.offset - 1], 0x55);
    }
    EXPECT_EQ(block[row.offset + row.size], 0x55) << "nothing past the block";
  }
}

}  // namespace
}  // namespace typeprint
