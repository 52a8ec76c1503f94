// Whole runs from and to a medium that takes names for one that differ.
#include "tests/support/folding_medium.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <memory>

#include "codec/archive.h"
#include "tests/runs/case_model.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class FoldingRun : public RealRun {
 protected:
  void FoldOn(const std::string& side) {
    ::setenv(kFoldingMedium, Native(side).c_str(), 1);
    // Nothing here means anything without it.
    const int made = ::open(Native(side + "/Probe.").c_str(), O_WRONLY | O_CREAT, 0666);
    ::close(made);
    struct stat info {};
    EXPECT_EQ(::stat(Native(side + "/PROBE").c_str(), &info), 0) << "the calls aren't replaced";
    std::filesystem::remove(Native(side + "/Probe"));
  }
  ~FoldingRun() override { ::unsetenv(kFoldingMedium); }

  std::vector<std::string> NamesIn(const std::string& path) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Native(path))) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

// Two names that are one here; the first comes first in every listing.
struct Alike {
  const char* about;
  const char* first;
  const char* second;
  const char* kept;  ///< the first, as it is kept
};

class AlikeNamesTest : public FoldingRun,
                       public ::testing::WithParamInterface<std::tuple<Mode, Alike>> {
 protected:
  AlikeNamesTest() { Choose(engine.settings, std::get<0>(GetParam())); }

  bool IsSync() const { return std::get<0>(GetParam()) == Mode::kSync; }
  /// Where the files of `Work/Src` go.
  std::string Store() const { return IsSync() ? "Store/" : "Store/Src/"; }
  const std::string first = std::get<1>(GetParam()).first;
  const std::string second = std::get<1>(GetParam()).second;
  const std::string kept = std::get<1>(GetParam()).kept;
};

INSTANTIATE_TEST_SUITE_P(
    Modes, AlikeNamesTest,
    ::testing::Combine(::testing::Values(Mode::kComplete, Mode::kIncremental, Mode::kSync),
                       ::testing::Values(Alike{"Case", "Makefile", "makefile", "Makefile"},
                                         Alike{"Point", "2024", "2024.", "2024"},
                                         Alike{"Blank", "Inc", "Inc ", "Inc"},
                                         // It is made under the name of the second.
                                         Alike{"Accent", "u\xCC\x88", "ü", "ü"})),
    [](const auto& test) {
      return NameOfMode({std::get<0>(test.param), 0}) + std::get<1>(test.param).about;
    });

TEST_P(AlikeNamesTest, TheFirstFileStaysAndTheSecondIsPassedOver) {
  FoldOn("Store");
  Write("Work/Src/" + first, "the first");
  SetModified("Work/Src/" + first, kNoon);
  Write("Work/Src/" + second, "the second");
  SetModified("Work/Src/" + second, kNoon + 10);
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*+++++*"});
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(Content("Work/Src/" + first), "the first");
    EXPECT_EQ(Content("Work/Src/" + second), "the second");
    EXPECT_THAT(NamesIn(Store()), ElementsAre(kept));
    // Where it is kept under the name of the second, that one is the exact one next time.
    EXPECT_EQ(Content(Store() + kept), run > 0 && kept == second ? "the second" : "the first");
  }
}

TEST_P(AlikeNamesTest, FoldersAreNotMerged) {
  FoldOn("Store");
  Write("Work/Src/" + first + "/a", "the first");
  Write("Work/Src/" + second + "/b", "the second");
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*+++++*"});
  Run();
  EXPECT_THAT(NamesIn(Store()), ElementsAre(kept));
  EXPECT_THAT(NamesIn(Store() + kept), ElementsAre("a"));
  EXPECT_THAT(NamesIn("Work/Src/" + first), ElementsAre("a"));
  EXPECT_THAT(NamesIn("Work/Src/" + second), ElementsAre("b"));
  if (kept == second) return;  // it takes the other's place in the next run
  Run();
  EXPECT_THAT(NamesIn(Store() + kept), ElementsAre("a"));
  EXPECT_THAT(NamesIn("Work/Src/" + second), ElementsAre("b"));
}

TEST_P(AlikeNamesTest, ALoneFileAndALoneFolderStayInStep) {
  FoldOn("Store");
  Write("Work/Src/Sub/" + second, "old");
  Write("Work/Src/" + second + "/a", "old");
  engine.settings.Entries.Assign({"C:\\Work\\Src\\*+++++*"});
  Run();
  for (int run = 1; run <= 2; ++run) {
    const std::string now = "now " + std::to_string(run);
    for (const std::string& file : {"Sub/" + second, second + "/a"}) {
      Write("Work/Src/" + file, now);
      SetModified("Work/Src/" + file, 4102444800 + run);
    }
    Run();
    ASSERT_EQ(NamesIn(Store() + "Sub").size(), 1U);
    EXPECT_EQ(Content(Store() + "Sub/" + NamesIn(Store() + "Sub").front()), now);
    ASSERT_EQ(NamesIn(Store()).size(), 2U);
    std::filesystem::remove_all(Native(Store() + "Sub"));
    EXPECT_EQ(Content(Store() + NamesIn(Store()).front() + "/a"), now);
    EXPECT_THAT(NamesIn("Work/Src/Sub"), ElementsAre(second)) << "nothing comes back as a twin";
    EXPECT_THAT(NamesIn("Work/Src"), UnorderedElementsAre("Sub", second));
  }
}

TEST_P(AlikeNamesTest, OfTwoSingleFilesTheFirstStays) {
  FoldOn("Store");
  Write("Work/One/" + first, "the first");
  Write("Work/Two/" + second, "the second");
  engine.settings.Entries.Assign({"C:\\Work\\One\\" + first, "C:\\Work\\Two\\" + second});
  Run();
  EXPECT_THAT(NamesIn("Store"), ElementsAre(kept));
  EXPECT_EQ(Content("Store/" + kept), "the first");
  if (std::get<0>(GetParam()) == Mode::kIncremental) {
    EXPECT_EQ(AttributesOf("C:\\Work\\One\\" + first) & attribute::kArchive, 0);
    EXPECT_EQ(AttributesOf("C:\\Work\\Two\\" + second) & attribute::kArchive, attribute::kArchive);
  }
}

TEST_P(AlikeNamesTest, ALoneSingleFileIsReplaced) {
  FoldOn("Store");
  Write("Work/" + second, "old");
  engine.settings.Entries.Assign({"C:\\Work\\" + second});
  Run();
  Write("Work/" + second, "new");
  Run();
  ASSERT_EQ(NamesIn("Store").size(), 1U);
  EXPECT_EQ(Content("Store/" + NamesIn("Store").front()), "new");
}

TEST_P(AlikeNamesTest, TheComputersOwnFileIsNotReplacedByATwinOfTheStorage) {
  FoldOn("Work");
  const int made = ::open(Native("Work/" + first).c_str(), O_WRONLY | O_CREAT, 0666);
  ASSERT_EQ(::write(made, "own", 3), 3);
  ::close(made);
  SetModified("Work/" + first, kNoon);
  // Newer, both: what is exactly of this name is its partner, the other is not.
  const std::string other = kept == first ? second : first;
  Write("Store/" + kept, "partner");
  Write("Store/" + other, "twin");
  SetModified("Store/" + kept, kNoon + 10);
  SetModified("Store/" + other, kNoon + 20);
  engine.settings.Entries.Assign({"C:\\Work\\*+++++*"});
  for (int run = 0; run < 2; ++run) {
    Run();
    EXPECT_THAT(NamesIn("Work"), ElementsAre(kept));
    EXPECT_EQ(Content("Work/" + kept), IsSync() ? "partner" : "own");
    EXPECT_EQ(Content("Store/" + other), "twin");
  }
}

TEST_P(AlikeNamesTest, ATreeThatIsCopiedKeepsTheFirstOfEach) {
  FoldOn("Store");
  Write("Work/" + first, "the first");
  Write("Work/" + second, "the second");
  Write("Work/Sub/" + first + "/a", "the first");
  Write("Work/Sub/" + second + "/a", "the second");
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(RaisedBy([&] { system.files.CopyTree("C:\\Work", "C:\\Store\\New", [] {}); }),
              kFileAlreadyExists);
    EXPECT_THAT(NamesIn("Store/New"), UnorderedElementsAre("Sub", kept));
    EXPECT_THAT(NamesIn("Store/New/Sub"), ElementsAre(kept));
    const char* const expected = time > 0 && kept == second ? "the second" : "the first";
    EXPECT_EQ(Content("Store/New/" + kept), expected);
    EXPECT_EQ(Content("Store/New/Sub/" + kept + "/a"), expected);
  }
}

TEST_P(AlikeNamesTest, UnpackingKeepsTheFirstOfEachAndReplacesALoneOne) {
  FoldOn("Store");
  Write("Work/" + first, "the first");
  Write("Work/" + second, "the second");
  Write("Work/" + first + "s/a", "the first");
  Write("Work/Lone/" + second, "old");
  usercontrol11 archives(interfaces);
  archives.SaveFilesToArchiv("C:\\Work", "C:\\Data\\a.tvz", false);
  archives.ExtractFilesFromArchiv("C:\\Data\\a.tvz", "C:\\Store", false);
  EXPECT_EQ(Content("Store/" + kept), "the first");
  Write("Work/Lone/" + second, "new");
  archives.SaveFilesToArchiv("C:\\Work", "C:\\Data\\a.tvz", false);
  archives.ExtractFilesFromArchiv("C:\\Data\\a.tvz", "C:\\Store", false);
  ASSERT_EQ(NamesIn("Store/Lone").size(), 1U);
  EXPECT_EQ(Content("Store/Lone/" + NamesIn("Store/Lone").front()), "new");
  EXPECT_EQ(NamesIn("Store").size(), 3U);
}

TEST_P(AlikeNamesTest, UnpackedFoldersAreNotMerged) {
  FoldOn("Store");
  Write("Work/" + first + "/a", "the first");
  Write("Work/" + second + "/b", "the second");
  usercontrol11 archives(interfaces);
  archives.SaveFilesToArchiv("C:\\Work", "C:\\Data\\a.tvz", false);
  archives.ExtractFilesFromArchiv("C:\\Data\\a.tvz", "C:\\Store", false);
  EXPECT_THAT(NamesIn("Store"), ElementsAre(kept));
  EXPECT_THAT(NamesIn("Store/" + kept), ElementsAre("a"));
}

class FoldingUnpackingTest : public FoldingRun {};

TEST_F(FoldingUnpackingTest, AFileStandsForOneEntryOnly) {
  FoldOn("Store");
  // Only the medium knows the first one by the file's name, letters tell it of the second.
  Write("Work/u\xCC\x88", "the first");
  Write("Work/Ü", "the second");
  Write("Store/ü", "old");
  usercontrol11 archives(interfaces);
  archives.SaveFilesToArchiv("C:\\Work", "C:\\Data\\a.tvz", false);
  archives.ExtractFilesFromArchiv("C:\\Data\\a.tvz", "C:\\Store", false);
  EXPECT_THAT(NamesIn("Store"), ElementsAre("ü"));
  EXPECT_EQ(Content("Store/ü"), "the first");
}

class FoldingCostTest : public FoldingRun {};

TEST_F(FoldingCostTest, AFolderIsNotReadAnewForEachFileThatIsReplaced) {
  FoldOn("Store");
  engine.settings.BackupMode.Complete = true;
  const auto reads_of_a_run = [&](int files, int time) {
    std::vector<std::string> entries;
    for (int i = 0; i < files; ++i) {
      const std::string name = "File" + std::to_string(i);
      for (const std::string& path : {"Work/Src/" + name, "Work/Single/" + name}) {
        Write(path, "now " + std::to_string(time));
        SetModified(path, kNoon + time);
      }
      entries.push_back("C:\\Work\\Single\\" + name);
    }
    entries.push_back("C:\\Work\\Src\\*+++++*");
    engine.settings.Entries.Assign(entries);
    const long before = FoldersRead();
    Run();
    return FoldersRead() - before;
  };
  reads_of_a_run(40, 0);
  const long few = reads_of_a_run(10, 1);
  const long many = reads_of_a_run(40, 2);
  EXPECT_EQ(Content("Store/File39"), "now 2");
  EXPECT_EQ(Content("Store/Src/File39"), "now 2");
  EXPECT_EQ(few, many);
}

// --- random trees

// The real host, with one side on such a medium.
class FoldingWorld : public RealWorld {
 public:
  explicit FoldingWorld(std::string folding) : folding_(std::move(folding)) {
    ::setenv(kFoldingMedium, Native(folding_).c_str(), 1);
  }
  ~FoldingWorld() override { ::unsetenv(kFoldingMedium); }
  std::string Fold(const std::string& path) override { return EachName(path, &FoldedOnMedium); }
  bool DistinguishesCase(const std::string& side) override { return side != folding_; }

 private:
  std::string folding_;
};

TEST(FoldingModelTest, NothingVanishesOnTheStorage) {
  CheckSequences(25, [] { return std::make_unique<FoldingWorld>("Store"); });
}

TEST(FoldingModelTest, NothingVanishesOnTheComputer) {
  CheckSequences(25, [] { return std::make_unique<FoldingWorld>("Work"); });
}

}  // namespace
}  // namespace tarnvale::testing
