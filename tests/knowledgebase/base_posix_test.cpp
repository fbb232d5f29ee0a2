#include <gtest/gtest.h>

#include "automation/failure.h"
#include "deskhost/knowledgebase/base.h"
#include "platform/temp_folder.h"

namespace kb_testing {
namespace {

TEST(BaseSourcesOnPosix, AFileIsOneOfTheSystemsDriver) {
  EXPECT_EQ(deskhost::base_source("a/kb.db").connection_string, "Driver=SQLite3;Database=a/kb.db");
}

TEST(BaseSourcesOnPosix, ATemporaryOneTellsOfItsFolder) {
  for (const char* folder : {"/no/such/folder", "/dev/null"}) {
    const testing_support::WithVariable set("TMPDIR", folder);
    try {
      deskhost::Base(deskhost::temporary_base(), deskhost::Base::Open::create);
      ADD_FAILURE() << folder;
    } catch (const automation::Failure& failure) {
      EXPECT_NE(std::string(failure.what()).find("TMPDIR is \"" + std::string(folder)), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace kb_testing
