// The compressor on the test machine, with something to pack.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "compressor/compressor_window.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

inline constexpr const char* kArchive = "C:\\Store\\a.tvz";
// Description and pattern, each ended by a NUL, and one more.
inline const std::string kFilter =
    std::string("Tarnvale Compressed File (*.tvz)") + '\0' + "*.tvz" + std::string(2, '\0');

class CompressorWindowTest : public ::testing::Test {
 protected:
  CompressorWindowTest() {
    files.Write("C:\\Data\\a.txt", "hi");
    files.Write("C:\\Data\\sub\\b.txt", "hello");
    files.MakeFolder("C:\\Store");
    settings.DestinationDir = "C:\\Data";
    settings.CompressDir = "C:\\Store";
  }

  /// A click, as the host reports it.
  void Click(chameleonButton& button) {
    machine.loop.Deliver([&] { button.Click.Emit(); });
  }
  void Click(Label& link) {
    machine.loop.Deliver([&] { link.Clicked.Emit(); });
  }

  void PackByHand(const Path& folder, const Path& archive) {
    machine.dialogs.Choose(FakeDialogs::Kind::kFolder, folder);
    machine.dialogs.Choose(FakeDialogs::Kind::kSave, archive);
    Click(window.Command1);
  }
  void Unpack(const Path& archive, const Path& folder) {
    machine.dialogs.Choose(FakeDialogs::Kind::kOpen, archive);
    machine.dialogs.Choose(FakeDialogs::Kind::kFolder, folder);
    Click(window.Command2);
  }
  void List(const Path& archive) {
    machine.dialogs.Choose(FakeDialogs::Kind::kOpen, archive);
    Click(window.Command3);
  }
  void ExtractEntry(const Path& archive, const Path& folder) {
    machine.dialogs.Choose(FakeDialogs::Kind::kOpen, archive);
    machine.dialogs.Choose(FakeDialogs::Kind::kFolder, folder);
    Click(window.Command4);
  }

  /// Writes down every change of the steps, messages and bars in `shown`.
  void FollowAll() {
    for (std::size_t i = 0; i < steps.size(); ++i) Follow(*steps[i], std::to_string(i + 1));
    Follow(window.Text4, "Text4: ");
    Follow(window.Text6, "Text6: ");
    Follow(window.Text2, "Text2: ");
    Follow(window.Text3, "Text3: ");
    Follow(window.XP_ProgressBar1, "bar 1: ");
    Follow(window.XP_ProgressBar2, "bar 2: ");
  }

  void Follow(CheckBox& row, const std::string& number) {
    row.Caption.Changed.Listen(
        [this, &row, number] { shown.push_back(number + ": " + row.Caption.Get()); });
    row.Checked.Changed().Listen(
        [this, &row, number] { shown.push_back(number + (row.Checked ? " ticked" : " cleared")); });
  }
  void Follow(TextBox& box, const std::string& name) {
    box.Text.Changed().Listen([this, &box, name] { shown.push_back(name + box.Text.Get()); });
  }
  void Follow(XP_ProgressBar& bar, const std::string& name) {
    bar.Value.Changed().Listen(
        [this, &bar, name] { shown.push_back(name + std::to_string(bar.Value.Get())); });
  }

  std::vector<bool> VisibleSteps() const {
    std::vector<bool> visible;
    for (const CheckBox* step : steps) visible.push_back(step->Visible);
    return visible;
  }

  std::vector<FakeDialogs::Kind> DialogsSeen() const {
    std::vector<FakeDialogs::Kind> kinds;
    for (const auto& dialog : machine.dialogs.Seen()) kinds.push_back(dialog.kind);
    return kinds;
  }

  FakeMachine machine;
  FakeFiles& files = machine.files;
  BackupSettings settings;
  compression window{machine.Interfaces(), settings};
  /// CheckBox1 to CheckBox10.
  std::array<CheckBox*, 10> steps{&window.CheckBox1, &window.CheckBox2, &window.CheckBox3,
                                  &window.CheckBox4, &window.CheckBox5, &window.CheckBox6,
                                  &window.CheckBox7, &window.CheckBox8, &window.CheckBox9,
                                  &window.CheckBox10};
  std::vector<std::string> shown;
  const std::vector<bool> packing_steps{true,  true,  true,  true,  true,
                                        false, false, false, false, false};
  const std::vector<bool> unpacking_steps{false, false, false, false, false,
                                          true,  true,  true,  true,  true};
};

}  // namespace tarnvale::testing
