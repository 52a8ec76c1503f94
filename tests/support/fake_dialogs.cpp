#include "tests/support/fake_dialogs.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/characters.h"
#include "base/text.h"

namespace tarnvale::testing {
namespace {

const char* NameOf(FakeDialogs::Kind kind) {
  switch (kind) {
    case FakeDialogs::Kind::kOpen:
      return "open dialog";
    case FakeDialogs::Kind::kSave:
      return "save dialog";
    case FakeDialogs::Kind::kFolder:
      return "folder dialog";
  }
  return "dialog";
}

// False when the text doesn't fit.
bool Fill(std::string& buffer, const std::string& text) {
  const std::size_t size = CountCharacters(buffer);
  if (CountCharacters(text) >= size) return false;
  buffer = PaddedWithNuls(text, size);
  return true;
}

}  // namespace

FakeDialogs::~FakeDialogs() {
  for (const Script& script : scripts_.Left()) {
    ADD_FAILURE() << "a dialog that was expected never came: " << NameOf(script.kind);
  }
}

bool FakeDialogs::ShowOpen(FileDialogRecord& record) {
  return ChooseFile(Kind::kOpen, record);
}

bool FakeDialogs::ShowSave(FileDialogRecord& record) {
  return ChooseFile(Kind::kSave, record);
}

std::optional<Path> FakeDialogs::BrowseForFolder(const FolderDialogRecord& record) {
  shown_.push_back({Kind::kFolder, {}, record});
  return AnswerOf(Kind::kFolder);
}

bool FakeDialogs::ChooseFile(Kind kind, FileDialogRecord& record) {
  shown_.push_back({kind, record, {}});
  const std::optional<Path> answer = AnswerOf(kind);
  return answer && Fill(record.file, *answer) && Fill(record.file_title, FileNameOf(*answer));
}

std::optional<Path> FakeDialogs::AnswerOf(Kind kind) {
  const std::optional<Script> script = scripts_.Next();
  if (!script || script->kind != kind) {
    ADD_FAILURE() << "unexpected " << NameOf(kind);
    return std::nullopt;
  }
  return script->answer;
}

}  // namespace tarnvale::testing
