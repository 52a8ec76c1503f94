#include "settings/settings_store.h"

#include "base/failure.h"
#include "base/numbers.h"

namespace tarnvale {
namespace {

// The size of the buffer that every value is read into, its closing zero
// included: 254 characters of a value survive a load.
constexpr std::size_t kValueBuffer = 255;

constexpr const char* kPointerFile = "\\Data.txt";
constexpr const char* kTimeNotSet = "???";
constexpr const char* kTrue = "True";
constexpr const char* kFalse = "False";

// The pointer file and the log share the table of open files; neither is open
// while the other is in use.
constexpr int kPointerFileNumber = 1;

DateTime MinuteOfText(const std::string& text) {
  return MinutePart(TextToTime(text));
}

}  // namespace

SettingsStore::SettingsStore(SystemParts& system, EventLoop& loop, Desktop& desktop,
                             BackupSettings& settings)
    : system_(system), loop_(loop), desktop_(desktop), settings_(settings) {}

std::optional<std::string> SettingsStore::ReadProfileKey(const std::string& section,
                                                         const std::string& key) {
  PassedOver pass;
  std::string value;
  pass.Step([&] { value = system_.profiles.Read(section, key, "", kValueBuffer, path_); });
  if (value.empty()) return std::nullopt;
  return value;
}

void SettingsStore::LoadSettings() {
  LoadDataFolder();
  path_ = settings_.SettingsFile();
  LoadTime("AlwaysAt", settings_.AlwaysAtText, settings_.AlwaysAtTime);
  LoadTime("Each", settings_.EachText, settings_.EachTime);
  if (const auto value = ReadProfileKey("When", "Default")) settings_.UseEach = *value != kFalse;
  LoadDays();
  LoadSwitches();
  LoadMode();
  LoadTexts();
  LoadEntries();
  settings_.LoadMinute = MinutePart(system_.clock.Now());
}

void SettingsStore::LoadDataFolder() {
  PassedOver pass;
  std::string folder;
  pass.Step([&] {
    system_.open_files.OpenInput(kPointerFileNumber, system_.files.ProgramFolder() + kPointerFile);
  });
  pass.Step([&] { folder = system_.open_files.InputItem(kPointerFileNumber); });
  settings_.DataFolder = folder;
  pass.Step([&] { system_.open_files.Close(kPointerFileNumber); });
}

void SettingsStore::LoadTime(const std::string& key, Property<std::string>& text, DateTime& time) {
  const auto value = ReadProfileKey("When", key);
  if (!value) return;
  if (*value == kTimeNotSet) {
    time = 0;
    return;
  }
  if (FitsTimeMask(*value)) text = *value;
  // Chosen: a text that no time can be made of leaves the time as it was.
  PassedOver pass;
  pass.Step([&] { time = MinuteOfText(*value); });
}

void SettingsStore::LoadDays() {
  const auto value = ReadProfileKey("When", "Days");
  if (!value) return;
  int mask = 0;
  PassedOver pass;
  pass.Step([&] { mask = TextToByte(*value); });
  // Required: each test is for a quotient of exactly 1, so that a mask of 128
  // or more ticks nothing at all.
  for (int day = 6; day >= 0; --day) {
    const int weight = 1 << day;
    if (mask / weight != 1) continue;
    settings_.WeekDays[static_cast<std::size_t>(day)] = true;
    mask -= weight;
  }
}

void SettingsStore::LoadSwitches() {
  const auto clears = [this](const char* section, const char* key, Property<bool>& flag) {
    if (ReadProfileKey(section, key) == kFalse) flag = false;
  };
  const auto sets = [this](const char* section, const char* key, Property<bool>& flag) {
    if (ReadProfileKey(section, key) == kTrue) flag = true;
  };
  clears("Log", "Save", settings_.SaveLog);
  sets("Log", "Save", settings_.SaveLog);
  clears("Alert", "Show", settings_.ShowAlert);
  sets("Alert", "Show", settings_.ShowAlert);
  clears("Compress", "Auto", settings_.AutoCompress);
  sets("FTP", "Auto", settings_.AutoUpload);
  clears("FTP", "Auto", settings_.AutoUpload);
  sets("Reports", "Send", settings_.AutoReport);
  clears("Reports", "Send", settings_.AutoReport);
  sets("Compress", "Auto", settings_.AutoCompress);
  sets("Backup", "Incremental", settings_.IncrementalFlag);
  clears("Backup", "Incremental", settings_.IncrementalFlag);
  // Required: no value sets this flag, so that a saved sync mode is lost.
  clears("Method", "Syncro", settings_.SyncroFlag);
}

void SettingsStore::LoadMode() {
  // Choosing a mode rewrites both flags, so they are read first.
  const bool syncro = settings_.SyncroFlag;
  const bool incremental = settings_.IncrementalFlag;
  if (syncro) settings_.BackupMode.Sync = true;
  if (incremental) settings_.BackupMode.Incremental = true;
}

void SettingsStore::LoadTexts() {
  const auto load = [this](const char* section, const char* key, Property<std::string>& text) {
    text = ReadProfileKey(section, key).value_or("");
  };
  load("Destiny", "Dir", settings_.DestinationDir);
  load("Destiny", "Backup", settings_.CompressDir);
  load("Server", "STMP", settings_.SmtpServer);
  load("Send", "To", settings_.ReportTo);
  load("FTP", "Server", settings_.FtpServer);
  load("FTP", "Username", settings_.FtpUsername);
  load("Setup", "Wizard", settings_.WizardMark);
  load("FTP", "Password", settings_.FtpPassword);
}

void SettingsStore::LoadEntries() {
  PassedOver pass;
  std::int16_t index = 0;
  while (const auto item = ReadProfileKey("Entries", ToText(index))) {
    settings_.Entries.Append(*item);
    // Chosen: at the end of the counter's range the reading ends.
    if (!pass.Step([&] { index = Add16(index, 1); })) return;
  }
}

bool SettingsStore::Write(const std::string& section, const std::string& key,
                          const std::string& value) {
  PassedOver pass;
  bool written = false;
  pass.Step([&] { written = system_.profiles.Write(section, key, value, path_); });
  return written;
}

void SettingsStore::WriteFlag(const std::string& section, const std::string& key, bool value) {
  Write(section, key, value ? kTrue : kFalse);
}

void SettingsStore::SaveChanges() {
  desktop_.Pointer = PointerShape::kHourglass;
  settings_.SaveMark = "1";
  path_ = settings_.SettingsFile();
  SaveSchedule();
  SaveSwitches();
  SaveTexts();
  SaveEntries();
  PassedOver pass;
  pass.Step([&] { system_.profiles.Flush(path_); });
  desktop_.Pointer = PointerShape::kDefault;
}

void SettingsStore::SaveTime(const std::string& key, const std::string& text, DateTime& time) {
  if (text == kNoTimeText) {
    Write("When", key, kTimeNotSet);
    time = 0;
    return;
  }
  Write("When", key, text);
  PassedOver pass;
  pass.Step([&] { time = MinuteOfText(text); });
}

void SettingsStore::SaveSchedule() {
  SaveTime("AlwaysAt", settings_.AlwaysAtText, settings_.AlwaysAtTime);
  SaveTime("Each", settings_.EachText, settings_.EachTime);
  WriteFlag("When", "Default", !settings_.ScheduleAt);
  Write("When", "Days", ToText(settings_.DayMask()));
}

void SettingsStore::SaveSwitches() {
  WriteFlag("Log", "Save", settings_.SaveLog);
  WriteFlag("Alert", "Show", settings_.ShowAlert);
  WriteFlag("Compress", "Auto", settings_.AutoCompress);
  WriteFlag("Reports", "Send", settings_.AutoReport);
  WriteFlag("FTP", "Auto", settings_.AutoUpload);
  WriteFlag("Backup", "Incremental", settings_.IncrementalFlag);
  // Required: the same flag as above, not SyncroFlag.
  WriteFlag("Method", "Syncro", settings_.IncrementalFlag);
}

void SettingsStore::SaveTexts() {
  Write("Destiny", "Dir", settings_.DestinationDir);
  Write("Destiny", "Backup", settings_.CompressDir);
  Write("Server", "STMP", settings_.SmtpServer);
  Write("Send", "To", settings_.ReportTo);
  Write("Setup", "Wizard", "1");
  Write("FTP", "Server", settings_.FtpServer);
  Write("FTP", "Username", settings_.FtpUsername);
  Write("FTP", "Password", settings_.FtpPassword);
}

void SettingsStore::SaveEntries() {
  // The count is read anew each time: a failed write lets events run, and an
  // event may change the list.
  for (std::size_t index = 0; index < settings_.Entries.Count(); ++index) {
    const bool written =
        Write("Entries", ToText(static_cast<std::int64_t>(index)), settings_.Entries.At(index));
    if (!written) loop_.Yield();
  }
}

}  // namespace tarnvale
