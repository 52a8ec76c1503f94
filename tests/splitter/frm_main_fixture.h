// The splitter's window on the test machine.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "splitter/frm_main.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

using Dialog = FakeDialogs::Kind;

/// A filter with "|" for each of its NULs.
inline std::string WithBars(std::string filter) {
  std::replace(filter.begin(), filter.end(), '\0', '|');
  return filter;
}

class FrmMainTest : public ::testing::Test {
 protected:
  FrmMainTest() {
    machine.files.MakeFolder("C:\\out");
    machine.files.MakeFolder("C:\\in");
  }

  /// As the host does it: an error ends the handler.
  void Click(chameleonButton& button) {
    machine.loop.Deliver([&] { button.Click.Emit(); });
  }
  void Tick() { machine.Advance(200ms); }

  /// The texts of all boxes so far.
  std::vector<std::string> BoxTexts() const {
    std::vector<std::string> texts;
    for (const BoxRequest& box : machine.boxes.Shown()) texts.push_back(box.text);
    return texts;
  }
  void ExpectSuccess(const std::string& text) {
    machine.boxes.Expect(text, BoxIcon::kInformation, BoxAnswer::kOk);
  }
  void ExpectError(const std::string& text) {
    machine.boxes.Expect(text, BoxIcon::kExclamation, BoxAnswer::kOk);
  }

  const std::string split_error =
      "An Error Has Occured!\nTry Using A New Segment Value Or Check That File Name Exists.";
  const std::string join_error =
      "An Error Has Occured!\nCheck That All Fragments Are In The Same Directory.\nOr Make Sure "
      "That The Unsplit Original File Is Not In The Same Directory";
  const std::string part_of_one = "The Splitting Was Completed. The File Was Split Into 1 Parts.";

  FakeMachine machine;
  frmMain form{machine.Interfaces()};
};

}  // namespace tarnvale::testing
