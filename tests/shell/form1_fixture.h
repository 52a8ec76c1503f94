// The main window on the test machine.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/engine.h"
#include "shell/form1.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

class Form1Test : public ::testing::Test {
 protected:
  Form1Test() {
    machine.files.Write("C:\\Program\\Data.txt", "C:\\Data\r\n");
    machine.files.Write("C:\\Data\\Tarnvale.ini", "[Setup]\r\nWizard=1\r\n");
  }

  /// The settings file that the next Load reads.
  void GivenSettings(const std::string& text) {
    machine.files.Write("C:\\Data\\Tarnvale.ini", text);
  }

  struct ScreenFrame {
    Screen screen;
    int number;
    GroupBox& box;
  };
  std::vector<ScreenFrame> Frames() {
    return {{Screen::kList, 1, form.List.GroupBox1},
            {Screen::kStorage, 2, form.Storage.GroupBox2},
            {Screen::kProgress, 3, form.Progress.GroupBox3},
            {Screen::kSchedule, 4, form.Schedule.GroupBox4},
            {Screen::kGeneral, 5, form.General.GroupBox5},
            {Screen::kAdvanced, 6, form.Advanced.GroupBox6},
            {Screen::kRestore, 15, form.Restore.GroupBox15}};
  }

  /// The screens that are visible, by the number of their frame.
  std::vector<int> VisibleFrames() {
    std::vector<int> visible;
    for (const ScreenFrame& frame : Frames()) {
      if (frame.box.Visible) visible.push_back(frame.number);
    }
    return visible;
  }

  int FrameNumber(Screen screen) {
    for (const ScreenFrame& frame : Frames()) {
      if (frame.screen == screen) return frame.number;
    }
    ADD_FAILURE() << "Frames() lacks a screen";
    return 0;
  }

  void Press(Key key) {
    KeyEvent event{.press = {.key = key}};
    form.KeyDown.Emit(event);
    key_was_used = event.handled;
  }

  FakeMachine machine;
  Engine engine{machine.Interfaces()};
  Form1 form{engine};
  bool key_was_used = false;
};

}  // namespace tarnvale::testing
