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

  std::vector<GroupBox*> Frames() {
    return {&form.List.GroupBox1,     &form.Storage.GroupBox2, &form.Progress.GroupBox3,
            &form.Schedule.GroupBox4, &form.General.GroupBox5, &form.Advanced.GroupBox6,
            &form.Restore.GroupBox15};
  }

  /// The screens that are visible, by the number of their frame.
  std::vector<int> VisibleFrames() {
    std::vector<int> frames;
    if (form.List.GroupBox1.Visible) frames.push_back(1);
    if (form.Storage.GroupBox2.Visible) frames.push_back(2);
    if (form.Progress.GroupBox3.Visible) frames.push_back(3);
    if (form.Schedule.GroupBox4.Visible) frames.push_back(4);
    if (form.General.GroupBox5.Visible) frames.push_back(5);
    if (form.Advanced.GroupBox6.Visible) frames.push_back(6);
    if (form.Restore.GroupBox15.Visible) frames.push_back(15);
    return frames;
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
