#include "hosts/qt/peers/memo_peer.h"

#include <QScopedValueRollback>
#include <QTextBlock>

#include <algorithm>
#include <functional>

#include "hosts/qt/peers/dropped_files.h"
#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

/// The record's text counts "\r\n" as two, a document counts it as one.
QString ToDocument(std::string_view text) {
  return WithPlainLineEnds(ToQt(text));
}

std::string FromDocument(QString text) {
  return FromQt(text.replace(QLatin1Char('\n'), QLatin1String("\r\n")));
}

class MemoEdit final : public QPlainTextEdit {
 public:
  explicit MemoEdit(QWidget& parent) : QPlainTextEdit(&parent) {}

  std::function<void(const QStringList& files)> on_files;

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override {
    return source->hasUrls() ? static_cast<bool>(on_files)
                             : QPlainTextEdit::canInsertFromMimeData(source);
  }
  void dropEvent(QDropEvent* event) override {
    if (!AnswerFileDrag(*event, static_cast<bool>(on_files))) {
      QPlainTextEdit::dropEvent(event);
    } else if (on_files) {
      on_files(FilesOf(*event));
    }
  }
};

}  // namespace

MemoPeer::MemoPeer(PeerContext& context, TextBox& box, QWidget& parent)
    : Peer(context, box), box_(box) {
  auto* edit = new MemoEdit(parent);
  edit_ = edit;
  edit_->setTabChangesFocus(true);
  edit_->setFont(box_.FixedWidth ? FixedWidthFont(9) : FontOf(TextRole::kBody));
  edit_->setReadOnly(box_.ReadOnly);
  edit_->setUndoRedoEnabled(!box_.ReadOnly);
  if (box_.AcceptsFiles) {
    edit->on_files = [this](const QStringList& files) {
      const std::vector<Path> paths = ProgramPathsOf(files, context_);
      Report([&] { box_.FilesDropped.Emit(paths); });
    };
  }
  ShowText();
  Follow(box_.Text.Changed(), [this] { ShowText(); });
  Follow(box_.Appended, [this](const std::string& text) {
    appended_ += text;
    RequestFrame();
  });
  Follow(box_.Selection.Changed, [this] { ShowSelection(); });
  Follow(box_.ReadOnly.Changed, [this] {
    edit_->setReadOnly(box_.ReadOnly);
    edit_->setUndoRedoEnabled(!box_.ReadOnly);
  });
  connect(edit_, &QPlainTextEdit::textChanged, this, [this] { ReportText(); });
  connect(edit_, &QPlainTextEdit::cursorPositionChanged, this, [this] { ReportSelection(); });
  connect(edit_, &QPlainTextEdit::selectionChanged, this, [this] { ReportSelection(); });
  Adopt(edit_);
}

void MemoPeer::ShowText() {
  if (is_showing_) return;
  const QScopedValueRollback showing(is_showing_, true);
  appended_.clear();
  edit_->setPlainText(ToDocument(box_.Text.Get()));
}

void MemoPeer::OnFrame() {
  const QScopedValueRollback showing(is_showing_, true);
  // A line end whose two halves come apart is still one.
  const bool waits = !appended_.empty() && appended_.back() == '\r';
  if (waits) appended_.pop_back();
  QTextCursor end(edit_->document());
  end.movePosition(QTextCursor::End);
  end.insertText(ToDocument(appended_));
  appended_ = waits ? "\r" : "";
  edit_->setTextCursor(end);
  edit_->ensureCursorVisible();
}

void MemoPeer::ShowSelection() {
  if (is_showing_) return;
  const QScopedValueRollback showing(is_showing_, true);
  const std::string& text = box_.Text.Get();
  const TextSelection& selection = box_.Selection.Get();
  const auto position = [&](std::size_t bytes) {
    return static_cast<int>(
        ToDocument(std::string_view(text).substr(0, std::min(bytes, text.size()))).size());
  };
  QTextCursor cursor(edit_->document());
  cursor.setPosition(position(selection.start));
  cursor.setPosition(position(selection.start + selection.length), QTextCursor::KeepAnchor);
  edit_->setTextCursor(cursor);
}

void MemoPeer::ReportText() {
  if (is_showing_) return;
  // What is still to be appended is part of the record's text already.
  context_.frames.Hurry(*this);
  const std::string text = FromDocument(edit_->toPlainText());
  {
    const QScopedValueRollback showing(is_showing_, true);
    Report([&] { box_.Text = text; });
  }
  if (!context_.ending && box_.Text.Get() != text) ShowText();
}

void MemoPeer::ReportSelection() {
  if (is_showing_) return;
  const QScopedValueRollback showing(is_showing_, true);
  const QTextCursor cursor = edit_->textCursor();
  const QString text = edit_->toPlainText();
  const auto bytes = [&](int position) {
    const QString before = text.left(position);
    return FromQt(before).size() + static_cast<std::size_t>(before.count(QLatin1Char('\n')));
  };
  const std::size_t start = bytes(cursor.selectionStart());
  const TextSelection selection{start, bytes(cursor.selectionEnd()) - start};
  Report([&] { box_.Selection = selection; });
}

}  // namespace tarnvale
