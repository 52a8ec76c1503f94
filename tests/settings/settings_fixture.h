// What the tests of the settings file share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/settings_store.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

/// Passes everything on, and keeps what was read, "When/Days" and
/// "When/Days=3", in order.
class RecordingProfiles : public ProfileFiles {
 public:
  explicit RecordingProfiles(ProfileFiles& inner) : inner_(inner) {}

  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override {
    reads.push_back(section + "/" + key);
    return inner_.Read(section, key, fallback, buffer_size, file);
  }
  bool Write(const std::string& section, const std::string& key, const std::string& value,
             const Path& file) override {
    writes.push_back(section + "/" + key + "=" + value);
    return inner_.Write(section, key, value, file);
  }
  bool Flush(const Path& file) override { return inner_.Flush(file); }

  std::vector<std::string> reads;
  std::vector<std::string> writes;

 private:
  ProfileFiles& inner_;
};

/// A program whose settings lie in C:\Data.
class SettingsFixture : public ::testing::Test {
 protected:
  SettingsFixture() {
    machine.files.Write("C:\\Program\\Data.txt", "C:\\Data\r\n");
    machine.files.MakeFolder("C:\\Data");
  }

  void WriteFile(const std::string& text) { machine.files.Write("C:\\Data\\Tarnvale.ini", text); }
  std::string File() const { return machine.files.Content("C:\\Data\\Tarnvale.ini"); }
  void Load(const std::string& text) {
    WriteFile(text);
    store.LoadSettings();
  }

  /// "1.3...." for Sunday and Tuesday.
  std::string TickedDays() const {
    std::string days;
    for (std::size_t day = 0; day < 7; ++day) {
      days += settings.WeekDays[day] ? static_cast<char>('1' + day) : '.';
    }
    return days;
  }

  FakeMachine machine;
  RecordingProfiles profiles{machine.profiles};
  Machine interfaces{{machine.files, machine.open_files, profiles, machine.processes, machine.clock,
                      machine.random, machine.formats, machine.registry, machine.applications},
                     machine.Interfaces()};
  BackupSettings settings;
  SettingsStore store{interfaces, interfaces.loop, interfaces.desktop, settings};
};

}  // namespace tarnvale::testing
