// The user data window on the test machine.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_machine.h"
#include "userdata/user_data_window.h"

namespace tarnvale::testing {

class UserDataTest : public ::testing::Test {
 protected:
  UserDataTest() {
    machine.processes.variables["USERNAME"] = "ann";
    machine.registry.values[identity_value] = "{1A2B}";
    machine.files.Write("C:\\Windows\\Regedit.exe", "the editor");
    machine.files.MakeFolder(folder);
  }

  /// As the host does it: an error ends the handler.
  void Click(chameleonButton& button) {
    machine.loop.Deliver([&] { button.Click.Emit(); });
  }
  /// Half a second with the window up: a hidden one doesn't wake the loop.
  void Tick() {
    window.Show();
    machine.Advance(500ms);
  }

  void Choose(const Path& chosen) { machine.dialogs.Choose(FakeDialogs::Kind::kFolder, chosen); }
  void Cancel() { machine.dialogs.Cancel(FakeDialogs::Kind::kFolder); }
  void ExpectBackedUp() {
    machine.boxes.Expect("Your User Data Has Been Successfully Backed Up.", BoxIcon::kInformation,
                         BoxAnswer::kOk);
  }
  void ExpectRestored() {
    machine.boxes.Expect("Your User Data Has Been Successfully Restored", BoxIcon::kInformation,
                         BoxAnswer::kOk);
  }

  /// A press with this folder chosen, or with the choice cancelled, up to the
  /// message at its end.
  void BackUp(chameleonButton& button, const Path& chosen) {
    Choose(chosen);
    ExpectBackedUp();
    Click(button);
  }
  void BackUpCancelled(chameleonButton& button) {
    Cancel();
    ExpectBackedUp();
    Click(button);
  }
  void Restore(chameleonButton& button, const Path& chosen) {
    Choose(chosen);
    ExpectRestored();
    Click(button);
  }
  void RestoreCancelled(chameleonButton& button) {
    Cancel();
    ExpectRestored();
    Click(button);
  }

  /// The command lines that were started.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const StartedProcess& process : machine.processes.Started()) lines.push_back(process.text);
    return lines;
  }
  /// The calls of one function of the file system.
  std::vector<std::string> CallsOf(const std::string& function) const {
    std::vector<std::string> calls;
    for (const std::string& call : machine.files.Calls()) {
      if (call.starts_with(function + " ")) calls.push_back(call.substr(function.size() + 1));
    }
    return calls;
  }

  const std::string identity_value = "HKEY_CURRENT_USER\\Identities\\Default User ID";
  const Path folder = "C:\\Keep";
  const Path profile = "C:\\Documents and Settings\\ann";
  FakeMachine machine;
  userdata window{machine.Interfaces()};
};

}  // namespace tarnvale::testing
