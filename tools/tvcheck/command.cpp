#include "tvcheck/command.h"

#include <optional>

#include "base/text.h"
#include "core/backup_run.h"
#include "native/command_failure.h"
#include "native/console.h"
#include "settings/settings_store.h"
#include "tvcheck/check.h"
#include "tvcheck/report.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

/// The settings file under any name; nothing is written.
class NamedProfile final : public ProfileFiles {
 public:
  NamedProfile(ProfileFiles& profiles, Path named)
      : profiles_(profiles), named_(std::move(named)) {}

  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override {
    return profiles_.Read(section, key, fallback, buffer_size, named_.empty() ? file : named_);
  }
  bool Write(const std::string&, const std::string&, const std::string&, const Path&) override {
    return false;
  }
  bool Flush(const Path&) override { return false; }

 private:
  ProfileFiles& profiles_;
  Path named_;
};

/// The program's machine with nobody in front of it, which changes nothing.
class QuietMachine {
 public:
  QuietMachine(NativeHost& host, FileSystem& files, Path settings)
      : profiles_(host.profiles, std::move(settings)),
        parts_{{files, host.open_files, profiles_, host.processes, host.clock, host.random,
                host.formats, host.registry, host.applications},
               {loop_, desktop_, desktop_.Surroundings(), desktop_, desktop_, desktop_, desktop_,
                ftp_}} {}

  Machine& Parts() { return parts_; }

 private:
  NamedProfile profiles_;
  IdleLoop loop_;
  NoDesktop desktop_;
  NoFtpTransport ftp_;
  Machine parts_;
};

const char* NameOf(const BackupSettings& settings) {
  if (settings.BackupMode.Sync) return "Tolvern Mode";
  return settings.BackupMode.Incremental ? "Fennick Mode" : "Brenlow Mode";
}

void Choose(BackupSettings& settings, const std::optional<Mode>& mode) {
  if (mode == Mode::kBrenlow) settings.ChooseMode(settings.BackupMode.Complete);
  if (mode == Mode::kFennick) settings.ChooseMode(settings.BackupMode.Incremental);
  if (mode != Mode::kTolvern) return;
  if (settings.Entries.Count() != 1) {
    throw UsageError("Tolvern Mode takes a list of one item, and this one has " +
                     std::to_string(settings.Entries.Count()));
  }
  settings.ChooseMode(settings.BackupMode.Sync);
}

/// What is to be checked, as the settings file says.
class Checking {
 public:
  explicit Checking(const Request& request)
      : request_(request),
        settings_file_(request.settings.empty() ? Path() : PathOfNative(host_, request.settings)) {
    Load();
    state_.RunDestination = WithBackslash(settings_.DestinationDir.Get());
    state_.EngineFree = "1";
    subject_.mode = NameOf(settings_);
    subject_.copies = NativePathOf(host_, state_.RunDestination);
    if (!request.archive) return;
    const std::string location = subject_.copies;
    subject_.copies = request.archive_file;
    if (subject_.copies.empty()) {
      subject_.copies = NativePathOf(host_, settings_.CompressDir.Get() + "\\Auto Compressed.tvz");
    }
    packed_.emplace(subject_.copies, state_.RunDestination, location);
  }

  bool Run() {
    CheckProgress progress;
    Check check(host_,
                {.location = state_.RunDestination,
                 .contents = request_.contents,
                 .incremental = settings_.IncrementalFlag,
                 .archive = packed_ ? &*packed_ : nullptr},
                progress);
    check.Follow(state_, settings_.Entries.Count());
    RunOn(check);
    Findings findings = check.Finish();
    if (packed_) {
      Contents contents([&](std::int64_t bytes) { progress.AddBytes(bytes); });
      packed_->Compare(host_, contents, findings, progress);
    }
    progress.line.Clear();
    Print(request_.json ? JsonReport(subject_, findings) : TextReport(subject_, findings));
    return findings.AllGood();
  }

 private:
  void Load() {
    QuietMachine machine(host_, host_.files, settings_file_);
    Machine& parts = machine.Parts();
    SettingsStore store(parts, parts.loop, parts.desktop, settings_);
    store.LoadSettings();
    if (settings_file_.empty()) {
      if (settings_.DataFolder.Get().empty()) {
        throw CommandFailure(NativePathOf(host_, host_.files.ProgramFolder() + "\\Data.txt"),
                             "names no folder with settings; give them with --settings");
      }
      settings_file_ = settings_.SettingsFile();
    }
    subject_.settings = NativePathOf(host_, settings_file_);
    if (!host_.files.FileExists(settings_file_)) {
      throw CommandFailure(subject_.settings, DescriptionOf(kFileNotFound));
    }
    if (settings_.Entries.Count() == 0) throw CommandFailure(subject_.settings, "lists nothing");
    Choose(settings_, request_.mode);
  }

  // The program's own run, up to the stages.
  void RunOn(Check& check) {
    settings_.SaveLog = false;
    settings_.AutoCompress = false;
    settings_.AutoUpload = false;
    settings_.AutoReport = false;
    PlannedFiles files(host_, check);
    QuietMachine machine(host_, files, settings_file_);
    ScreenHooks screens;
    StageHooks stages;
    Machine& parts = machine.Parts();
    BackupRun run(parts, parts.loop, parts.boxes, parts.desktop, settings_, state_, screens,
                  stages);
    run.Sync().OnCompared = [&](const ComparedFile& file) { check.OnCompared(file); };
    run.RunBackup();
  }

  const Request& request_;
  NativeHost host_{SurroundingsThatKeepLeftovers()};
  Path settings_file_;
  BackupSettings settings_;
  RunState state_;
  Subject subject_;
  std::optional<PackedCopies> packed_;
};

}  // namespace

bool RunCheck(const Request& request) {
  return Checking(request).Run();
}

}  // namespace tarnvale
