// What a table of profiles knows without the medium's help.
#include "platform/profile_table.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

constexpr char kFile[] = "C:\\t.ini";

// A medium that shows no change: its times are coarse and nothing is numbered.
class StillMedium : public ProfileTable {
 public:
  std::string content = "[A]\r\nx=1\r\n";
  bool takes_files = true;

 private:
  class File : public NativeProfile {
   public:
    explicit File(StillMedium& medium) : medium_(medium) {}
    bool Find() override { return true; }
    std::string Place() override { return {}; }
    bool IsAsRead() override { return true; }
    std::optional<std::string> Read() override { return medium_.content; }
    bool MayBeWritten() override { return true; }
    bool Begin() override { return true; }
    Outcome Replace(const std::string& bytes, bool, std::string&) override {
      if (!medium_.takes_files) return Outcome::kFailed;
      medium_.content = bytes;
      return Outcome::kDone;
    }

   private:
    StillMedium& medium_;
  };
  std::unique_ptr<NativeProfile> MakeNative(const Path&) override {
    return std::make_unique<File>(*this);
  }
};

TEST(ProfileTableTest, WhatWasSavedIsReadThoughTheFileLooksAsBefore) {
  StillMedium profiles;
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(profiles.Read("A", "x", "", 255, kFile), "2");
}

TEST(ProfileTableTest, WhatCouldNotBeSavedIsGivenUpThoughTheFileLooksAsBefore) {
  StillMedium profiles;
  profiles.takes_files = false;
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  EXPECT_FALSE(profiles.Flush(kFile));
  EXPECT_EQ(profiles.Read("A", "x", "", 255, kFile), "1");
}

}  // namespace
}  // namespace tarnvale
