#include "core/backup_run.h"

#include "base/numbers.h"
#include "base/text.h"
#include "core/text_procedures.h"
#include "ui/flush_medium.h"

namespace tarnvale {
namespace {

// As many MarkerChar signs make an item a whole-folder item.
constexpr int kMarkersOfFolder = 5;

// The file loop goes on for two rounds past the list, which take up the offset
// of the table's rows.
constexpr int kExtraRounds = 2;

// The show of the second bar: anything from 8 to 200.
constexpr double kShowRange = 193;
constexpr double kShowFloor = 8;

constexpr double kBytesPerKiB = 1024;

}  // namespace

BackupRun::BackupRun(SystemParts& system, EventLoop& loop, MessageBoxes& boxes, Desktop& desktop,
                     BackupSettings& settings, RunState& state, ScreenHooks& screens,
                     StageHooks& stages)
    : system_(system),
      loop_(loop),
      boxes_(boxes),
      desktop_(desktop),
      settings_(settings),
      state_(state),
      screens_(screens),
      stages_(stages),
      log_(system.open_files),
      failures_(system.files, boxes),
      sync_(system.files, loop),
      sources_(system.files),
      targets_(system.files) {}

// The handler's only reachable answer is to go on with the next statement.
template <class Statement>
void BackupRun::Step(Statement&& statement) {
  try {
    statement();
  } catch (const ProgramError& error) {
    failures_.OnFailure(error, present_target_, settings_.SaveLog);
  }
}

template <class Condition>
bool BackupRun::Test(Condition&& condition) {
  bool result = true;
  Step([&] { result = condition(); });
  return result;
}

void BackupRun::RunBackup() {
  run_ = {};
  present_target_.clear();
  if (Test([&] { return ToNumber(state_.EngineFree.Get()) == 1; })) {
    Prepare();
    BuildRunFiles();
    OpenLog();
    state_.CopyBar = 0;
    run_.count = static_cast<std::int64_t>(settings_.Entries.Count());
    ChooseTargets();
    CopySingleFiles();
    CopyWholeFolders();
    CloseLog();
    targets_.End();
    sources_.End();
  }
  ShowEnd();
  RunStages();
}

void BackupRun::Prepare() {
  Step([&] { CallHook(stages_.ResetProgressWindow); });
  desktop_.Pointer = PointerShape::kHourglass;
  Step([&] { CallHook(screens_.Show, Screen::kProgress); });
  for (const Screen other :
       {Screen::kStorage, Screen::kList, Screen::kSchedule, Screen::kGeneral, Screen::kAdvanced}) {
    Step([&] { CallHook(screens_.Hide, other); });
  }
  Step([&] { CallHook(stages_.FollowCopy); });
  run_.start = system_.clock.Now();
  run_.date = DatePart(run_.start);
  state_.RunDestination = WithBackslash(state_.RunDestination.Get());
  run_.unflushed_since_s = system_.files.BeginCopies(state_.RunDestination);
  sync_.Suspect(run_.unflushed_since_s);
}

void BackupRun::BuildRunFiles() {
  const auto count = static_cast<std::int64_t>(settings_.Entries.Count());
  for (state_.RunIndex = 0; state_.RunIndex < count;) {
    Step([&] {
      state_.Files.AddItem(system_.files, boxes_,
                           settings_.Entries.At(static_cast<std::size_t>(state_.RunIndex)));
    });
    if (!NextIndex()) break;
  }
}

void BackupRun::OpenLog() {
  if (settings_.SaveLog) {
    Step([&] { log_.Open(settings_.DataFolder); });
    Step([&] {
      log_.PrintLine("Tarnvale Started Backup At " +
                     system_.formats.GeneralDate(system_.clock.Now()));
    });
    Step([&] { log_.PrintLine(""); });
  }
}

void BackupRun::ChooseTargets() {
  std::vector<RunFolder> folders = FolderItems();
  std::vector<Path> sources;
  for (const RunFile& row : state_.Files.Rows()) sources.push_back(row.Path);
  for (const RunFolder& folder : folders) sources.push_back(folder.source);
  sources_.Begin(sources);
  for (RunFolder& folder : folders) folder.name = NameInStorage(folder.source, folder.name);
  std::vector<std::string> files;
  for (const RunFile& row : state_.Files.Rows()) {
    const std::string name = FileNameOf(row.Path);
    if (name.empty()) continue;
    // Both are taken: the copy of one that has gone stays, should another one be there.
    files.push_back(sources_.NameOf(row.Path));
    files.push_back(name);
  }
  targets_.Begin(std::move(files), std::move(folders), settings_.BackupMode.Sync);
}

// The whole folders of the list, with the names that their copies have as they are written.
std::vector<RunFolder> BackupRun::FolderItems() const {
  std::vector<RunFolder> folders;
  std::string name;
  PassedOver pass;
  for (std::string item : settings_.Entries.Rows()) {
    if (CountChar(item, state_.MarkerChar.Get()) != kMarkersOfFolder) continue;
    pReplace(item, "\\" + std::string(kFolderMarker), "");
    const auto separators = CountChar(item, state_.PathSepChar.Get());
    // As for the copy: with a single separator the name stays that of the folder before.
    if (separators != 1) pass.Step([&] { name = GetFolder(item, ToInt16(separators)); });
    folders.push_back({item, name, name});
  }
  return folders;
}

// A folder's copy has the name that it has itself, in whatever case its item is written.
std::string BackupRun::NameInStorage(const Path& source, const std::string& name) {
  return FileNameOf(source) == name ? sources_.NameOf(source) : name;
}

void BackupRun::CopySingleFiles() {
  for (state_.RunIndex = 0; state_.RunIndex <= run_.count + kExtraRounds;) {
    TakeItem();
    state_.FileBar = static_cast<int>(kShowRange * system_.random.Next() + kShowFloor);
    loop_.Yield();
    FileRound();
    if (!NextIndex()) break;
  }
}

void BackupRun::FileRound() {
  const RunFile* row = nullptr;
  Step([&] { row = &state_.Files.Row(state_.RunIndex); });
  if (row == nullptr) {
    RoundBeyondTable();
  } else {
    if (row->Path.empty()) return;
    CopyRow(*row);
  }
  loop_.Yield();
  state_.FileBar = 100;
  state_.CopyBar = 50;
}

// A row that the table doesn't have copies nothing and logs nothing, and shows
// only what doesn't read it.
void BackupRun::RoundBeyondTable() {
  state_.StatusCaption = "File: " + ToText(state_.RunIndex) + " Out Of: " + ListCount();
  state_.CopyBar = 5;
  if (IsFolderItem()) return;
  if (!settings_.IncrementalFlag) state_.CopyBar = 25;
  ShowTotal();
}

void BackupRun::CopyRow(const RunFile& row) {
  present_target_ = TargetOf(row);
  // A value above 255 keeps that of the row before.
  Step([&] { run_.attributes = ToByte(system_.files.Attributes(sources_.At(row.Path))); });
  state_.SourceCaption = row.Path;
  state_.TargetCaption = TargetOf(row);
  state_.StatusCaption = "File: " + ToText(state_.RunIndex) + " Out Of: " + ListCount();
  state_.CopyBar = 5;
  if (IsFolderItem()) return;
  if (!settings_.IncrementalFlag) {
    CopyAlways(row);
  } else if (run_.attributes != 0) {
    CopyChanged(row);
  } else if (IsLost(row)) {
    Step([&] { CopyToStorage(row); });
  }
  ShowTotal();
}

// Chosen: what looks like its file and isn't, as its medium went away, is no copy.
bool BackupRun::IsLost(const RunFile& row) {
  if (!run_.unflushed_since_s) return false;
  bool is_lost = false;
  PassedOver pass;
  pass.Step([&] {
    const Path& source = sources_.At(row.Path);
    const auto target = targets_.FileIn(state_.RunDestination, sources_.NameOf(row.Path));
    const auto folder = system_.files.OpenFolder(FolderOf(source));
    is_lost = target && system_.files.Mistrust({*folder, FileNameOf(source)}, *target,
                                               *run_.unflushed_since_s);
  });
  return is_lost;
}

void BackupRun::CopyToStorage(const RunFile& row) {
  IsLost(row);  // or a read-only copy would stay
  const Path& source = sources_.At(row.Path);
  const auto target = targets_.FileIn(state_.RunDestination.Get(), sources_.NameOf(row.Path));
  if (target) {
    system_.files.CopyWhole(source, *target, Rights::kSource);
  } else {
    system_.files.CopyWhole(source, TargetOf(row), Rights::kSource);
  }
}

void BackupRun::CopyAlways(const RunFile& row) {
  state_.CopyBar = 25;
  Step([&] { CopyToStorage(row); });
  if (settings_.SaveLog) {
    // Required: "OK!" is logged after a failed copy too.
    Step([&] { log_.Print(row.Path + " -> " + TargetOf(row) + ", Backup Status: OK!"); });
  }
  CountFile(row);
}

void BackupRun::CopyChanged(const RunFile& row) {
  if (settings_.SaveLog) {
    Step([&] { log_.Print(row.Path + " -> " + TargetOf(row) + ", Backup Status: "); });
  }
  bool has_room = true;
  Step([&] {
    try {
      CopyToStorage(row);
    } catch (const ProgramError& error) {
      has_room = error.Number() != kFileAlreadyExists;
      throw;
    }
  });
  // Required: any attribute counts as changed, and 32 is taken away whether or
  // not the archive bit is in it, after a failed copy too. An impossible value fails
  // and passes.
  // Chosen: not from a file that the medium doesn't distinguish from another one.
  if (has_room) {
    Step([&] {
      system_.files.SetAttributes(sources_.At(row.Path), run_.attributes - attribute::kArchive);
    });
  }
  if (settings_.SaveLog) Step([&] { log_.PrintLine(">> Ok"); });
  CountFile(row);
}

void BackupRun::CountFile(const RunFile& row) {
  // A sum beyond 32 bits fails, and the total stays.
  Step([&] {
    run_.total_bytes = Add32(run_.total_bytes, system_.files.Length(sources_.At(row.Path)));
  });
  Step([&] { run_.files_counted = Add32(run_.files_counted, 1); });
}

void BackupRun::ShowTotal() {
  state_.StatusCaption =
      "File " + ToText(state_.RunIndex) + " Of " + ListCount() +
      ", Total: " + system_.formats.StandardNumber(run_.total_bytes / kBytesPerKiB / kBytesPerKiB) +
      " MB";
}

void BackupRun::CopyWholeFolders() {
  for (state_.RunIndex = 0; state_.RunIndex <= run_.count;) {
    TakeItem();
    if (IsFolderItem()) FolderRound();
    if (!NextIndex()) break;
  }
}

void BackupRun::FolderRound() {
  std::string item = state_.ItemText;
  pReplace(item, "\\" + std::string(kFolderMarker), "");
  state_.CopyBar = 60;
  if (!item.empty() && item.back() == ':') item += '\\';
  state_.ItemText = item;
  if (!settings_.BackupMode.Sync) ChooseFolderDestination();
  // The choice of a mode may change while a sync yields: each is read anew.
  const std::string destination = state_.RunDestination;
  if (settings_.BackupMode.Sync) SyncItem(item, {destination, {}, {}}, true);
  const auto folder = run_.folder;
  if (settings_.BackupMode.Incremental && folder) SyncItem(item, *folder, false);
  if (settings_.BackupMode.Complete && folder) SyncItem(item, *folder, false);
  if (settings_.SaveLog) {
    Step([&] {
      log_.Print(state_.ItemText.Get() + " -> " + state_.RunDestination.Get() + run_.folder_name +
                 ", Backup Status: OK!");
    });
  }
}

void BackupRun::ChooseFolderDestination() {
  const std::string item = state_.ItemText;
  state_.PathSepCount = ToText(CountChar(item, state_.PathSepChar.Get()));
  // Required: the test reads the separator, not the count. The separator is no
  // number, so a drive's root gets no folder of its own.
  if (LeadingNumber(state_.PathSepChar.Get()) == 1) {
    std::string drive = item;
    state_.DriveText = pReplace(drive, ":\\", "");
    run_.folder_name = "Drive " + state_.DriveText.Get();
  }
  // Required: with a single separator the name stays that of the folder before.
  if (LeadingNumber(state_.PathSepCount.Get()) != 1) {
    Step([&] {
      run_.folder_name =
          GetFolder(item, ToInt16(RoundHalfEven(ToNumber(state_.PathSepCount.Get()))));
    });
  }
  MakeFolderInStorage();
  state_.SourceCaption = item;
  state_.TargetCaption = state_.RunDestination.Get() + run_.folder_name;
  state_.StatusCaption = "File: " + ToText(state_.RunIndex) + " Out Of: " + ListCount();
  state_.CopyBar = 75;
}

// An existing folder makes this fail, and the run passes on.
void BackupRun::MakeFolderInStorage() {
  const std::string location = state_.RunDestination;
  const std::string wanted = NameInStorage(state_.ItemText, run_.folder_name);
  run_.folder = FolderInStorage{location, run_.folder_name, wanted};
  const auto target = targets_.FolderIn(location, wanted);
  if (!target) {
    Step([&] { system_.files.CreateFolder(location + run_.folder_name); });
    return;
  }
  if (target->name.empty()) return;
  run_.folder->name = target->name;
  Step([&] {
    try {
      target->folder.MakeFolder(target->name);
    } catch (const ProgramError& error) {
      // By its path another one would be found, of another case.
      if (error.Number() != kPathFileAccess) run_.folder.reset();
      throw;
    }
  });
}

// The storage location stays the folder that the run began with.
void BackupRun::SyncItem(const Path& item, const FolderInStorage& folder, bool two_way) {
  const auto held = targets_.FolderIn(folder.location, {});
  Step([&] {
    const Path& source = sources_.At(item);
    if (held) {
      sync_.SyncFolders(source, HeldEntry{held->folder, folder.name}, two_way,
                        targets_.CompanionsOf(item, folder.wanted));
    } else {
      sync_.SyncFolders(source, folder.location + folder.name, two_way);
    }
  });
}

void BackupRun::CloseLog() {
  if (settings_.SaveLog) {
    Step([&] { log_.PrintLine(""); });
    Step([&] { log_.PrintLine("Success >> Copied " + ListCount() + " Files, " + FromToOn()); });
    Step([&] { log_.Close(); });
  }
  // What is announced next has reached the medium.
  Step([&] {
    if (FlushMedium(system_.files, loop_, state_.RunDestination)) {
      system_.files.EndCopies(state_.RunDestination);
    }
  });
}

void BackupRun::ShowEnd() {
  state_.CopyBar = 100;
  state_.FileBar = 100;
  if (settings_.BackupMode.Sync) {
    state_.SourceCaption = "Folder Has Been Fully Synchronized >> Finished ";
    state_.TargetCaption = "Folder Has Been Fully Synchronized >> Finished ";
    state_.StatusCaption = "Success >> Synchronized 2 Folders, " + FromToOn();
    return;
  }
  state_.SourceCaption = "Copying To Backup Location Has Been Done >> Finished";
  state_.TargetCaption = "Transfering Of Files To Backup Location Has Been Done >> Finished";
  state_.StatusCaption = "Success >> Copied " + ListCount() + " Items, " + FromToOn();
}

void BackupRun::RunStages() {
  state_.Files.Reset();
  desktop_.Pointer = PointerShape::kDefault;
  if (settings_.AutoCompress) Step([&] { CallHook(stages_.Compress); });
  if (settings_.AutoUpload) {
    Step([&] { CallHook(stages_.ShowTransferWindow); });
    Step([&] { CallHook(stages_.Upload); });
  }
  if (settings_.AutoReport) {
    Step([&] { CallHook(stages_.SendReport, RunFacts{run_.start, run_.date, run_.total_bytes}); });
  }
}

// Chosen: at the end of the counter's range the loop ends.
bool BackupRun::NextIndex() {
  bool moved = false;
  Step([&] {
    state_.RunIndex = Add16(state_.RunIndex, 1);
    moved = true;
  });
  return moved;
}

void BackupRun::TakeItem() {
  state_.ItemText = settings_.Entries.At(static_cast<std::size_t>(state_.RunIndex));
  state_.MarkerCount = ToText(CountChar(state_.ItemText.Get(), state_.MarkerChar.Get()));
}

bool BackupRun::IsFolderItem() {
  return Test([&] { return ToNumber(state_.MarkerCount.Get()) == kMarkersOfFolder; });
}

std::string BackupRun::TargetOf(const RunFile& row) const {
  return state_.RunDestination.Get() + FileNameOf(row.Path);
}

std::string BackupRun::ListCount() const {
  return ToText(static_cast<std::int64_t>(settings_.Entries.Count()));
}

// "11:59 To 12:00 On 3/14/2008."
std::string BackupRun::FromToOn() const {
  return system_.formats.ShortTime(run_.start) + " To " +
         system_.formats.ShortTime(system_.clock.Now()) + " On " +
         system_.formats.ShortDate(run_.date) + ".";
}

}  // namespace tarnvale
