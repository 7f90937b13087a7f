// The foundation's exceptions and their exact texts, the debug line and the deadbeef fill.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "foundation/errors.h"
#include "foundation/file_location.h"
#include "foundation/ux_string.h"

namespace typeprint {
namespace {

TEST(Errors, ExceptionAndDebugTexts) {
  EXPECT_EQ(ErrMsgWithValue("x", -5), "x:-5");
  UXFileSystemException fs("Bad filename in UxFileSpecification::GetName", -37);
  const OSErrException& asBase = fs;
  EXPECT_STREQ(asBase.what(), "Bad filename in UxFileSpecification::GetName:-37");
  EXPECT_EQ(asBase.code(), -37);

  UxFileSpecification location;
  EXPECT_EQ(location.FailOnError(-43), -43) << "file not found is tolerated";
  try {
    location.FailOnError(-36);
    ADD_FAILURE() << "no exception";
  } catch (const UXFileSystemException& e) {
    EXPECT_STREQ(e.what(), "Error in UxFileSpecification::GetName:-36");
  }
  try {
    AppError_Failure(kAppErrDataFile);
    ADD_FAILURE() << "no exception";
  } catch (const std::runtime_error& e) {
    EXPECT_EQ(dynamic_cast<const OSErrException*>(&e), nullptr) << "a plain runtime_error is expected";
    EXPECT_EQ(std::string(e.what()), std::string(UxString(2, kAppErrDataFile)));
  }

  testing::internal::CaptureStderr();
  OutputFormattedDebugString("font %d of %s", 3, "Garamond");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "font 3 of Garamond\n");
  testing::internal::CaptureStderr();
  OutputFormattedDebugString("%s", std::string(3000, 'x').c_str());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string(2047, 'x') + "\n");
}

TEST(Errors, DeadbeefFillStartsWithDEAtAnyAlignment) {
  for (size_t offset : {0, 1}) {
    alignas(4) unsigned char block[8];
    std::memset(block, 0x55, sizeof block);
    _fill_deadbeef_(block + offset, 6);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(block + offset), 7), "\xDE\xAD\xBE\xEF\xDE\xAD\x55") << offset;
  }
}

}  // namespace
}  // namespace typeprint
