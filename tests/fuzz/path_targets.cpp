// Names and paths from outside: the parts of files, and what dialogs give back.
#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "compressor/compressor_window.h"
#include "platform/temporary_name.h"
#include "splitter/frm_main.h"
#include "tests/fuzz/fuzz_script.h"
#include "tests/fuzz/fuzz_targets.h"
#include "tests/fuzz/real_drive.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_formats.h"
#include "tests/support/fake_ftp_transport.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_random.h"
#include "tests/support/fake_windows.h"
#include "tests/support/manual_loop.h"
#include "ui/dialog_record.h"
#include "ui/file_dialog.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

using Contents = std::map<std::string, std::string>;

Contents ContentsOf(const std::string& folder) {
  Contents contents;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) contents[entry.path().string()] = ReadNative(entry.path());
  }
  return contents;
}

/// How many of those that stood before are gone or have changed.
std::size_t CountHarmed(const Contents& before, const Contents& now) {
  return static_cast<std::size_t>(
      std::count_if(before.begin(), before.end(), [&](const auto& file) {
        const auto found = now.find(file.first);
        return found == now.end() || found->second != file.second;
      }));
}

void MakeEmpty(const std::string& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
}

bool CanBeNative(const std::string& name) {
  return !name.empty() && name.size() < 200 && name != "." && name != ".." &&
         name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

// --- parts

class Splitting {
 public:
  Splitting() {
    for (const char* const name : {"drive/In", "drive/Out"}) {
      fs::create_directories(drive_.folder / name);
    }
  }

  void Follow(FuzzScript script) {
    MakeEmpty(in_);
    MakeEmpty(out_);
    const std::string name = script.Text();
    const std::int32_t segment_bytes = 1 + script.Next() + 256 * (script.Next() % 8);
    const int damage = script.Next();
    const std::string other = script.Text();
    const std::string content = script.Text() + script.Text() + script.Text();
    if (CanBeNative(name)) WriteNative(in_ + "/" + name, content);
    const Contents before = ContentsOf(in_);
    Split("C:\\In\\" + name, segment_bytes, content);
    Require(ContentsOf(in_) == before, "a split changed its file");
    Damage(damage, other);
    Join("C:\\Out\\" + (damage % 2 == 0 ? name + ".001" : other));
  }

 private:
  void Split(const Path& source, std::int32_t segment_bytes, const std::string& content) {
    std::int16_t count = 0;
    const PartsCode code = hand_.SplitFile(source, segment_bytes, count);
    const Contents parts = ContentsOf(out_);
    if (code != PartsCode::kDone) {
      Require(code == PartsCode::kFailed || parts.empty(), "a refused split wrote something");
      return;
    }
    Require(parts.size() == static_cast<std::size_t>(count), "other parts than were counted");
    std::string all;
    for (std::int16_t number = 1; number <= count; ++number) {
      const std::string part = NativePart(PartName("C:\\Out\\" + LocateName(source).name, number));
      Require(number == count || part.size() == static_cast<std::size_t>(segment_bytes),
              "a part of another size");
      all += part;
    }
    Require(all == content, "the parts aren't the file");
  }

  // As folders look that somebody else has filled.
  void Damage(int how, const std::string& other) {
    const Contents parts = ContentsOf(out_);
    if (!parts.empty()) {
      const std::string victim =
          std::next(parts.begin(), how / 8 % static_cast<int>(parts.size()))->first;
      if (how % 8 == 1) fs::remove(victim);
      if (how % 8 == 2) fs::resize_file(victim, parts.at(victim).size() / 2);
      if (how % 8 == 3) fs::rename(victim, victim + "x");
      if (how % 8 == 4 && CanBeNative(other)) fs::rename(victim, out_ + "/" + other);
    }
    if (how % 8 >= 5 && CanBeNative(other)) WriteNative(out_ + "/" + other, "other");
  }

  void Join(const Path& named) {
    const Contents before = ContentsOf(out_);
    std::int16_t count = 0;
    Path part = named;
    const PartsCode code = hand_.JoinFile(part, count);
    const Contents now = ContentsOf(out_);
    Require(CountHarmed(before, now) == 0, "a join changed a file");
    Require(now.size() <= before.size() + (code == PartsCode::kDone || code == PartsCode::kFailed),
            "a join made more than its file");
    if (code != PartsCode::kDone) return;
    std::string all;
    for (std::int16_t number = 1; number <= count; ++number) {
      all += NativePart(PartName(joined_, number));
    }
    Require(NativePart(joined_) == all, "what was joined isn't its parts");
    Require(drive_.host.NativeOf(PartName(joined_, static_cast<std::int16_t>(count + 1))).empty(),
            "a part was left out");
  }

  std::string NativePart(const Path& path) { return ReadNative(drive_.host.NativeOf(path)); }

  RealDrive drive_;
  std::string in_ = drive_.folder / "drive/In";
  std::string out_ = drive_.folder / "drive/Out";
  FakeClock clock_;
  ManualLoop loop_{clock_};
  Property<std::string> target_{"C:\\Out"};
  Property<std::string> joined_;
  modFHand hand_{
      drive_.host.files, drive_.host.open_files, loop_, {target_, joined_, [](std::int16_t) {}}};
};

// --- dialogs

// Gives back one text after the other, as the hosts' dialogs do.
class AnyDialogs : public FileDialogs, public MessageBoxes {
 public:
  BoxAnswer Show(const BoxRequest& request) override {
    return request.buttons == BoxButtons::kYesNo ? BoxAnswer::kYes : BoxAnswer::kOk;
  }
  bool ShowOpen(FileDialogRecord& record) override { return Fill(record); }
  bool ShowSave(FileDialogRecord& record) override { return Fill(record); }
  std::optional<Path> BrowseForFolder(const FolderDialogRecord&) override {
    Path folder = Next();
    if (folder.empty()) return std::nullopt;
    return folder;
  }

  std::vector<Path> answers;  ///< the last one comes first

 private:
  Path Next() {
    if (answers.empty()) return {};
    Path path = std::move(answers.back());
    answers.pop_back();
    return path;
  }

  bool Fill(FileDialogRecord& record) {
    const std::string before = record.file;
    const Path chosen = Next();
    const bool has_room = GiveBack(record, chosen);
    Require(has_room ? TrimNulls(record.file) == TrimNulls(chosen) : record.file == before,
            "a dialog gave back something else");
    return has_room;
  }
};

// Each description has a pattern, whatever a filter and an offered name say.
void ReadRecord(const std::string& filter, const std::string& file, int index) {
  FileDialogRecord record;
  record.filter = filter;
  record.filter_index = index;
  record.file = file;
  const std::vector<FileFilter> filters = FiltersOf(record);
  for (const FileFilter& each : filters) {
    Require(!each.patterns.empty(), "a filter without a pattern");
  }
  Require(filters.empty() || FirstFilterOf(record, filters.size()) < filters.size(),
          "a filter that there isn't");
  const OfferedFile offered = OfferedBy(record);
  const std::string whole = offered.folder + offered.name;
  Require(whole.empty() || whole == TrimNulls(file), "another file is offered");
  Require(offered.name.find_first_of("\\/") == std::string::npos, "a name with a folder");
}

class Desk {
 public:
  Desk() {
    fs::create_directories(drive_.folder / "drive");
    WriteNative(drive_.folder / "outside", "not on the drive");
  }

  void Follow(FuzzScript script) {
    LayOut();
    const int command = script.Next() % 6;
    const std::string first = script.Text();
    const std::string second = script.Text();
    ReadRecord(first, second, command);
    CheckNaming(first);
    dialogs_.answers = {second, first};
    const std::string root = drive_.folder / "drive";
    const Contents before = ContentsOf(root);
    Give(command);
    const Contents now = ContentsOf(root);
    // An archive, three parts, a joined file, two entries, none by a list.
    static constexpr std::size_t kMost[] = {1, 2, 0, 1, 3, 1};
    Require(CountHarmed(before, now) <= kMost[command], "more was changed than was chosen");
    for (const auto& [path, content] : now) {
      Require(!IsTemporaryName(fs::path(path).filename().string()), "a temporary was left");
    }
    Require(ReadNative(drive_.folder / "outside") == "not on the drive" &&
                NativeNames(drive_.folder.Path()).size() <= 3,
            "something else than the drive was changed");
  }

 private:
  void LayOut() {
    MakeEmpty(drive_.folder / "drive");
    for (const std::string folder : {"Tree/Sub", "Archives", "Out", "Large", "Whole"}) {
      fs::create_directories(drive_.folder / ("drive/" + folder));
    }
    Put("Tree/one.txt", std::string(300, '1'));
    Put("Tree/Sub/two.txt", "two");
    Put("Large/file.tvz", std::string(50000, 'l'));
    Put("Whole/file.tvz.001", "first");
    Put("Whole/file.tvz.002", "second");
    if (archive_.empty()) {
      dialogs_.answers = {"C:\\Archives\\Tree.tvz", "C:\\Tree"};
      Give(0);
      archive_ = ReadNative(drive_.folder / "drive/Archives/Tree.tvz");
    }
    Put("Archives/Tree.tvz", archive_);
  }

  void Put(const std::string& path, const std::string& content) {
    WriteNative(drive_.folder / ("drive/" + path), content);
  }

  // A file that a path can name is found by it, and no other one.
  void CheckNaming(const std::string& name) {
    if (!CanBeNative(name)) return;
    const std::string native = drive_.folder / ("drive/Out/" + name);
    WriteNative(native, "named");
    const Path path = drive_.host.PathOf(native);
    Require(path.empty() || drive_.host.NativeOf(path) == native, "a path names another file");
    fs::remove(native);
  }

  void Give(int command) {
    BackupSettings settings;
    compression archives(machine_, settings);
    frmMain parts(machine_);
    loop_.Deliver([&] {
      if (command == 0) archives.Command1.Click.Emit();
      if (command == 1) archives.Command2.Click.Emit();
      if (command == 2) archives.Command3.Click.Emit();
      if (command == 3) {
        archives.List1.Rows.Append("one.txt");
        archives.List1.Select(0, true);
        archives.Command4.Click.Emit();
      }
      if (command == 4) {
        parts.txtSFName.Text = "C:\\Large\\file.tvz";
        parts.txtSegSize.Text = "0.02";
        parts.chameleonButton2.Click.Emit();
      }
      if (command == 5) {
        parts.txtSegfname.Text = "C:\\Whole\\file.tvz.001";
        parts.chameleonButton1.Click.Emit();
      }
    });
  }

  RealDrive drive_;
  std::string archive_;
  FakeClock clock_;
  ManualLoop loop_{clock_};
  FakeFormats formats_;
  FakeRandom random_;
  Desktop desktop_;
  FakeWindows windows_{loop_, desktop_};
  FakeTray tray_;
  FakeNetwork network_{loop_, clock_};
  FakeFtpTransport ftp_{loop_};
  AnyDialogs dialogs_;
  Machine machine_{
      {drive_.host.files, drive_.host.open_files, drive_.host.profiles, drive_.host.processes,
       clock_, random_, formats_, drive_.host.registry, drive_.host.applications},
      {loop_, dialogs_, desktop_, windows_, dialogs_, tray_, network_, ftp_}};
};

}  // namespace

void FuzzParts(std::span<const std::uint8_t> bytes) {
  static Splitting splitting;
  splitting.Follow(FuzzScript(bytes));
}

void FuzzDialogs(std::span<const std::uint8_t> bytes) {
  static Desk desk;
  desk.Follow(FuzzScript(bytes));
}

}  // namespace tarnvale::testing
