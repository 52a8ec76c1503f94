// Names that differ in case only, through whole runs.
#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "core/file_sync.h"
#include "tests/runs/case_model.h"

namespace tarnvale::testing {
namespace {

class CaseNamesTest : public RealRun, public ::testing::WithParamInterface<Mode> {
 protected:
  CaseNamesTest() { Choose(engine.settings, GetParam()); }

  void RunTwice() {
    Run();
    Run();
  }
};

INSTANTIATE_TEST_SUITE_P(Modes, CaseNamesTest,
                         ::testing::Values(Mode::kComplete, Mode::kIncremental, Mode::kSync),
                         NameOfMode);

TEST_P(CaseNamesTest, TwoFilesOfOneFolderStayTwo) {
  Write("Work/Src/Makefile", "capital");
  Write("Work/Src/makefile", "small");
  Write("Work/Src/GRÜSSE.txt", "GRUESSE");
  Write("Work/Src/grüsse.txt", "gruesse");
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*+++++*"});
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Src/";
  for (int run = 0; run < 3; ++run) {
    Run();
    for (const std::string& side : {std::string("Work/Src/"), store}) {
      EXPECT_EQ(Content(side + "Makefile"), "capital");
      EXPECT_EQ(Content(side + "makefile"), "small");
      EXPECT_EQ(Content(side + "GRÜSSE.txt"), "GRUESSE");
      EXPECT_EQ(Content(side + "grüsse.txt"), "gruesse");
    }
  }
}

TEST_P(CaseNamesTest, TwoFoldersOfOneFolderStayTwo) {
  Write("Work/Src/Doc/a.txt", "capital");
  Write("Work/Src/doc/a.txt", "small");
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*+++++*"});
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Src/";
  RunTwice();
  for (const std::string& side : {std::string("Work/Src/"), store}) {
    EXPECT_EQ(Content(side + "Doc/a.txt"), "capital");
    EXPECT_EQ(Content(side + "doc/a.txt"), "small");
  }
}

TEST_P(CaseNamesTest, AnOtherCaseStandsForANameThatNeitherSideHas) {
  Write("Work/Src/Readme.TXT", "new");
  SetModified("Work/Src/Readme.TXT", kNoon + 5);
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Src/";
  Write(store + "README.txt", "old");
  SetModified(store + "README.txt", kNoon);
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*+++++*"});
  RunTwice();
  EXPECT_EQ(Content(store + "README.txt"), "new");
  EXPECT_EQ(Content(store + "Readme.TXT"), "(missing)");
}

TEST_P(CaseNamesTest, TwoSingleFilesStayTwoFromOneFolderAndFromTwo) {
  Write("Work/One/Makefile", "capital");
  Write("Work/One/makefile", "small");
  Write("Work/Two/MAKEFILE", "all capitals");
  Write("Store/mAKEFILE", "before");
  engine.settings.Entries.Assign(
      {"C:\\Work\\One\\Makefile", "C:\\Work\\One\\makefile", "C:\\Work\\Two\\MAKEFILE"});
  RunTwice();
  EXPECT_EQ(Content("Store/mAKEFILE"), "capital") << "the first may take its place";
  EXPECT_EQ(Content("Store/makefile"), "small");
  EXPECT_EQ(Content("Store/MAKEFILE"), "all capitals");
}

TEST_P(CaseNamesTest, ADirectorysFilesStayTwo) {
  Write("Work/Src/A.txt", "capital");
  Write("Work/Src/a.txt", "small");
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*.*"});
  RunTwice();
  EXPECT_EQ(Content("Store/A.txt"), "capital");
  EXPECT_EQ(Content("Store/a.txt"), "small");
}

TEST_P(CaseNamesTest, TwoWholeFolderItemsStayTwo) {
  if (GetParam() == Mode::kSync) return;  // it goes to the location itself
  Write("Work/Doc/a.txt", "capital");
  Write("Work/doc/a.txt", "small");
  engine.settings.Entries.Assign({"C:\\Work\\Doc\\*+++++*", "C:\\Work\\doc\\*+++++*"});
  RunTwice();
  EXPECT_EQ(Content("Store/Doc/a.txt"), "capital");
  EXPECT_EQ(Content("Store/doc/a.txt"), "small");
}

TEST_P(CaseNamesTest, TheLastCopyOfAFileThatHasGoneIsNotReplacedByItsTwin) {
  Write("Work/Makefile", "capital");
  Write("Work/makefile", "small");
  engine.settings.Entries.Assign({"C:\\Work\\Makefile", "C:\\Work\\makefile"});
  Run();
  std::filesystem::remove(Native("Work/Makefile"));
  Write("Work/makefile", "small, and changed");
  RunTwice();
  EXPECT_EQ(Content("Store/Makefile"), "capital");
  EXPECT_EQ(Content("Store/makefile"), "small, and changed");
}

TEST_P(CaseNamesTest, TheLastCopyOfAFolderThatHasGoneIsNotReplacedByItsTwin) {
  if (GetParam() == Mode::kSync) return;  // it goes to the location itself
  Write("Work/Doc/a.txt", "capital");
  Write("Work/doc/a.txt", "small");
  engine.settings.Entries.Assign({"C:\\Work\\Doc\\*+++++*", "C:\\Work\\doc\\*+++++*"});
  Run();
  std::filesystem::remove_all(Native("Work/Doc"));
  Write("Work/doc/a.txt", "small, and changed");
  RunTwice();
  EXPECT_EQ(Content("Store/Doc/a.txt"), "capital");
  EXPECT_EQ(Content("Store/doc/a.txt"), "small, and changed");
}

TEST_P(CaseNamesTest, AWholeFolderItemThatIsALinkIsComparedAsWhatItLeadsTo) {
  Write("Work/Real/a.txt", "old");
  SetModified("Work/Real/a.txt", kNoon);
  std::filesystem::create_directory_symlink("Real", Native("Work/Link"));
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Link/";
  Write(store + "a.txt", "new");
  SetModified(store + "a.txt", kNoon + 5);
  Write("Work/Real/b.txt", "b");
  engine.settings.Entries.Assign({"C:\\Work\\Link\\*+++++*"});
  RunTwice();
  EXPECT_EQ(Content(store + "a.txt"), "new") << "the older one must not replace it";
  EXPECT_EQ(Content(store + "b.txt"), "b");
  EXPECT_EQ(Content("Work/Real/a.txt"), GetParam() == Mode::kSync ? "new" : "old");
  EXPECT_TRUE(std::filesystem::is_symlink(Native("Work/Link")));
}

TEST_P(CaseNamesTest, TwoFoldersThatGoToOnePlaceKeepTheirOwnFiles) {
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Docs/";
  // By turns each item comes first, its file is the newer one, and the location has a copy.
  for (int turn = 0; turn < 8; ++turn) {
    SCOPED_TRACE(turn);
    std::filesystem::remove_all(Native("Work"));
    std::filesystem::remove_all(Native("Store"));
    std::filesystem::create_directories(Native("Store"));
    Write("Work/x/Docs/Makefile", "capital");
    Write("Work/y/Docs/makefile", "small");
    Write("Work/x/Docs/Sub/Readme", "of x");
    Write("Work/y/Docs/Sub/README", "of y");
    SetModified("Work/x/Docs/Makefile", kNoon + ((turn & 1) != 0 ? 100 : 0));
    SetModified("Work/y/Docs/makefile", kNoon + 50);
    std::vector<std::string> items{"C:\\Work\\x\\Docs\\*+++++*", "C:\\Work\\y\\Docs\\*+++++*"};
    if ((turn & 2) != 0) std::swap(items[0], items[1]);
    if ((turn & 4) != 0) {
      Write(store + "Makefile", "an older copy");
      SetModified(store + "Makefile", kNoon - 100);
    }
    engine.settings.Entries.Assign(items);
    for (int run = 0; run < 3; ++run) {
      Run();
      EXPECT_EQ(Content("Work/x/Docs/Makefile"), "capital");
      EXPECT_EQ(Content("Work/y/Docs/makefile"), "small");
      EXPECT_EQ(Content(store + "Makefile"), "capital");
      EXPECT_EQ(Content(store + "makefile"), "small");
      EXPECT_EQ(Content(store + "Sub/Readme"), "of x");
      EXPECT_EQ(Content(store + "Sub/README"), "of y");
    }
  }
}

TEST_P(CaseNamesTest, AThirdNameInTheLocationStandsForOneOfTwoOnly) {
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Docs/";
  Write(store + "MAKEFILE", "before");
  SetModified(store + "MAKEFILE", kNoon - 100);
  Write("Work/x/Docs/Makefile", "capital");
  Write("Work/y/Docs/makefile", "small");
  engine.settings.Entries.Assign({"C:\\Work\\y\\Docs\\*+++++*", "C:\\Work\\x\\Docs\\*+++++*"});
  for (int run = 0; run < 3; ++run) {
    Run();
    // A sync has brought it to the other folder before, which then has the exact name.
    const bool is_sync = GetParam() == Mode::kSync;
    EXPECT_EQ(Content(store + "MAKEFILE"), is_sync ? "before" : "capital");
    EXPECT_EQ(Content(store + (is_sync ? "Makefile" : "MAKEFILE")), "capital");
    EXPECT_EQ(Content(store + "makefile"), "small");
    EXPECT_EQ(Content("Work/y/Docs/makefile"), "small");
  }
}

TEST_P(CaseNamesTest, ASingleFileAndAFolderThatGoToOnePlaceStayTwo) {
  if (GetParam() != Mode::kSync) return;  // a folder goes to one of its own
  Write("Work/One/Makefile", "capital");
  Write("Work/Two/makefile", "small");
  SetModified("Work/One/Makefile", kNoon + 100);
  SetModified("Work/Two/makefile", kNoon);
  for (const bool copied_before : {false, true}) {
    if (copied_before) {
      std::filesystem::remove(Native("Store/Makefile"));
      std::filesystem::remove(Native("Work/Two/Makefile"));
    }
    engine.settings.Entries.Assign({"C:\\Work\\One\\Makefile", "C:\\Work\\Two\\*+++++*"});
    RunTwice();
    EXPECT_EQ(Content("Store/Makefile"), "capital");
    EXPECT_EQ(Content("Store/makefile"), "small");
    EXPECT_EQ(Content("Work/Two/makefile"), "small");
  }
}

TEST_P(CaseNamesTest, TheLastCopyOfALoneFileThatHasGoneIsNotReplacedByAnotherOne) {
  Write("Work/Makefile", "capital");
  engine.settings.Entries.Assign({"C:\\Work\\Makefile"});
  Run();
  std::filesystem::remove(Native("Work/Makefile"));
  Write("Work/makefile", "small, and not in the list");
  RunTwice();
  EXPECT_EQ(Content("Store/Makefile"), "capital");
  EXPECT_EQ(Content("Store/makefile"), "small, and not in the list") << "what stands for it now";
}

TEST_P(CaseNamesTest, TheLastCopyOfALoneFolderThatHasGoneIsNotReplacedByAnotherOne) {
  if (GetParam() == Mode::kSync) return;  // it goes to the location itself
  Write("Work/Doc/a.txt", "capital");
  engine.settings.Entries.Assign({"C:\\Work\\Doc\\*+++++*"});
  Run();
  std::filesystem::remove_all(Native("Work/Doc"));
  Write("Work/doc/a.txt", "small, and not in the list");
  RunTwice();
  EXPECT_EQ(Content("Store/Doc/a.txt"), "capital");
  EXPECT_EQ(Content("Store/doc/a.txt"), "small, and not in the list");
}

TEST_P(CaseNamesTest, AnItemInAnotherCaseIsCopiedEachTimeThatItChanges) {
  Write("Work/Report.doc", "old");
  Write("Work/Sub/Doc/a.txt", "old");
  engine.settings.Entries.Assign({"C:\\WORK\\REPORT.DOC", "C:\\WORK\\SUB\\DOC\\*+++++*"});
  Run();
  Write("Work/Report.doc", "new");
  Write("Work/Sub/Doc/a.txt", "new");
  SetModified("Work/Sub/Doc/a.txt", 4102444800);
  RunTwice();
  EXPECT_EQ(Content("Store/Report.doc"), "new");
  EXPECT_EQ(Content(GetParam() == Mode::kSync ? "Store/a.txt" : "Store/Doc/a.txt"), "new");
}

TEST_P(CaseNamesTest, ItemsInAnotherCaseGoToTheirCopiesInAThird) {
  if (GetParam() == Mode::kSync) return;  // a folder goes to the location itself
  std::vector<std::string> items;
  for (const char* letter : {"A", "B"}) {
    const std::string name = letter;
    Write("Work/" + name + "-Report", "new");
    Write("Work/Sub/" + name + "-Doc/a.txt", "new");
    Write("Store/" + name + "-rEPORT", "old");
    Write("Store/" + name + "-dOC/b.txt", "old");
    items.push_back("C:\\WORK\\" + name + "-REPORT");
    items.push_back("C:\\WORK\\SUB\\" + name + "-DOC\\*+++++*");
  }
  engine.settings.Entries.Assign({items[0], items[2], items[1], items[3]});
  RunTwice();
  for (const char* letter : {"A", "B"}) {
    const std::string store = std::string("Store/") + letter;
    EXPECT_EQ(Content(store + "-rEPORT"), "new");
    EXPECT_EQ(Content(store + "-Report"), "(missing)");
    EXPECT_EQ(Content(store + "-dOC/a.txt"), "new");
    EXPECT_EQ(Content(store + "-Doc/a.txt"), "(missing)");
  }
}

TEST_P(CaseNamesTest, OfTwoItemsTheOneThatHasGoneIsNotCountedAsTheOther) {
  Write("Work/makefile", "small");
  engine.settings.Entries.Assign({"C:\\Work\\Makefile", "C:\\Work\\makefile"});
  engine.settings.AutoReport = true;
  std::int32_t total_bytes = -1;
  engine.stages.SendReport = [&](const RunFacts& facts) { total_bytes = facts.total_bytes; };
  Run();
  EXPECT_EQ(total_bytes, 5);
}

TEST_P(CaseNamesTest, AnItemInAnotherCaseIsCopiedThoughItIsInTheListTwice) {
  Write("Work/Report.doc", "report");
  engine.settings.Entries.Assign({"C:\\WORK\\REPORT.DOC", "C:\\WORK\\REPORT.DOC"});
  Run();
  EXPECT_EQ(Content("Store/Report.doc"), "report");
}

// --- folders that change while they are walked

class SwappedFolderTest : public RealRun {
 protected:
  SwappedFolderTest() {
    std::filesystem::create_directories(Native("Elsewhere/Deep"));
    for (int i = 0; i < 20; ++i) {
      Write("Work/Pair/Sub/Deep/" + std::to_string(i), "secret");
      Write("Work/Pair/" + std::to_string(i), "secret");
    }
    engine.settings.Entries.Assign({"C:\\Work\\Pair\\*+++++*"});
    engine.settings.BackupMode.Sync = true;
  }

  // Puts a link to another place where a folder is.
  void Swap(const std::string& place) {
    std::filesystem::rename(Native(place), Native("Moved"));
    std::filesystem::create_directory_symlink(Native("Elsewhere"), Native(place));
  }

  std::size_t FilesElsewhere() const {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Native("Elsewhere"))) {
      if (!entry.is_directory()) ++files;
    }
    return files;
  }
};

TEST_F(SwappedFolderTest, ALinkInPlaceOfTheTargetsFolderLeadsNothingOutOfIt) {
  std::filesystem::create_directories(Native("Store/Sub/Deep"));
  for (const int yield : {4, 10, 25, 30, 40}) {
    machine.loop.OnYield(yield, [&] {
      if (!std::filesystem::exists(Native("Moved"))) Swap("Store/Sub");
    });
    Run();
    EXPECT_TRUE(std::filesystem::is_symlink(Native("Store/Sub"))) << "it was swapped in time";
    EXPECT_EQ(FilesElsewhere(), 0U) << yield;
    std::filesystem::remove(Native("Store/Sub"));
    std::filesystem::remove_all(Native("Moved"));
    std::filesystem::remove_all(Native("Store"));
    std::filesystem::create_directories(Native("Store/Sub/Deep"));
  }
}

TEST_F(SwappedFolderTest, ALinkInPlaceOfANewFolderLeadsNothingOutOfIt) {
  // The whole of it is copied as one tree: soon after it was made.
  bool is_swapped = false;
  for (int yield = 1; yield < 60; ++yield) {
    machine.loop.OnYield(yield, [&] {
      if (is_swapped || !std::filesystem::exists(Native("Store/Sub"))) return;
      Swap("Store/Sub");
      is_swapped = true;
    });
  }
  Write("Work/Pair/Sub/a", "first");
  Write("Work/Pair/Sub/b", "second");
  Run();
  EXPECT_TRUE(is_swapped);
  EXPECT_EQ(FilesElsewhere(), 0U);
  EXPECT_EQ(Content("Moved/b"), "second") << "the folder that was begun is filled";
}

TEST_F(SwappedFolderTest, TheTwoSidesStayThoseOfTheStart) {
  machine.loop.OnYield(10, [&] { Swap("Store"); });
  Run();
  EXPECT_EQ(FilesElsewhere(), 0U);
  EXPECT_EQ(Content("Moved/19"), "secret");
  EXPECT_EQ(Content("Moved/Sub/Deep/19"), "secret");
}

TEST_F(SwappedFolderTest, NothingIsReadThroughALinkInPlaceOfTheSourcesFolder) {
  Write("Elsewhere/Deep/other", "not to be copied");
  std::filesystem::create_directories(Native("Store/Sub/Deep"));
  machine.loop.OnYield(10, [&] { Swap("Work/Pair/Sub"); });
  Run();
  EXPECT_EQ(Content("Store/Sub/Deep/other"), "(missing)");
}

// Deeper than a path of the system can be: made folder by folder.
TEST_F(SwappedFolderTest, ATreeDeeperThanAnyPathHarmsNoOther) {
  int folder_fd = ::open(Native("Work/Pair").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int depth = 0; depth < 2100; ++depth) {
    ASSERT_EQ(::mkdirat(folder_fd, "d", 0700), 0);
    const int inner = ::openat(folder_fd, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::close(folder_fd);
    folder_fd = inner;
  }
  ::close(folder_fd);
  Write("Work/Pair/z/last", "last");
  Run();
  EXPECT_EQ(Content("Store/z/last"), "last");
  Run();
  EXPECT_EQ(Content("Store/z/last"), "last");
}

// --- random trees

// Two drives of the test machine: one of them, or both, take all cases for one.
class FakeWorld : public World {
 public:
  FakeWorld(bool work_keeps_apart, bool store_keeps_apart)
      : keeps_apart_{work_keeps_apart, store_keeps_apart} {
    for (const char* drive : {"W", "S"}) machine_.files.AddDrive(drive);
    if (work_keeps_apart) machine_.files.DistinguishCase("W");
    if (store_keeps_apart) machine_.files.DistinguishCase("S");
  }
  void Put(const std::string& side, const std::string& path, const Held& file) override {
    machine_.files.Write(PathOf(side, path), file.content);
    machine_.files.SetModified(PathOf(side, path), file.modified_s);
  }
  Tree Read(const std::string& side) override {
    Tree tree;
    ReadInto(tree, side, "");
    return tree;
  }
  void Run(Mode mode) override { sync_.SyncFolders("W:\\", "S:\\", mode == Mode::kSync); }
  void Remove(const std::string& side, const std::string& path) override {
    machine_.files.Remove(PathOf(side, path));
  }
  std::string Fold(const std::string& path) override {
    FakeNode both;
    both.keeps_case_apart = keeps_apart_[0] && keeps_apart_[1];
    return EachName(path, [&](const std::string& name) {
      return both.keeps_case_apart ? FoldedName(name) : both.KeyOf(name);
    });
  }
  bool DistinguishesCase(const std::string& side) override {
    return keeps_apart_[side == "Work" ? 0 : 1];
  }

 private:
  static Path PathOf(const std::string& side, std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return (side == "Work" ? "W:\\" : "S:\\") + path;
  }
  void ReadInto(Tree& tree, const std::string& side, const std::string& below) {
    const FolderContents contents = machine_.files.OpenFolder(PathOf(side, below))->Contents();
    for (const FolderEntry& file : contents.files) {
      const std::string path = below + file.name;
      tree[path] = {machine_.files.Content(PathOf(side, path)), file.modified_s};
    }
    for (const std::string& name : contents.folders) ReadInto(tree, side, below + name + "/");
  }

  bool keeps_apart_[2];
  FakeMachine machine_;
  FileSync sync_{machine_.files, machine_.loop};
};

TEST(CaseModelTest, NothingVanishesOnTheRealHost) {
  CheckSequences(25, [] { return std::make_unique<RealWorld>(); });
}

TEST(CaseModelTest, NothingVanishesOnAMediumThatTakesAllCasesForOne) {
  CheckSequences(300, [] { return std::make_unique<FakeWorld>(true, false); });
}

TEST(CaseModelTest, NothingVanishesFromSuchAMediumToOneThatDistinguishesThem) {
  CheckSequences(300, [] { return std::make_unique<FakeWorld>(false, true); });
}

TEST(CaseModelTest, TheFakeThatDistinguishesThemIsAsStrictAsTheHost) {
  CheckSequences(300, [] { return std::make_unique<FakeWorld>(true, true); });
}

}  // namespace
}  // namespace tarnvale::testing
