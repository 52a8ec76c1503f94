#include "tvcheck/findings.h"

#include <utility>

#include "native/native_file.h"

namespace tarnvale {
namespace {

constexpr const char* kNoSuchName = kSeparator == '/' ? "no path can hold a backslash or a star"
                                                      : "no path leads to such a name here";

}  // namespace

RuleText TextOf(Rule rule) {
  switch (rule) {
    case Rule::kNone:
      return {"", ""};
    case Rule::kBeyondTheList:
      return {"beyond-the-list", "a run looks at no more rows than the list has items, and 3"};
    case Rule::kBesideAFolder:
      return {"beside-a-folder", "its row falls to an item that is a whole folder"};
    case Rule::kRowTaken:
      return {"row-taken", "another item takes its row"};
    case Rule::kNameTaken:
      return {"name-taken", "a later file of the list has the same name"};
    case Rule::kFivePluses:
      return {"five-pluses", "five plus signs make a whole folder of it"};
    case Rule::kHidden:
      return {"hidden", "the files of a folder don't include hidden ones"};
    case Rule::kName:
      return {"name", kNoSuchName};
    case Rule::kSpecial:
      return {"special", "devices, sockets and pipes are never copied"};
    case Rule::kStorage:
      return {"storage-location", "what lies in the storage location isn't copied into it"};
    case Rule::kNewerCopy:
      return {"newer-copy", "the copy is newer, and stays"};
    case Rule::kReadOnlyCopy:
      return {"read-only-copy", "the copy is read-only, and isn't replaced"};
    case Rule::kUnchanged:
      return {"unchanged", "it counts as backed up until it changes"};
    case Rule::kNotPacked:
      return {"not-packed", "an archive takes no more than 32,768 files of a folder in it"};
    case Rule::kPackedHidden:
      return {"not-packed-hidden", "archives have no hidden files, and nothing in hidden folders"};
    case Rule::kPackedLink:
      return {"not-packed-link", "archives have no links that lead nowhere, or to folders"};
    case Rule::kPackedName:
      return {"not-packed-name", "archives have no names like that of a drive"};
    case Rule::kEmptyFolder:
      return {"empty-folder", "archives have no empty folders"};
  }
  return {"", ""};
}

const char* NameOf(State state) {
  switch (state) {
    case State::kSame:
      return "same";
    case State::kMissing:
      return "missing";
    case State::kOlder:
      return "older";
    case State::kDifferent:
      return "different";
    case State::kPassedOver:
      return "passed over";
    case State::kUnreadable:
      return "unreadable";
  }
  return "";
}

void Findings::Add(Finding finding) {
  ++counts_[static_cast<std::size_t>(finding.state)];
  if (finding.state != State::kSame) others_.push_back(std::move(finding));
}

bool Findings::AllGood() const {
  return Count(State::kMissing) + Count(State::kOlder) + Count(State::kDifferent) +
             Count(State::kUnreadable) ==
         0;
}

}  // namespace tarnvale
