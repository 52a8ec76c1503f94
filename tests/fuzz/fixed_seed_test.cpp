// A short pass of what the fuzzers do, the same at every run.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/codec/generated_inputs.h"
#include "tests/fuzz/fuzz_targets.h"

namespace tarnvale::testing {
namespace {

// Changes some bytes, cuts some off, repeats some.
Bytes Damage(Bytes bytes, Numbers& numbers) {
  for (std::size_t hits = 1 + numbers.Below(6); hits > 0 && !bytes.empty(); --hits) {
    const std::size_t at = numbers.Below(bytes.size());
    switch (numbers.Below(4)) {
      case 0:
        bytes[at] = static_cast<std::uint8_t>(numbers.Below(256));
        break;
      case 1:
        bytes[at] ^= static_cast<std::uint8_t>(1U << numbers.Below(8));
        break;
      case 2:
        bytes.resize(at + 1);
        break;
      default:
        bytes.insert(bytes.end(), bytes[at]);
        bytes[at] = static_cast<std::uint8_t>(numbers.Below(3) == 0 ? 0xFF : numbers.Below(4));
    }
  }
  return bytes;
}

void RunSeeds(const std::vector<Bytes>& seeds, int times,
              const std::function<void(std::span<const std::uint8_t>)>& target) {
  Numbers numbers(2008);
  for (const Bytes& seed : seeds) target(seed);
  for (int i = 0; i < times; ++i) target(Damage(seeds[numbers.Below(seeds.size())], numbers));
}

TEST(FixedSeedTest, AnyStreamDecodesAsPlainly) {
  std::vector<Bytes> seeds;
  for (std::size_t length : {2U, 11U, 100U, 1500U, 4000U}) {
    seeds.push_back(EncodePlainly(ProseInput(length, length)).bytes);
    seeds.push_back(EncodePlainly(GenerateInput(length, length, 256)).bytes);
  }
  seeds.push_back(EncodePlainly(FibonacciInput(18)).bytes);
  RunSeeds(seeds, 20000, FuzzDecoding);
}

TEST(FixedSeedTest, AnyInputEncodesAsPlainlyAndComesBack) {
  RunSeeds({ProseInput(1, 50), ProseInput(2, 3000), FibonacciInput(14), TiedInput(3, 256, 2)}, 3000,
           FuzzRoundTrip);
}

TEST(FixedSeedTest, AnyContainerIsReadOrRefused) {
  const Bytes two{2,   0,   0,    0,   1,   0,   'a', 2, 0, 0, 0,   'h', 'i', 7,   0,  's',
                  'u', 'b', '\\', 'b', '.', 'c', 5,   0, 0, 0, 'h', 'e', 'l', 'l', 'o'};
  const Bytes outside{1, 0, 0, 0, 4, 0, '.', '.', '\\', 'x', 1, 0, 0, 0, 'y'};
  const Bytes none{0, 0, 0, 0};
  RunSeeds({two, outside, none}, 3000, FuzzContainer);
}

Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

TEST(FixedSeedTest, AnyPointerFileNamesItsFirstItem) {
  std::string deep = "C:\\";
  for (int i = 0; i < 30000; ++i) deep += "a\\";
  RunSeeds(
      {BytesOf("\"C:\\Data\"\r\n"), BytesOf(" \tC:\\Data, more\n"), BytesOf("\"C:\\a, b\" c\r\n"),
       BytesOf("\\\\server\\share"), BytesOf(deep), BytesOf("C:\\DATA\\..\\data\\."), BytesOf(""),
       BytesOf("\xEF\xBB\xBF\xEF\xBB\xBF C:\\"), BytesOf(" \"\xEF\xBB\xBF C:\\\"")},
      3000, FuzzPointerFile);
}

TEST(FixedSeedTest, AnySettingsFileIsLoadedChangedAndSaved) {
  RunSeeds(
      {BytesOf(
           "When\nEach\n01:30\n[When]\r\nEach=00:10\r\nDays=62\r\n[Entries]\r\n0=C:\\a\r\n1=b\r\n"),
       BytesOf("Log\nSave\n \"True\" \n; words\n[log]\nSAVE = 'False'\n\n[Log]\nSave=x"),
       BytesOf("a\nb\n\n\xEF\xBB\xBF[ a ]\n=\n[\n]\nb==\n")},
      3000, FuzzSettings);
}

TEST(FixedSeedTest, AnyMailServerGetsTheMailOrItsBeginning) {
  const Bytes greets_and_ends{2, 4, 3, '2', '2', '0', 8, 1, 4, 2, 'o', 'k', 3, 11, 255, 11, 255, 9};
  const Bytes resets_late{1, 12, 5, '2', '2', '0', '\r', '\n', 1, 0x2A};
  const Bytes floods{3, 3, 255, 3, 255, 11, 255, 3, 3, 255, 3, 255, 3, 255};
  RunSeeds({greets_and_ends, resets_late, floods, BytesOf("\2\4\6hello \1\14\4more\3\4\1x")}, 1500,
           FuzzMailServer);
}

// Texts as a script has them.
Bytes Said(Bytes bytes, const std::vector<std::string_view>& texts) {
  for (const std::string_view text : texts) {
    bytes.push_back(static_cast<std::uint8_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
  }
  return bytes;
}

TEST(FixedSeedTest, AnyNameIsSplitAndAnyPartsAreJoined) {
  const std::string_view content = "what is cut into parts of some bytes each";
  std::vector<Bytes> seeds;
  for (const std::uint8_t damage : {0, 1, 10, 19, 12, 5}) {
    Bytes seed = Said({}, {"file.tvz"});
    const Bytes sizes{9, 0, damage};
    seed.insert(seed.end(), sizes.begin(), sizes.end());
    seeds.push_back(Said(seed, {"FILE.tvz.002", content, content}));
  }
  RunSeeds(seeds, 500, FuzzParts);
}

TEST(FixedSeedTest, AnyPathFromADialogChangesNoMoreThanWasChosen) {
  std::vector<Bytes> seeds;
  for (const std::uint8_t command : {0, 1, 2, 3, 4, 5}) {
    seeds.push_back(Said({command}, {"C:\\Archives\\Tree.tvz", "C:\\Out"}));
    seeds.push_back(Said({command}, {"C:\\Tree", "C:\\Archives\\new.tvz"}));
    seeds.push_back(Said({command}, {"\\..\\outside", "D:\\x\\*.*"}));
  }
  RunSeeds(seeds, 200, FuzzDialogs);
}

TEST(FixedSeedTest, AnyFtpServerLeavesTheOldFileOrSendsTheNewOne) {
  std::vector<Bytes> seeds;
  for (const std::uint8_t command : {1, 2, 3}) {
    // AUTH twice, USER, PASS, PWD; EPSV, TYPE, the command, its data and end; QUIT.
    const Bytes well{command, 1, 1, 1, 1, 1, 1, 2, 1, 6, 3, 'n', 'e', 'w', 20, 1};
    const Bytes breaks_data{command, 1, 1, 1, 1, 1, 1, 2, 1, 3, 3, 'n', 'e', 'w', 20};
    const Bytes encrypted{command, 1, 38, 4, 5, 'n', 'o', 'p', 'e', '\n', 1, 1, 1};
    const Bytes odd{command, 0, 7, '2', '2', '0', ' ', 'h', 'i',
                    '\n',    1, 1, 1,   4,   3,   '2', '5', '7'};
    seeds.insert(seeds.end(), {well, breaks_data, encrypted, odd});
  }
  RunSeeds(seeds, 40, FuzzFtpServer);
}

struct Door {
  std::string name;
  std::function<void(std::span<const std::uint8_t>)> target;
};

std::string KeptFor(const std::string& door) {
  return std::string(FUZZ_CORPORA "/") + door + ".txt";
}

Bytes BytesOfHexadecimal(const std::string& line) {
  Bytes bytes(line.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char* const digits = line.data() + 2 * i;
    const auto read = std::from_chars(digits, digits + 2, bytes[i], 16);
    EXPECT_EQ(read.ptr, digits + 2) << line;
  }
  return bytes;
}

class KeptInputsTest : public ::testing::TestWithParam<Door> {
 public:
  static const std::vector<Door>& Doors() {
    static const std::vector<Door> doors{
        {"container", FuzzContainer},      {"decoding", FuzzDecoding},
        {"dialogs", FuzzDialogs},          {"ftp_server", FuzzFtpServer},
        {"mail_server", FuzzMailServer},   {"parts", FuzzParts},
        {"pointer_file", FuzzPointerFile}, {"round_trip", FuzzRoundTrip},
        {"settings", FuzzSettings}};
    return doors;
  }
};

TEST_P(KeptInputsTest, EachHoldsWhatItMust) {
  std::ifstream kept(KeptFor(GetParam().name));
  int count = 0;
  for (std::string line; std::getline(kept, line); ++count) {
    GetParam().target(BytesOfHexadecimal(line));
  }
  EXPECT_GT(count, 0);
}

INSTANTIATE_TEST_SUITE_P(EachDoor, KeptInputsTest, ::testing::ValuesIn(KeptInputsTest::Doors()),
                         [](const auto& door) { return door.param.name; });

TEST(KeptInputs, NoneAreKeptThatNobodyReplays) {
  std::set<std::string> kept;
  for (const auto& file : std::filesystem::directory_iterator(FUZZ_CORPORA)) {
    kept.insert(file.path());
  }
  std::set<std::string> replayed;
  for (const Door& door : KeptInputsTest::Doors()) replayed.insert(KeptFor(door.name));
  EXPECT_EQ(kept, replayed);
}

}  // namespace
}  // namespace tarnvale::testing
