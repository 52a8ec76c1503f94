// What a check finds, file by file.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnvale {

enum class State { kSame, kMissing, kOlder, kDifferent, kPassedOver, kUnreadable };
inline constexpr std::size_t kStates = 6;

/// Why the program doesn't copy a file, or doesn't any more.
enum class Rule {
  kNone,
  kBeyondTheList,
  kBesideAFolder,
  kRowTaken,
  kNameTaken,
  kFivePluses,
  kHidden,
  kName,
  kSpecial,
  kStorage,
  kNewerCopy,
  kReadOnlyCopy,
  kUnchanged,
  kNotPacked,
  kPackedHidden,
  kPackedLink,
  kPackedName,
  kEmptyFolder,
};

/// A name for scripts, and the words for people.
struct RuleText {
  const char* name;
  const char* words;
};
RuleText TextOf(Rule rule);
const char* NameOf(State state);

struct Finding {
  State state;
  std::string source;  ///< native
  std::string copy;    ///< native, or an archive's entry; empty when there is none to look at
  Rule rule = Rule::kNone;
  std::string reason = {};  ///< what the system says
};

class Findings {
 public:
  /// Those that are the same are only counted.
  void Add(Finding finding);

  const std::vector<Finding>& Others() const { return others_; }
  std::int64_t Count(State state) const { return counts_[static_cast<std::size_t>(state)]; }
  /// True when all that the rules copy is there and current.
  bool AllGood() const;

 private:
  std::vector<Finding> others_;
  std::array<std::int64_t, kStates> counts_{};
};

}  // namespace tarnvale
