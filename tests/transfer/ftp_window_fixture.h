// The FTP window on the test machine, and what happens to it in order.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/fake_machine.h"
#include "transfer/ftp_window.h"

namespace tarnvale::testing {

using Actions = std::vector<std::string>;
using Dialog = FakeDialogs::Kind;

inline constexpr const char* kServerError =
    "Server Error: Check That All Data Is Correct And Make Sure That The Server Is Accessible.";

/// The parts one after the other.
inline Actions Joined(const std::vector<Actions>& parts) {
  Actions all;
  for (const Actions& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

/// A filter with "|" for each of its NULs.
inline std::string WithBars(std::string filter) {
  std::replace(filter.begin(), filter.end(), '\0', '|');
  return filter;
}

class FtpWindowTest : public ::testing::Test {
 protected:
  FtpWindowTest() {
    window.SaveChanges = [this] {
      ++saves;
      saved = {settings.FtpServer, settings.FtpUsername, settings.FtpPassword};
      if (save_failure != 0) throw ProgramError(save_failure);
    };
    window.Show();
  }

  /// All that upload and download need.
  void FillFields() {
    window.txtServer.Text = "ftp.home";
    window.txtUserID.Text = "ann";
    window.txtPassword.Text = "s3cret";
    window.txtLocal.Text = "C:\\Store\\a b.tvz";
    window.txtRemote.Text = "ab.tvz";
    window.Text22.Text = "far";
    window.Text23.Text = "tvz";
  }

  /// Commands that report nothing and last so long.
  void LetCommandsLast(std::chrono::milliseconds span) {
    for (const char* verb : {"DIR", "PUT", "GET", "CLOSE"}) ftp.Let(verb, {.lasts = span});
  }

  /// As the host does it: an error ends the handler.
  void Click(chameleonButton& button) {
    machine.loop.Deliver([&] { button.Click.Emit(); });
  }

  void ExpectError(const std::string& text) {
    machine.boxes.Expect(text, BoxIcon::kStop, BoxAnswer::kOk);
  }
  void ExpectInformation(const std::string& text) {
    machine.boxes.Expect(text, BoxIcon::kInformation, BoxAnswer::kOk);
  }
  /// The next box is in the actions and stays open for so long.
  void FollowNextBox(std::chrono::milliseconds span = 0ms) {
    machine.boxes.WhileOpen([this, span] {
      actions.push_back("box");
      machine.Advance(span);
    });
  }

  /// Writes down from now on what the transport is given and what changes.
  void FollowAll() {
    for (XP_ProgressBar* bar :
         {&window.XP_ProgressBar1, &window.XP_ProgressBar2, &window.XP_ProgressBar3}) {
      bar->Value = 50;
    }
    ftp.Called.Listen([this](const std::string& call) { actions.push_back(call); });
    window.ConnectionStatus.Changed.Listen(
        [this] { actions.push_back("status: " + window.ConnectionStatus.Get()); });
    Follow(window.XP_ProgressBar1, "bar 1: ");
    Follow(window.XP_ProgressBar2, "bar 2: ");
    Follow(window.XP_ProgressBar3, "bar 3: ");
    Follow(window.Timer2.Enabled, "Timer2");
    Follow(window.Timer3.Enabled, "Timer3");
    Follow(window.chameleonButton1.Enabled, "chameleonButton1");
    Follow(window.cmdBrowse.Enabled, "cmdBrowse");
    Follow(window.chameleonButton3.Enabled, "chameleonButton3");
    Follow(window.txtLocal, "txtLocal: ");
    Follow(window.txtRemote, "txtRemote: ");
    Follow(window.Text20, "Text20: ");
    Follow(window.Text21, "Text21: ");
  }
  void Follow(XP_ProgressBar& bar, const std::string& name) {
    bar.Value.Changed().Listen(
        [this, &bar, name] { actions.push_back(name + std::to_string(bar.Value.Get())); });
  }
  void Follow(Property<bool>& flag, const std::string& name) {
    flag.Changed.Listen([this, &flag, name] { actions.push_back(name + (flag ? " on" : " off")); });
  }
  void Follow(TextBox& box, const std::string& name) {
    box.Text.Changed().Listen([this, &box, name] { actions.push_back(name + box.Text.Get()); });
  }

  static Actions BarsAt(int value) {
    const std::string number = std::to_string(value);
    return {"bar 1: " + number, "bar 2: " + number, "bar 3: " + number};
  }
  /// What opens every session.
  const Actions configuration{"SetProtocol 2", "SetRemoteHost ftp.home", "SetUserName ann",
                              "Cancel",        "SetPassword s3cret",     "SetRequestTimeout 40"};
  /// The first tick of the animation, over buttons that are enabled.
  const Actions first_tick{"status: File Transferring...", "bar 1: 2",      "bar 2: 10", "bar 3: 7",
                           "chameleonButton1 off",         "cmdBrowse off", "Timer2 off"};

  FakeMachine machine;
  FakeFtpTransport& ftp = machine.ftp;
  BackupSettings settings;
  int saves = 0;
  int save_failure = 0;
  Actions saved;  ///< server, name and password at the last save
  Main window{machine.Interfaces(), settings};
  Actions actions;
};

}  // namespace tarnvale::testing
