#include "hosts/linux/linux_application_folders.h"

#include "tests/hosts/contract/variable_for.h"
#include "tests/hosts/linux/linux_stage.h"

namespace tarnvale::testing {
namespace {

class LinuxApplicationFoldersTest : public LinuxStage {
 protected:
  void MakeHomeFolder(const std::string& name) {
    std::filesystem::create_directories(OnDrive("home/ann/" + name));
  }
  std::optional<Path> Of(Application application) {
    return host.applications.DataFolder(application);
  }

  LinuxHost host{surroundings};
};

TEST_F(LinuxApplicationFoldersTest, WithoutAnyFolderThePackagesPlacesAreReturned) {
  EXPECT_EQ(Of(Application::kFirefox), "C:\\home\\ann\\.mozilla\\firefox");
  EXPECT_EQ(Of(Application::kThunderbird), "C:\\home\\ann\\.thunderbird");
  EXPECT_EQ(Of(Application::kOpera), "C:\\home\\ann\\.config\\opera");
}

TEST_F(LinuxApplicationFoldersTest, AnApplicationInASandboxIsFoundThere) {
  MakeHomeFolder("snap/firefox/common/.mozilla/firefox");
  MakeHomeFolder(".var/app/org.mozilla.Thunderbird/.thunderbird");
  MakeHomeFolder("snap/opera/current/.config/opera");
  EXPECT_EQ(Of(Application::kFirefox), "C:\\home\\ann\\snap\\firefox\\common\\.mozilla\\firefox");
  EXPECT_EQ(Of(Application::kThunderbird),
            "C:\\home\\ann\\.var\\app\\org.mozilla.Thunderbird\\.thunderbird");
  EXPECT_EQ(Of(Application::kOpera), "C:\\home\\ann\\snap\\opera\\current\\.config\\opera");
}

TEST_F(LinuxApplicationFoldersTest, ASandboxesPlacesAreLookedAtInTurn) {
  MakeHomeFolder(".var/app/org.mozilla.firefox/config/mozilla/firefox");
  EXPECT_EQ(Of(Application::kFirefox),
            "C:\\home\\ann\\.var\\app\\org.mozilla.firefox\\config\\mozilla\\firefox");
  MakeHomeFolder(".var/app/org.mozilla.firefox/.mozilla/firefox");
  EXPECT_EQ(Of(Application::kFirefox),
            "C:\\home\\ann\\.var\\app\\org.mozilla.firefox\\.mozilla\\firefox");
  // The last one first: each that is added comes before it.
  for (const char* name :
       {"net.thunderbird.Thunderbird", "org.mozilla.thunderbird", "org.mozilla.Thunderbird"}) {
    MakeHomeFolder(std::string(".var/app/") + name + "/.thunderbird");
    EXPECT_EQ(Of(Application::kThunderbird),
              std::string("C:\\home\\ann\\.var\\app\\") + name + "\\.thunderbird");
  }
}

TEST_F(LinuxApplicationFoldersTest, ALinkEndsInABackslash) {
  MakeHomeFolder("elsewhere/firefox");
  MakeHomeFolder(".mozilla");
  std::filesystem::create_directory_symlink("../elsewhere/firefox",
                                            OnDrive("home/ann/.mozilla/firefox"));
  EXPECT_EQ(Of(Application::kFirefox), "C:\\home\\ann\\.mozilla\\firefox\\");
  // One that leads nowhere is no folder.
  std::filesystem::create_directory_symlink("gone", OnDrive("home/ann/.thunderbird"));
  EXPECT_EQ(Of(Application::kThunderbird), "C:\\home\\ann\\.thunderbird");
}

TEST_F(LinuxApplicationFoldersTest, ThePackagesOwnPlaceComesFirstAndIsLookedForAnew) {
  MakeHomeFolder("snap/firefox/common/.mozilla/firefox");
  MakeHomeFolder(".config/mozilla/firefox");
  EXPECT_EQ(Of(Application::kFirefox), "C:\\home\\ann\\.config\\mozilla\\firefox");
  MakeHomeFolder(".mozilla/firefox");
  EXPECT_EQ(Of(Application::kFirefox), "C:\\home\\ann\\.mozilla\\firefox");
}

TEST_F(LinuxApplicationFoldersTest, AFileInThePlaceOfTheFolderIsPassedBy) {
  MakeHomeFolder("snap/thunderbird/common/.thunderbird");
  WriteNative(OnDrive("home/ann/.thunderbird"), "no folder");
  EXPECT_EQ(Of(Application::kThunderbird),
            "C:\\home\\ann\\snap\\thunderbird\\common\\.thunderbird");
}

TEST(UserFoldersTest, TheEnvironmentGivesThem) {
  const VariableFor home("HOME", "/home/ann");
  {
    const VariableFor config("XDG_CONFIG_HOME", "/settings/ann");
    EXPECT_EQ(UserFolders::Present().home, "/home/ann");
    EXPECT_EQ(UserFolders::Present().config, "/settings/ann");
  }
  for (const char* no_folder : {"relative", ""}) {
    const VariableFor config("XDG_CONFIG_HOME", no_folder);
    EXPECT_EQ(UserFolders::Present().config, "/home/ann/.config");
  }
}

TEST(UserFoldersTest, WithoutTheVariableTheUsersEntryGivesTheHome) {
  const VariableFor home("HOME", nullptr);
  EXPECT_EQ(UserFolders::Present().home.front(), '/');
}

}  // namespace
}  // namespace tarnvale::testing
