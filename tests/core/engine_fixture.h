// What the tests of the engine share: a whole engine on the test machine, set
// up in code, with nothing loaded.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/engine.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

inline const char* NameOf(Screen screen) {
  switch (screen) {
    case Screen::kList:
      return "list";
    case Screen::kStorage:
      return "storage";
    case Screen::kProgress:
      return "progress";
    case Screen::kSchedule:
      return "schedule";
    case Screen::kGeneral:
      return "general";
    case Screen::kAdvanced:
      return "advanced";
    case Screen::kRestore:
      return "restore";
  }
  return "?";
}

class EngineFixture : public ::testing::Test {
 protected:
  EngineFixture() {
    machine.files.MakeFolder("C:\\Data");
    machine.files.MakeFolder("C:\\Backup");
    engine.settings.DataFolder = "C:\\Data";
    engine.run.RunDestination = "C:\\Backup";
  }

  /// Keeps what happens to the screens in `actions`: "show list", "hide storage".
  void WatchScreens() {
    engine.screens.Show = [this](Screen s) { actions.push_back(std::string("show ") + NameOf(s)); };
    engine.screens.Hide = [this](Screen s) { actions.push_back(std::string("hide ") + NameOf(s)); };
    engine.screens.FocusStorageField = [this] { actions.push_back("focus storage"); };
    engine.screens.FocusIntervalField = [this] { actions.push_back("focus interval"); };
  }

  void Add(const std::string& item) { engine.settings.Entries.Append(item); }

  FakeMachine machine;
  Engine engine{machine.Interfaces()};
  std::vector<std::string> actions;
};

/// An engine whose run may start, with the log off.
class RunFixture : public EngineFixture {
 protected:
  RunFixture() {
    engine.run.EngineFree = "1";
    engine.settings.SaveLog = false;
  }

  /// A file to back up, as an item of the list.
  void AddFile(const Path& file, const std::string& content) {
    machine.files.Write(file, content);
    Add(file);
  }

  void Run() { engine.backup.RunBackup(); }

  std::string Log() const { return machine.files.Content("C:\\Data\\Backup Log.txt"); }
  std::string Status() const { return engine.run.StatusCaption; }
};

}  // namespace tarnvale::testing
