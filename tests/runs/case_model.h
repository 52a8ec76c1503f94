// Random trees with names that are alike, and what no run over them may lose.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/runs/real_run.h"

namespace tarnvale::testing {

enum class Mode { kComplete, kIncremental, kSync };

inline void Choose(BackupSettings& settings, Mode mode) {
  if (mode == Mode::kComplete) settings.BackupMode.Complete = true;
  if (mode == Mode::kIncremental) settings.BackupMode.Incremental = true;
  if (mode == Mode::kSync) settings.BackupMode.Sync = true;
}

inline std::string NameOfMode(const ::testing::TestParamInfo<Mode>& info) {
  if (info.param == Mode::kComplete) return "Complete";
  return info.param == Mode::kIncremental ? "Incremental" : "Sync";
}

struct Held {
  std::string content;
  std::int64_t modified_s;
};
using Tree = std::map<std::string, Held>;  // by path below a side, with slashes

// Two sides, and a run over them.
class World {
 public:
  virtual ~World() = default;
  /// Replaces what the medium finds by this name.
  virtual void Put(const std::string& side, const std::string& path, const Held& file) = 0;
  virtual void Remove(const std::string& side, const std::string& path) = 0;
  virtual Tree Read(const std::string& side) = 0;
  virtual void Run(Mode mode) = 0;
  /// Equal for paths that the program or one of the two media may take for one.
  virtual std::string Fold(const std::string& path) = 0;
  virtual bool DistinguishesCase(const std::string& side) = 0;
};

/// A path with each of its names changed.
template <class Change>
std::string EachName(const std::string& path, Change&& change) {
  std::string changed;
  for (std::size_t at = 0; at <= path.size();) {
    const std::size_t end = std::min(path.find('/', at), path.size());
    changed += change(path.substr(at, end - at)) + "/";
    at = end + 1;
  }
  return changed;
}

class RealWorld : public World, public RealRun {
 public:
  void TestBody() override {}
  void Put(const std::string& side, const std::string& path, const Held& file) override {
    // By the system's own calls: a medium may find another name.
    for (std::size_t at = path.find('/'); at != std::string::npos; at = path.find('/', at + 1)) {
      ::mkdir(Native(side + "/" + path.substr(0, at)).c_str(), 0777);
    }
    const int opened =
        ::open(Native(side + "/" + path).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    ASSERT_GE(opened, 0) << path;
    ASSERT_EQ(::write(opened, file.content.data(), file.content.size()),
              static_cast<ssize_t>(file.content.size()));
    const timespec times[2] = {{file.modified_s, 0}, {file.modified_s, 0}};
    ASSERT_EQ(::futimens(opened, times), 0);
    ::close(opened);
  }
  void Remove(const std::string& side, const std::string& path) override {
    std::filesystem::remove(Native(side + "/" + path));
  }
  Tree Read(const std::string& side) override {
    Tree tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Native(side))) {
      if (!entry.is_regular_file()) continue;
      const std::string path = entry.path().string().substr(Native(side).size() + 1);
      struct stat info {};
      ::stat(entry.path().c_str(), &info);
      tree[path] = {Content(side + "/" + path), info.st_mtim.tv_sec};
    }
    return tree;
  }
  void Run(Mode mode) override {
    Choose(engine.settings, mode);
    // Right under the drive: in every mode the tree goes to the location itself.
    engine.settings.Entries.Assign({"C:\\Work\\*+++++*"});
    RealRun::Run();
  }
  std::string Fold(const std::string& path) override { return system.files.FoldCase(path); }
  bool DistinguishesCase(const std::string&) override { return true; }
};

inline bool HasEntry(const Tree& tree, const std::string& path) {
  const auto next = tree.lower_bound(path);
  return tree.contains(path) || std::any_of(next, tree.end(), [&](const auto& file) {
           return file.first.compare(0, path.size() + 1, path + "/") == 0;
         });
}

// The file at `ours` and the one at `theirs` may be one file for the program: their
// names are the same, or neither side has the exact one of the other, part by part.
inline bool MayBePartners(World& world, const Tree& our_side, const std::string& ours,
                          const Tree& their_side, const std::string& theirs) {
  if (world.Fold(ours) != world.Fold(theirs)) return false;
  std::size_t in_ours = 0;
  std::size_t in_theirs = 0;
  while (in_ours != std::string::npos) {
    in_ours = ours.find('/', in_ours + 1);
    in_theirs = theirs.find('/', in_theirs + 1);
    const std::string a = ours.substr(0, in_ours);
    const std::string b = theirs.substr(0, in_theirs);
    if (a == b) continue;
    const auto name = [](const std::string& path) { return path.substr(path.rfind('/') + 1); };
    const auto beside = [](const std::string& path, const std::string& other_name) {
      const auto slash = path.rfind('/');
      return slash == std::string::npos ? other_name : path.substr(0, slash + 1) + other_name;
    };
    if (name(a) == name(b)) continue;
    if (HasEntry(our_side, beside(a, name(b))) || HasEntry(their_side, beside(b, name(a)))) {
      return false;
    }
  }
  return true;
}

// What `side` held before is still there, or somewhere a newer partner took its place.
inline void ExpectNothingVanished(World& world, const Tree& before, const Tree& other_before,
                                  const Tree& after, bool may_be_written) {
  for (const auto& [path, file] : before) {
    const auto now = after.find(path);
    ASSERT_NE(now, after.end()) << path << " is gone";
    if (now->second.content == file.content) continue;
    EXPECT_TRUE(may_be_written) << path << " was written";
    bool is_replaced_by_partner = false;
    for (const auto& [other_path, other] : other_before) {
      is_replaced_by_partner =
          is_replaced_by_partner ||
          (other.content == now->second.content && other.modified_s > file.modified_s &&
           MayBePartners(world, before, path, other_before, other_path));
    }
    EXPECT_TRUE(is_replaced_by_partner)
        << path << ": \"" << file.content << "\" gave way to \"" << now->second.content << "\"";
  }
}

inline std::multiset<std::string> ContentsOf(const Tree& tree) {
  std::multiset<std::string> contents;
  for (const auto& [path, file] : tree) contents.insert(file.content);
  return contents;
}

class RandomTrees {
 public:
  explicit RandomTrees(unsigned seed) : random_(seed) {}

  void Change(World& world, const std::string& side, int files) {
    for (int i = 0; i < files; ++i) Write(world, side);
  }

  /// Something that a person does between two runs.
  void ChangeAnyhow(World& world, const std::string& side) {
    const Tree tree = world.Read(side);
    if (tree.empty() || Chance(3)) return Write(world, side);
    const auto& [path, file] = *std::next(tree.begin(), Below(tree.size()));
    // A copy has the time of what it was made of, as after `cp -a`.
    const bool copies = Chance(2);
    const bool moves = !copies && Chance(2);
    if (!copies) world.Remove(side, path);
    if (copies || moves) world.Put(side, Chance(2) ? LikeIt(path) : AnyPath(), file);
  }

  bool Chance(int of) { return Below(static_cast<std::size_t>(of)) == 0; }

 private:
  static inline const std::vector<std::string> kFolders{"Doc", "doc", "Doc.",
                                                        "Tür", "tür", "Tu\xCC\x88r"};
  static inline const std::vector<std::string> kNames{
      "Makefile.x", "makefile.x", "2024", "2024.", "2024 ", "Grün.x", "grün.x", "Gru\xCC\x88n.x"};

  std::ptrdiff_t Below(std::size_t end) {
    return static_cast<std::ptrdiff_t>(random_() % static_cast<unsigned>(end));
  }
  const std::string& AnyOf(const std::vector<std::string>& names) {
    return names[static_cast<std::size_t>(Below(names.size()))];
  }

  void Write(World& world, const std::string& side) {
    const std::string path = AnyPath();
    ++count_;
    world.Put(side, path, {side + ":" + path + "#" + std::to_string(count_), kNoon + 10 * count_});
  }

  std::string AnyPath() {
    std::string path;
    while (Chance(2) && path.size() < 20) path += AnyOf(kFolders) + "/";
    return path + AnyOf(kNames);
  }
  // Another name in the same folder.
  std::string LikeIt(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1) + AnyOf(kNames);
  }

  std::mt19937 random_;
  std::int64_t count_ = 0;
};

/// A seeded sequence of changes and runs in all modes.
inline void Check(World& world, unsigned seed) {
  SCOPED_TRACE("seed " + std::to_string(seed));
  RandomTrees random(seed);
  random.Change(world, "Store", 6);
  random.Change(world, "Work", 8);
  for (int run = 0; run < 5; ++run) {
    const Mode mode = static_cast<Mode>((seed + static_cast<unsigned>(run)) % 3);
    SCOPED_TRACE("run " + std::to_string(run) + " mode " + std::to_string(static_cast<int>(mode)));
    while (run > 0 && random.Chance(2)) random.ChangeAnyhow(world, "Store");
    while (run > 0 && !random.Chance(3)) random.ChangeAnyhow(world, "Work");
    const Tree work = world.Read("Work");
    const Tree store = world.Read("Store");
    world.Run(mode);
    const Tree work_after = world.Read("Work");
    const Tree store_after = world.Read("Store");
    ExpectNothingVanished(world, work, store, work_after, mode == Mode::kSync);
    ExpectNothingVanished(world, store, work, store_after, true);
    if (mode == Mode::kSync && world.DistinguishesCase("Work") &&
        world.DistinguishesCase("Store")) {
      EXPECT_EQ(ContentsOf(work_after), ContentsOf(store_after));
    }
    if (::testing::Test::HasFailure()) return;
  }
}

/// So many sequences, or as many as the environment sets.
template <class MakeWorld>
void CheckSequences(unsigned count, MakeWorld&& make_world) {
  const char* const wanted = std::getenv("TARNVALE_SEQUENCES");
  if (wanted != nullptr) count = static_cast<unsigned>(std::atoi(wanted));
  for (unsigned seed = 1; seed <= count && !::testing::Test::HasFailure(); ++seed) {
    const auto world = make_world();
    Check(*world, seed);
  }
}

}  // namespace tarnvale::testing
