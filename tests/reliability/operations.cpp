#include "tests/reliability/operations.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "platform/temporary_name.h"
#include "shell/form1.h"
#include "tests/hosts/ftp/ftp_server.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::int64_t kNoon = 1205496000;
// A transfer takes about as long as the login before it: a tenth of a second.
constexpr std::size_t kTransferred = 1'500'000;
constexpr const char* kTransferRate = "15000";
// What is read-only in the storage location: no copy takes its place.
const std::string kGuarded = "zz-guarded.txt";

void Put(const fs::path& drive, const std::string& path, const std::string& bytes,
         std::int64_t time = kNoon) {
  const fs::path file = drive / path;
  fs::create_directories(file.parent_path());
  WriteFile(file, bytes);
  const std::array<timespec, 2> times{timespec{time, 0}, timespec{time, 0}};
  ::utimensat(AT_FDCWD, file.c_str(), times.data(), 0);
}

std::string Settings() {
  return "; kept as it is\r\n[When]\r\nAlwaysAt=12:00\r\n[Destiny]\r\nDir=C:\\Store\r\n"
         "[Entries]\r\n0=C:\\Work\\a.txt\r\n";
}

void GivenRun(WholeProgram& program, const std::vector<std::string>& items) {
  Engine& engine = program.Parts().engine;
  engine.settings.Entries.Assign(items);
  engine.settings.SaveLog = true;
  engine.run.RunDestination = "C:\\Store";
  engine.run.EngineFree = "1";
}

void RunOf(WholeProgram& program, const std::vector<std::string>& items) {
  GivenRun(program, items);
  program.Do([&] { program.Parts().engine.backup.RunBackup(); });
}

const std::vector<std::string> kItems{"C:\\Work\\a.txt", "C:\\Work\\big.dat",
                                      "C:\\Work\\Pair\\*+++++*"};

void Pack(WholeProgram& program) {
  program.Choose({"C:\\Tree", "C:\\Archives\\Tree.tvz"});
  program.Do([&] { program.Parts().Compressor.Get().Command1.Click.Emit(); });
}

void Unpack(WholeProgram& program) {
  program.Choose({"C:\\Archives\\Tree.tvz", "C:\\Out"});
  program.Do([&] { program.Parts().Compressor.Get().Command2.Click.Emit(); });
}

void Split(WholeProgram& program) {
  frmMain& window = program.Parts().Splitter.Get();
  window.Combo1.Text = "Manual Size";
  window.txtSFName.Text = "C:\\Large\\file.tvz";
  window.txtSegSize.Text = "0.02";
  program.Choose({"C:\\Parts"});
  program.Do([&] { window.chameleonButton2.Click.Emit(); });
}

void Join(WholeProgram& program) {
  frmMain& window = program.Parts().Splitter.Get();
  window.txtSegfname.Text = "C:\\Whole\\file.tvz.002";
  program.Choose({"C:\\Joined\\file.tvz"});
  program.Do([&] { window.chameleonButton1.Click.Emit(); });
}

void UseProfile(WholeProgram& program) {
  userdata& window = program.Parts().UserData.Get();
  window.Timer1.Enabled = false;
  window.Text1.Text = "C:\\Profile";
}

// It is there for all operations and outlives each program.
testing::FtpServer& Server() {
  ::setenv("TARNVALE_FTP_RATE", kTransferRate, 1);
  static testing::FtpServer server;
  return server;
}

Main& LogIn(WholeProgram& program) {
  Main& window = program.Parts().Transfer.Get();
  window.txtServer.Text = "127.0.0.1:" + std::to_string(Server().Port());
  window.txtUserID.Text = testing::kServerUser;
  window.txtPassword.Text = testing::kServerPassword;
  return window;
}

void Upload(WholeProgram& program) {
  Main& window = LogIn(program);
  window.txtLocal.Text = "C:\\Archives\\Auto Compressed.tvz";
  window.txtRemote.Text = "up.tvz";
  program.Do([&] { window.chameleonButton1.Click.Emit(); });
}

void Download(WholeProgram& program) {
  Main& window = LogIn(program);
  window.Text22.Text = "down";
  window.Text23.Text = "tvz";
  program.Choose({"C:\\Joined\\file.tvz"});
  program.Do([&] { window.chameleonButton3.Click.Emit(); });
}

void LayOutServer() {
  const fs::path home = Server().Home();
  for (const auto& entry : fs::directory_iterator(home)) fs::remove_all(entry);
  Put(home, "up.tvz", ContentOf("up", 1, 90'000));
  Put(home, "down.tvz", ContentOf("down", 2, kTransferred));
  Put(home, "other", "nobody's business");
  for (const auto& entry : fs::directory_iterator(home)) {
    fs::permissions(entry, fs::perms::all, fs::perm_options::add);
  }
}

std::vector<Operation> MakeOperations() {
  const std::string log = "Data/Backup Log.txt";
  const std::vector<std::string> storage{"Store/"};
  // What the table of a run's files says of a folder that can't be listed.
  const std::vector<std::string> listing{"Error:\n\n"};
  return {
      {"complete run",
       [](WholeProgram& program) {
         program.Parts().engine.settings.BackupMode.Complete = true;
         RunOf(program, kItems);
       },
       {log},
       listing,
       storage},
      {"incremental run",
       [](WholeProgram& program) {
         program.Parts().engine.settings.BackupMode.Incremental = true;
         RunOf(program, kItems);
       },
       {log},
       listing,
       storage,
       false},
      {"directory run",
       [](WholeProgram& program) {
         program.Parts().engine.settings.BackupMode.Complete = true;
         RunOf(program, {"C:\\Work\\Flat\\*.*", "C:\\Guarded\\zz-guarded.txt"});
       },
       {log},
       listing,
       storage},
      {"sync both ways",
       [](WholeProgram& program) {
         program.Parts().engine.settings.BackupMode.Sync = true;
         RunOf(program, {"C:\\Work\\Pair\\*+++++*"});
       },
       {log},
       listing,
       storage},
      {"run with archive",
       [](WholeProgram& program) {
         program.Parts().engine.settings.BackupMode.Complete = true;
         program.Parts().engine.settings.AutoCompress = true;
         program.Parts().engine.settings.CompressDir = "C:\\Archives";
         program.Parts().engine.settings.DestinationDir = "C:\\Tree";
         program.Parts().Compressor.Get().Text1.Text = "C:\\Tree";
         RunOf(program, kItems);
       },
       {log, "Archives/Auto Compressed.tvz"},
       listing,
       storage},
      {"save",
       [](WholeProgram& program) {
         GivenRun(program, {"C:\\Work\\a.txt", "C:\\Work\\big.dat"});
         program.Parts().engine.settings.DestinationDir = "C:\\Store";
         program.Do([&] { program.Parts().engine.SaveChanges(); });
       },
       {},
       {}},
      {"compress", Pack, {"Archives/Tree.tvz"}, {}},
      {"unpack",
       [](WholeProgram& program) {
         Pack(program);
         Unpack(program);
       },
       {"Archives/Tree.tvz", "Out/one.txt", "Out/Sub"},
       {"The archive does not exist!"}},
      {"split", Split, {"Parts/"}, {"An Error Has Occured!"}},
      {.name = "join",
       .work = Join,
       .in_place = {"Whole/file.tvz"},
       .messages = {},
       .flushed_late = {"Joined/"},
       .in_the_way = "Whole/file.tvz",
       .fails_in_silence = true},
      {"back up a profile",
       [](WholeProgram& program) {
         UseProfile(program);
         program.Choose({"C:\\Safe"});
         program.Do([&] { program.Parts().UserData.Get().chameleonButton1.Click.Emit(); });
       },
       {},
       {},
       {"Safe/"}},
      {"restore a profile",
       [](WholeProgram& program) {
         UseProfile(program);
         program.Choose({"C:\\Safe\\Firefox Backup"});
         program.Do([&] { program.Parts().UserData.Get().chameleonButton2.Click.Emit(); });
       },
       {},
       {},
       {"Profile/"}},
      {"export settings",
       [](WholeProgram& program) {
         program.Choose({"C:\\Exported\\Tarnvale.ini"});
         program.Do([&] { program.Parts().form.General.chameleonButton2.Click.Emit(); });
       },
       {},
       {}},
      {"import settings",
       [](WholeProgram& program) {
         program.Choose({"C:\\Exported\\Tarnvale.ini"});
         program.Do([&] { program.Parts().form.General.chameleonButton3.Click.Emit(); });
       },
       {},
       {}},
      {"upload", Upload, {}, {}, {}, true, true},
      {"download", Download, {}, {}, {"Joined/file.tvz"}, true, true},
  };
}

bool BeginsWithOneOf(const std::string& text, const std::vector<std::string>& beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(),
                     [&](const std::string& beginning) { return text.starts_with(beginning); });
}

std::set<std::string> LinesOf(const std::string& text) {
  std::set<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.insert(line);
  return lines;
}

}  // namespace

void LayOutDrive(const fs::path& drive) {
  const auto old_of = [](const std::string& name, std::size_t size) {
    return ContentOf(name, 1, size);
  };
  const auto new_of = [](const std::string& name, std::size_t size) {
    return ContentOf(name, 2, size);
  };
  // What is backed up, and its copies of before.
  Put(drive, "Work/a.txt", new_of("a", 700), kNoon + 100);
  Put(drive, "Store/a.txt", old_of("a", 650));
  Put(drive, "Work/big.dat", new_of("big", 400'000), kNoon + 100);
  Put(drive, "Store/big.dat", old_of("big", 390'000));
  Put(drive, "Work/Pair/new.txt", new_of("new", 3000), kNoon);
  Put(drive, "Work/Pair/changed.txt", new_of("changed", 5000), kNoon + 100);
  Put(drive, "Work/Pair/empty", "", kNoon);
  Put(drive, "Work/Pair/Sub/deep.txt", new_of("deep", 2000), kNoon + 100);
  Put(drive, "Work/Pair/Sub/same.txt", old_of("same", 2000));
  Put(drive, "Work/Pair/older.txt", old_of("older", 900), kNoon);
  Put(drive, "Work/Pair/Fresh/x.txt", new_of("x", 300), kNoon);
  Put(drive, "Work/Pair/locked.txt", new_of("locked", 300), kNoon + 100);
  fs::permissions(drive / "Work/Pair/locked.txt", fs::perms::owner_read);
  fs::create_symlink("new.txt", drive / "Work/Pair/link");
  ::setxattr((drive / "Work/Pair/new.txt").c_str(), "user.note", "kept", 4, 0);
  for (const std::string store : {"Store/", "Store/Pair/"}) {
    Put(drive, store + "changed.txt", old_of("changed", 5000));
    Put(drive, store + "Sub/deep.txt", old_of("deep", 2500));
    Put(drive, store + "Sub/same.txt", old_of("same", 2000));
    Put(drive, store + "older.txt", new_of("older", 1000), kNoon + 100);
    Put(drive, store + "locked.txt", old_of("locked", 100));
    Put(drive, store + "theirs.txt", new_of("theirs", 800));
    Put(drive, store + "OnlyThere/y.txt", new_of("y", 800));
  }
  Put(drive, "Data/Tarnvale.ini", Settings());
  Put(drive, "Data/Backup Log.txt", "the log of the last run\r\n");
  // A copy that the user has closed, in the last row of its folder.
  Put(drive, "Work/Pair/" + kGuarded, new_of("guarded", 500), kNoon + 100);
  for (const std::string store : {"Store/", "Store/Pair/"}) {
    Put(drive, store + kGuarded, old_of("guarded", 400));
    fs::permissions(drive / (store + kGuarded), fs::perms::owner_read);
  }
  Put(drive, "Guarded/" + kGuarded, new_of("guarded", 600), kNoon + 100);
  for (const std::string name : {"1", "2", "3"}) {
    Put(drive, "Work/Flat/" + name, new_of(name, 1000), kNoon + 100);
    Put(drive, "Store/" + name, old_of(name, 1100));
  }
  // What the tools work on.
  Put(drive, "Tree/one.txt", new_of("one", 9000));
  Put(drive, "Tree/Sub/two.txt", new_of("two", 40));
  Put(drive, "Archives/Auto Compressed.tvz", "the archive of before");
  Put(drive, "Out/one.txt", old_of("one", 500));
  Put(drive, "Out/other.txt", "not in the archive");
  Put(drive, "Large/file.tvz", new_of("large", 50'000));
  Put(drive, "Parts/file.tvz.001", old_of("part", 100));
  for (int part = 1; part <= 3; ++part) {
    Put(drive, "Whole/file.tvz.00" + std::to_string(part),
        new_of("part" + std::to_string(part), 20'000));
  }
  Put(drive, "Joined/file.tvz", "joined before");
  // Another application's data.
  Put(drive, "Profile/prefs.js", old_of("prefs", 700));
  Put(drive, "Profile/mine", "not in the backup");
  Put(drive, "Safe/Firefox Backup/prefs.js", new_of("prefs", 800));
  Put(drive, "Safe/Firefox Backup/Mail/inbox", new_of("inbox", 300'000));
  Put(drive, "Exported/Tarnvale.ini", "[Destiny]\r\nDir=C:\\Elsewhere\r\n");
}

Snapshot SnapshotOf(const fs::path& folder) {
  Snapshot snapshot;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().filename() == kUnflushedName) continue;
    const std::string path = entry.path().lexically_relative(folder).string();
    if (entry.is_symlink()) {
      snapshot[path] = "link to " + fs::read_symlink(entry.path()).string();
    } else if (entry.is_directory()) {
      snapshot[path] = "folder";
    } else {
      snapshot[path] = "file " + ReadFile(entry.path()).value_or("(unreadable)");
    }
  }
  return snapshot;
}

const std::vector<Operation>& AllOperations() {
  static const std::vector<Operation> operations = [] {
    std::vector<Operation> all = MakeOperations();
    const std::string obstacle = testing::FtpServer::Obstacle();
    if (!obstacle.empty()) {
      std::printf("without upload and download: %s\n", obstacle.c_str());
      std::erase_if(all, [](const Operation& operation) { return operation.takes_server; });
    } else if (!Server().Answers()) {
      throw std::runtime_error("the FTP server doesn't answer");
    }
    return all;
  }();
  return operations;
}

// --- one operation

// Shared with the children, which report nothing by system calls.
struct Stage::Shown {
  static constexpr int kMost = 50;
  int count;
  std::array<std::array<char, 160>, kMost> texts;
};

Stage::Stage(const Operation& operation)
    : operation_(operation), surroundings_(SurroundingsIn(work_.Path())) {
  void* const shared =
      ::mmap(nullptr, sizeof(Shown), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) throw std::runtime_error("no shared memory");
  shown_ = std::shared_ptr<Shown>(static_cast<Shown*>(shared),
                                  [](Shown* memory) { ::munmap(memory, sizeof(Shown)); });
  LayOut();
  before_ = Now();
  duration_ = RunWhole(Work());
  after_ = Now();
  for (int i = 0; i < shown_->count; ++i) {
    usual_messages_.insert(shown_->texts[static_cast<std::size_t>(i)].data());
  }
}

std::function<void()> Stage::Work() {
  return [this] {
    WholeProgram program(surroundings_, [&](const std::string& text) {
      if (shown_->count == Shown::kMost) return;
      auto& place = shown_->texts[static_cast<std::size_t>(shown_->count++)];
      std::strncpy(place.data(), text.c_str(), place.size() - 1);
    });
    operation_.work(program);
  };
}

void Stage::DoHere(const std::function<void(WholeProgram&)>& preparation) {
  WholeProgram program(surroundings_, [](const std::string&) {});
  preparation(program);
  operation_.work(program);
}

void Stage::LayOut() {
  fs::remove_all(Drive());
  fs::remove_all(surroundings_.state_folder);
  LayOutDrive(Drive());
  if (operation_.takes_server) {
    WriteFile(Drive() / "Archives/Auto Compressed.tvz", ContentOf("up", 2, kTransferred));
    LayOutServer();
  }
  std::memset(static_cast<void*>(shown_.get()), 0, sizeof(Shown));
}

// What a killed program has sent may still be on its way.
Snapshot Stage::Now() const {
  Snapshot now = SnapshotOf(Drive());
  if (!operation_.takes_server) return now;
  const auto limit = std::chrono::steady_clock::now() + 30s;
  while (!Server().IsIdle()) {
    if (std::chrono::steady_clock::now() > limit) throw std::runtime_error("a session goes on");
    std::this_thread::sleep_for(1ms);
  }
  for (auto& [path, state] : SnapshotOf(Server().Home())) now["Server/" + path] = state;
  return now;
}

bool Stage::IsWrittenInPlace(const std::string& path) const {
  return BeginsWithOneOf(path, operation_.in_place);
}

// A key that can't be written is passed over: each is its old or its new self.
bool Stage::IsMixedSettings(const std::string& path, const std::string& state) const {
  if (!path.ends_with("/Tarnvale.ini")) return false;
  const std::set<std::string> old_lines = LinesOf(before_.at(path));
  const std::set<std::string> new_lines = LinesOf(after_.at(path));
  const std::set<std::string> lines = LinesOf(state);
  const bool are_all_known = std::all_of(lines.begin(), lines.end(), [&](const std::string& line) {
    return old_lines.contains(line) || new_lines.contains(line);
  });
  const auto keys = [](const std::set<std::string>& all) {
    std::set<std::string> names;
    for (const std::string& line : all) names.insert(line.substr(0, line.find('=')));
    return names;
  };
  const std::set<std::string> kept = keys(lines);
  const std::set<std::string> needed = keys(old_lines);
  return are_all_known && std::includes(kept.begin(), kept.end(), needed.begin(), needed.end());
}

// The whole content of a file of this name from elsewhere.
bool Stage::IsWholeTwin(const std::string& path, const std::string& state) const {
  if (path.ends_with(kGuarded)) return false;
  return std::any_of(before_.begin(), before_.end(), [&](const auto& file) {
    return file.second == state && fs::path(file.first).filename() == fs::path(path).filename();
  });
}

// The beginning of what is being uploaded.
bool Stage::IsCutShort(const std::string& path, const std::string& state) const {
  const std::string& wanted = after_.at(path);
  return path.starts_with("Server/") && wanted != before_.at(path) && wanted.starts_with(state);
}

bool Stage::IsFlushedLate(const std::string& path) const {
  return BeginsWithOneOf(path, operation_.flushed_late);
}

// Counts it.
bool Stage::MayBeTorn(const std::string& path, const Allowed& allowed) {
  const bool may_be = IsFlushedLate(path) && BeginsWithOneOf(path, allowed.lossy);
  if (may_be) ++torn_;
  return may_be;
}

void Stage::CheckNothingIsHarmed(const std::string& when, Findings& findings,
                                 const Allowed& allowed) {
  const Snapshot now = Now();
  for (const auto& [path, state] : before_) {
    if (IsWrittenInPlace(path)) continue;
    const auto found = now.find(path);
    const auto wanted = after_.find(path);
    if (found == now.end() && wanted != after_.end()) {
      findings.Add(operation_.name + ", " + when + ": " + path + " is gone");
    } else if (found != now.end() && wanted != after_.end() && IsCutShort(path, found->second)) {
      if (found->second != wanted->second) ++cut_short_;
    } else if (found != now.end() && found->second != state &&
               (wanted == after_.end() || found->second != wanted->second) &&
               !IsMixedSettings(path, found->second) &&
               !(allowed.whole_copies && IsWholeTwin(path, found->second)) &&
               !MayBeTorn(path, allowed)) {
      findings.Add(operation_.name + ", " + when + ": " + path + " is neither old nor new");
    }
  }
  for (const auto& [path, state] : now) {
    if (before_.contains(path) || IsWrittenInPlace(path)) continue;
    if (IsTemporaryName(fs::path(path).filename().string())) {
      ++left_;
      continue;
    }
    const auto wanted = after_.find(path);
    if (allowed.whole_copies && wanted == after_.end() && IsWholeTwin(path, state)) continue;
    if (wanted == after_.end() || (wanted->second != state && !MayBeTorn(path, allowed))) {
      findings.Add(operation_.name + ", " + when + ": " + path +
                   (wanted == after_.end() ? " has come" : " is torn"));
    }
  }
}

void Stage::Start() {
  RunWhole([this] {
    WholeProgram program(surroundings_, [](const std::string&) {});
    program.Parts().engine.LoadSettings();
  });
}

void Stage::CheckNextStart(const std::string& when, Findings& findings) {
  Start();
  if (CountTemporaries(work_.Path()) > 0) {
    findings.Add(operation_.name + ", " + when + ": a temporary survived the next start");
  }
}

void Stage::CheckRepetition(const std::string& when, Findings& findings, const Allowed& allowed) {
  if (!operation_.in_the_way.empty()) fs::remove(Drive() / operation_.in_the_way);
  RunWhole(Work());
  if (CountTemporaries(work_.Path()) > 0) {
    findings.Add(operation_.name + ", " + when + ": a temporary survived the next time");
  }
  if (!operation_.is_repeatable) return;
  const Snapshot now = Now();
  for (const auto& [path, state] : after_) {
    const auto found = now.find(path);
    const bool is_new = found != now.end() &&
                        (found->second == state || (path.ends_with("/Tarnvale.ini") &&
                                                    LinesOf(found->second) == LinesOf(state)));
    if (!is_new &&
        !(allowed.whole_copies && found != now.end() && IsWholeTwin(path, found->second))) {
      findings.Add(operation_.name + ", " + when + ": " + path + " isn't new after the next time");
    }
  }
}

void Stage::CheckMessages(const std::string& when, Findings& findings) {
  for (int i = 0; i < shown_->count; ++i) {
    const std::string text = shown_->texts[static_cast<std::size_t>(i)].data();
    ++all_shown_[text];
    if (usual_messages_.contains(text) || BeginsWithOneOf(text, operation_.messages)) continue;
    findings.Add(operation_.name + ", " + when + ": \"" + text + "\" is shown");
  }
  if (shown_->count == 0 && !usual_messages_.empty() && !operation_.fails_in_silence) {
    findings.Add(operation_.name + ", " + when + ": nothing is shown");
  }
}

void Stage::PrintShown() const {
  for (const auto& [text, count] : all_shown_) {
    std::string line = text.substr(0, 60);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::printf("        shown %d times: %s\n", count, line.c_str());
  }
}

}  // namespace tarnvale::reliability
