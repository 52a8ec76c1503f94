// What a program in the registry editor's place is given on Linux.
#include <sys/stat.h>

#include "core/registry_editor.h"
#include "tests/hosts/linux/linux_stage.h"

namespace tarnvale::testing {
namespace {

class RegistryOnLinuxTest : public LinuxStage {
 protected:
  RegistryOnLinuxTest() {
    std::filesystem::create_directories(OnDrive("windows"));
    EXPECT_EQ(::mkfifo(pipe_.c_str(), 0600), 0);
    const std::string editor = OnDrive("windows/regedit.exe");
    WriteNative(editor, "#!/bin/sh\nprintf '<%s>' \"$@\" > '" + pipe_ + "'\n");
    ::chmod(editor.c_str(), 0755);
  }

  /// Starts a line. Reading the pipe waits for the program.
  std::string WordsGivenBy(const std::string& line) {
    host.processes.StartMinimized(line);
    return ReadNative(pipe_);
  }

  const std::string pipe_ = folder / "pipe";
  LinuxHost host{surroundings};
};

TEST_F(RegistryOnLinuxTest, TheEditorGetsTheFileAloneForTheWholeRegistry) {
  EXPECT_EQ(WordsGivenBy(ExportLine("C:\\My Files\\a.reg", "")), "</e><C:\\My Files\\a.reg>");
}

TEST_F(RegistryOnLinuxTest, TheEditorGetsABranchWhoseQuoteIsNotClosed) {
  EXPECT_EQ(WordsGivenBy(ExportLine("C:\\a.reg", "HKEY_CURRENT_USER\\Software\\My Program")),
            "</e><C:\\a.reg><HKEY_CURRENT_USER\\Software\\My Program>");
}

TEST_F(RegistryOnLinuxTest, TheEditorGetsABranchWithItsSubBranch) {
  EXPECT_EQ(WordsGivenBy(ExportLine("C:\\a.reg", "HKEY_CURRENT_USER", "Software\\")),
            "</e><C:\\a.reg><HKEY_CURRENT_USER\\Software\\>");
}

TEST_F(RegistryOnLinuxTest, TheEditorGetsAnImportWhoseQuoteIsNotClosed) {
  EXPECT_EQ(WordsGivenBy(ImportLine("C:\\My Files\\a.reg")), "</s><C:\\My Files\\a.reg>");
}

}  // namespace
}  // namespace tarnvale::testing
