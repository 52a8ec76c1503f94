// Random trees, edits, runs in all modes and restores on the real host, against a model of
// what the result is. A sequence that fails is cut down to the smallest that still does.
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <random>

#include "core/file_control.h"
#include "platform/names.h"
#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

// --- the model

struct File {
  std::string content;  ///< of a link: where it leads
  std::int64_t time = 0;
  bool is_link = false;
  bool is_read_only = false;
  bool is_locked = false;  ///< nobody may read it
  bool is_changed = true;  ///< its archive attribute
  std::string Text() const {
    return (is_link ? "link to " : "") + content + " of " + std::to_string(time - kNoon) +
           (is_locked      ? ", locked"
            : is_read_only ? ", read-only"
                           : "");
  }
};

struct InOrder {
  bool operator()(const std::string& a, const std::string& b) const { return ComesBefore(a, b); }
};

struct Folder {
  std::map<std::string, File, InOrder> files;
  std::map<std::string, Folder, InOrder> folders;
};

std::string Folded(std::string name) {
  for (std::size_t at = 0; (at = name.find("Ä")) != std::string::npos;) name.replace(at, 2, "ä");
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return name;
}

// For each name of the first side that has one, its partner: the same name, or else one in
// another case that the first side doesn't have.
template <class Names>
std::map<std::string, std::string> Pairs(const Names& first, const Names& second) {
  std::map<std::string, std::string> pairs;
  std::map<std::string, std::string> taken;
  for (const auto& [name, entry] : first) {
    if (second.contains(name)) pairs[name] = taken[name] = name;
  }
  for (const auto& [name, entry] : first) {
    if (pairs.contains(name)) continue;
    for (const auto& [other, theirs] : second) {
      if (Folded(other) != Folded(name) || first.contains(other) || taken.contains(other)) continue;
      pairs[name] = taken[other] = other;
      break;
    }
  }
  return pairs;
}

// As a lost medium leaves a copy.
bool IsCutShort(const File& from, const File& copy) {
  return !from.is_link && copy.time == from.time && copy.content.size() < from.content.size();
}

// False when the copy is refused: nothing happens then.
bool Copy(const File& from, Folder& to, const std::string& name) {
  if (from.is_locked) return false;
  const auto at = to.files.find(name);
  if (at != to.files.end()) {
    const File& old = at->second;
    if (!old.is_link && old.is_read_only && !IsCutShort(from, old)) return false;
  }
  File copy = from;
  copy.is_changed = true;
  to.files[name] = copy;
  return true;
}

// All of it, whatever is newer; what fails is left out.
void CopyTree(const Folder& from, Folder& to) {
  const auto files = Pairs(from.files, to.files);
  for (const auto& [name, file] : from.files) {
    Copy(file, to, files.contains(name) ? files.at(name) : name);
  }
  const auto folders = Pairs(from.folders, to.folders);
  for (const auto& [name, folder] : from.folders) {
    CopyTree(folder, to.folders[folders.contains(name) ? folders.at(name) : name]);
  }
}

// The first copy that fails ends it.
void SyncFiles(Folder& first, Folder& second, bool two_way) {
  const auto pairs = Pairs(first.files, second.files);
  const Folder ours = first;
  const Folder theirs = second;
  for (const auto& [name, file] : ours.files) {
    const auto pair = pairs.find(name);
    if (pair == pairs.end()) {
      if (!Copy(file, second, name)) return;
      continue;
    }
    const File& other = theirs.files.at(pair->second);
    if (other.time > file.time) {
      if (two_way && !Copy(other, first, name)) return;
    } else if (file.time > other.time || file.content.size() != other.content.size()) {
      if (!Copy(file, second, pair->second)) return;
    }
  }
  if (!two_way) return;
  for (const auto& [name, file] : theirs.files) {
    const bool is_taken =
        std::any_of(pairs.begin(), pairs.end(),
                    [&, &wanted = name](const auto& pair) { return pair.second == wanted; });
    if (!is_taken && !Copy(file, first, name)) return;
  }
}

void SyncFolders(Folder& first, Folder& second, bool two_way) {
  const auto pairs = Pairs(first.folders, second.folders);
  const Folder ours = first;
  const Folder theirs = second;
  SyncFiles(first, second, two_way);
  for (const auto& [name, folder] : ours.folders) {
    if (pairs.contains(name)) {
      SyncFolders(first.folders[name], second.folders[pairs.at(name)], two_way);
    } else {
      CopyTree(folder, second.folders[name]);
    }
  }
  if (!two_way) return;
  for (const auto& [name, folder] : theirs.folders) {
    const bool is_taken =
        std::any_of(pairs.begin(), pairs.end(),
                    [&, &wanted = name](const auto& pair) { return pair.second == wanted; });
    if (!is_taken) CopyTree(folder, first.folders[name]);
  }
}

// --- what happens

enum class What { kWrite, kLink, kRemove, kRemoveFolder, kComplete, kIncremental, kSync, kRestore };

struct Step {
  What what = What::kWrite;
  std::vector<std::string> folders;  ///< the side, and folders in it
  std::string name;
  File file;
  std::string Text() const {
    static const char* const kNames[] = {"write",    "link",        "remove", "remove folder",
                                         "complete", "incremental", "sync",   "restore"};
    std::string text = kNames[static_cast<int>(what)];
    for (const std::string& folder : folders) text += (&folder == &folders[0] ? " " : "/") + folder;
    return text + (name.empty() ? "" : "/" + name + ": " + file.Text());
  }
};
using Steps = std::vector<Step>;

struct Model {
  std::map<std::string, Folder> sides{{"Work", {}}, {"Store", {}}, {"Single", {}}};

  Folder* Find(const Step& step) {
    Folder* folder = &sides[step.folders[0]];
    for (std::size_t i = 1; i < step.folders.size(); ++i) {
      if (step.what == What::kRemove && !folder->folders.contains(step.folders[i])) return nullptr;
      folder = &folder->folders[step.folders[i]];
    }
    return folder;
  }

  void Take(const Step& step) {
    switch (step.what) {
      case What::kWrite:
      case What::kLink:
        Find(step)->files[step.name] = step.file;
        return;
      case What::kRemove:
        if (Folder* const folder = Find(step)) folder->files.erase(step.name);
        return;
      case What::kRemoveFolder:
        sides[step.folders[0]].folders.erase(step.folders[1]);
        return;
      case What::kRestore:
        return CopyTree(sides["Store"], sides["Work"]);
      case What::kSync:
        return SyncFolders(sides["Work"], sides["Store"], true);
      case What::kComplete:
      case What::kIncremental:
        RunSingle(step.what == What::kIncremental);
        return SyncFolders(sides["Work"], sides["Store"], false);
    }
  }

  // A read-only file counts as changed each time: 1 less 32 is no value.
  void RunSingle(bool is_incremental) {
    for (auto& [name, file] : sides["Single"].files) {
      if (is_incremental && !file.is_changed && !file.is_read_only) continue;
      Copy(file, sides["Store"], name);
      if (is_incremental) file.is_changed = false;
    }
  }
};

class RealSides : public RealRun {
 public:
  RealSides() { fs::create_directories(Native("Single")); }
  void TestBody() override {}

  void Take(const Step& step) {
    std::string place = step.folders.empty() ? "" : step.folders[0];
    for (std::size_t i = 1; i < step.folders.size(); ++i) place += "/" + step.folders[i];
    const fs::path file = Native(place + "/" + step.name);
    if (step.what == What::kRemoveFolder) fs::remove_all(Native(place));
    if (step.what == What::kRemove) fs::remove(file);
    if (step.what == What::kWrite || step.what == What::kLink) Put(place, file, step);
    if (step.what >= What::kComplete) RunOf(step.what);
  }

  // As the model's: paths with what they are.
  std::map<std::string, std::string> Read() const {
    std::map<std::string, std::string> all;
    for (const char* side : {"Work", "Store", "Single"}) {
      for (const auto& entry : fs::recursive_directory_iterator(Native(side))) {
        const fs::path& path = entry.path();
        all[path.lexically_relative(Native("")).string()] =
            entry.is_directory() && !entry.is_symlink() ? "folder" : TextOf(path);
      }
    }
    return all;
  }

 private:
  void Put(const std::string& place, const fs::path& file, const Step& step) {
    fs::create_directories(Native(place));
    fs::remove(file);
    const std::string path = place + "/" + step.name;
    if (step.what == What::kLink) {
      fs::create_symlink(step.file.content, file);
    } else {
      Write(path, step.file.content);
    }
    const timespec times[2] = {{step.file.time, 0}, {step.file.time, 0}};
    ::utimensat(AT_FDCWD, file.c_str(), times, AT_SYMLINK_NOFOLLOW);
    if (step.file.is_read_only) ::chmod(file.c_str(), step.file.is_locked ? 0 : 0444);
  }

  void RunOf(What what) {
    if (what == What::kRestore) {
      FileControl(interfaces.files, interfaces.boxes, interfaces.loop)
          .CopyFolderTo("C:\\Store", "C:\\Work",
                        {.move = false, .overwrite = true, .rights = Rights::kNewFile});
      return;
    }
    BackupModeChoice& mode = engine.settings.BackupMode;
    (what == What::kSync       ? mode.Sync
     : what == What::kComplete ? mode.Complete
                               : mode.Incremental) = true;
    std::vector<std::string> items{"C:\\Work\\*+++++*"};
    if (what != What::kSync) items.insert(items.begin(), "C:\\Single\\single.txt");
    engine.settings.Entries.Assign(items);
    engine.settings.SaveLog = false;
    Run();
  }

  static std::string TextOf(const fs::path& path) {
    struct stat info {};
    ::lstat(path.c_str(), &info);
    File file;
    file.time = info.st_mtim.tv_sec;
    file.is_link = S_ISLNK(info.st_mode);
    if (file.is_link) {
      file.content = fs::read_symlink(path).string();
      return file.Text();
    }
    file.is_read_only = (info.st_mode & S_IWUSR) == 0;
    file.is_locked = (info.st_mode & S_IRUSR) == 0;
    if (file.is_locked) ::chmod(path.c_str(), S_IRUSR);
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    file.content = bytes.str();
    if (file.is_locked) ::chmod(path.c_str(), 0);
    return file.Text();
  }
};

void ReadInto(std::map<std::string, std::string>& all, const Folder& folder,
              const std::string& below) {
  for (const auto& [name, file] : folder.files) all[below + name] = file.Text();
  for (const auto& [name, inner] : folder.folders) {
    all[below + name] = "folder";
    ReadInto(all, inner, below + name + "/");
  }
}

// What is wrong after the first run that goes wrong; empty: nothing.
std::string Failure(const Steps& steps) {
  Model model;
  RealSides real;
  for (const Step& step : steps) {
    model.Take(step);
    real.Take(step);
    if (step.what < What::kComplete) continue;
    std::map<std::string, std::string> wanted;
    for (const auto& [side, folder] : model.sides) ReadInto(wanted, folder, side + "/");
    const std::map<std::string, std::string> found = real.Read();
    for (const auto& [path, state] : wanted) {
      const auto there = found.find(path);
      if (there == found.end()) return path + " isn't there, but should be " + state;
      if (there->second != state) return path + " is " + there->second + ", not " + state;
    }
    for (const auto& [path, state] : found) {
      if (!wanted.contains(path)) return path + " has come: " + state;
    }
  }
  return {};
}

class Chance {
 public:
  explicit Chance(std::uint64_t seed) : random_(seed) {}

  Steps Sequence() {
    Steps steps;
    const int count = 8 + Below(16);
    for (int i = 0; i < count; ++i)
      steps.push_back(i < 5 ? Edit() : Below(3) == 0 ? Act() : Edit());
    steps.push_back(Act());
    return steps;
  }

 private:
  int Below(unsigned end) { return static_cast<int>(random_() % end); }
  template <std::size_t n>
  std::string Any(const char* const (&names)[n]) {
    return names[Below(n)];
  }

  Step Act() {
    return {static_cast<What>(static_cast<int>(What::kComplete) + Below(4)), {}, {}, {}};
  }

  Step Edit() {
    Step step;
    const int kind = Below(12);
    if (kind == 0) return Single();
    step.folders.push_back(Below(2) == 0 ? "Work" : "Store");
    if (kind == 1) {
      step.what = What::kRemoveFolder;
      step.folders.push_back(Any({"sub", "Sub", "deep"}));
      return step;
    }
    while (step.folders.size() < 3 && Below(2) == 0) {
      step.folders.push_back(Any({"sub", "Sub", "deep"}));
    }
    step.name = Any({"a.txt", "A.txt", "b.txt", "ä.txt", "Ä.txt", ".hidden"});
    step.what = kind == 2 ? What::kRemove : kind == 3 ? What::kLink : What::kWrite;
    step.file = AnyFile();
    step.file.is_link = step.what == What::kLink;
    if (step.file.is_link) step.file.is_read_only = step.file.is_locked = false;
    return step;
  }

  Step Single() {
    Step step{What::kWrite, {"Single"}, "single.txt", AnyFile()};
    step.file.is_locked = false;
    return step;
  }

  // Times and sizes that are often the same.
  File AnyFile() {
    File file;
    file.content = "#" + std::to_string(1000 + count_++) + (Below(2) == 0 ? "" : "+");
    file.time = kNoon + Below(4);
    file.is_read_only = Below(8) == 0;
    file.is_locked = Below(16) == 0;
    if (file.is_locked) file.is_read_only = true;
    return file;
  }

  std::mt19937_64 random_;
  int count_ = 0;
};

// The smallest part of a sequence that fails.
Steps Shrunk(Steps steps) {
  for (bool shorter = true; shorter;) {
    shorter = false;
    for (std::size_t i = steps.size(); i-- > 0;) {
      Steps less = steps;
      less.erase(less.begin() + static_cast<std::ptrdiff_t>(i));
      if (Failure(less).empty()) continue;
      steps = less;
      shorter = true;
    }
  }
  return steps;
}

// Nothing is closed to root.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (::geteuid() == 0 && ::setegid(kNobody) == 0 && ::seteuid(kNobody) != 0) std::abort();
  }
  ~OrdinaryUser() {
    if (::getuid() == 0 && (::seteuid(0) != 0 || ::setegid(0) != 0)) std::abort();
  }

 private:
  static constexpr uid_t kNobody = 65534;
};

std::uint64_t Number(const char* variable, std::uint64_t otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

TEST(ModelTest, EachSequenceOfEditsRunsAndRestoresEndsAsTheModelSays) {
  const OrdinaryUser user;
  const std::uint64_t count = Number("TARNVALE_SEQUENCES", 60);
  const std::uint64_t seed = Number("TARNVALE_SEED", 1);
  std::uint64_t runs = 0;
  for (std::uint64_t i = 0; i < count; ++i) {
    if (i > 0 && i % 5000 == 0) std::cout << "model: " << i << " sequences" << std::endl;
    const Steps steps = Chance(seed * 1'000'003 + i).Sequence();
    for (const Step& step : steps) runs += step.what >= What::kComplete ? 1 : 0;
    if (Failure(steps).empty()) continue;
    const Steps smallest = Shrunk(steps);
    std::string text;
    for (const Step& step : smallest) text += "  " + step.Text() + "\n";
    FAIL() << "sequence " << i << " of seed " << seed << ":\n" << text << Failure(smallest);
  }
  std::cout << "model: " << count << " sequences, " << runs << " runs and restores, 0 failures\n";
}

}  // namespace
}  // namespace tarnvale::testing
