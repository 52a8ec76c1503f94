// File and folder dialogs that are answered by script.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "tests/support/manual_loop.h"
#include "tests/support/scripted_answers.h"
#include "ui/dialogs.h"

namespace tarnvale::testing {

/// A dialog that nobody announced fails the test, and so does an answer that
/// was never used. Each dialog yields once before it is answered.
class FakeDialogs : public FileDialogs {
 public:
  enum class Kind { kOpen, kSave, kFolder };
  struct Shown {
    Kind kind;
    FileDialogRecord file;      ///< as it was given, of the first two kinds
    FolderDialogRecord folder;  ///< as it was given, of the last
  };

  explicit FakeDialogs(ManualLoop& loop) : scripts_(loop) {}
  ~FakeDialogs() override;

  /// The next dialog, of this kind, is confirmed with the path.
  void Choose(Kind kind, Path path) { scripts_.Add({kind, std::move(path)}); }
  /// The next dialog, of this kind, is cancelled.
  void Cancel(Kind kind) { scripts_.Add({kind, std::nullopt}); }
  /// Runs `action` while the next dialog is open.
  void WhileOpen(std::function<void()> action) { scripts_.WhileOpen(std::move(action)); }

  /// All dialogs so far, the unexpected ones included.
  const std::vector<Shown>& Seen() const { return shown_; }

  bool ShowOpen(FileDialogRecord& record) override;
  bool ShowSave(FileDialogRecord& record) override;
  std::optional<Path> BrowseForFolder(const FolderDialogRecord& record) override;

 private:
  struct Script {
    Kind kind;
    std::optional<Path> answer;
  };

  bool ChooseFile(Kind kind, FileDialogRecord& record);
  std::optional<Path> AnswerOf(Kind kind);

  ScriptedAnswers<Script> scripts_;
  std::vector<Shown> shown_;
};

}  // namespace tarnvale::testing
