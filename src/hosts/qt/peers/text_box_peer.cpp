#include "hosts/qt/peers/text_box_peer.h"

#include <QScopedValueRollback>

#include "hosts/qt/peers/dropped_files.h"
#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_text.h"
#include "ui/masked_text.h"

namespace tarnvale {
namespace {

LineEdit* MakeEdit(const TextBox& box, QWidget& parent) {
  if (box.Kind == TextKind::kMasked) return new MaskedEdit(parent, box.Mask);
  if (box.Kind == TextKind::kPassword) return new PasswordEdit(parent);
  return new LineEdit(parent);
}

}  // namespace

TextBoxPeer::TextBoxPeer(PeerContext& context, TextBox& box, QWidget& parent)
    : Peer(context, box), box_(box), edit_(MakeEdit(box, parent)) {
  if (box_.FixedWidth) edit_->setFont(FixedWidthFont(9));
  // An empty masked field shows its zeros, and the record says what is shown.
  if (box_.Kind == TextKind::kMasked && box_.Text.Get().empty()) {
    box_.Text = BlankMask(box_.Mask);
  }
  if (box_.AcceptsFiles) edit_->on_files = [this](const QStringList& files) { ReportFiles(files); };
  edit_->setReadOnly(box_.ReadOnly);
  ShowText();
  Follow(box_.Text.Changed(), [this] { ShowText(); });
  Follow(box_.Appended, [this](const std::string&) { ShowText(); });
  Follow(box_.Selection.Changed, [this] { ShowSelection(); });
  Follow(box_.ReadOnly.Changed, [this] { edit_->setReadOnly(box_.ReadOnly); });
  connect(edit_, &QLineEdit::textEdited, this, [this](const QString& text) { ReportText(text); });
  connect(edit_, &QLineEdit::selectionChanged, this, [this] { ReportSelection(); });
  connect(edit_, &QLineEdit::cursorPositionChanged, this, [this] { ReportSelection(); });
  Adopt(edit_);
}

void TextBoxPeer::ShowText() {
  const QString text = ToQt(box_.Text.Get());
  if (edit_->text() == text) return;
  const QScopedValueRollback showing(is_showing_, true);
  edit_->setText(text);
  edit_->setCursorPosition(0);
}

void TextBoxPeer::ShowSelection() {
  if (is_showing_) return;
  const QScopedValueRollback showing(is_showing_, true);
  const std::string& text = box_.Text.Get();
  const TextSelection& selection = box_.Selection.Get();
  const qsizetype start = UnitsOf(text, selection.start);
  const qsizetype end = UnitsOf(text, selection.start + selection.length);
  edit_->setSelection(static_cast<int>(start), static_cast<int>(end - start));
  if (start == end) edit_->setCursorPosition(static_cast<int>(start));
}

void TextBoxPeer::ReportText(const QString& text) {
  Report([&] { box_.Text = FromQt(text); });
}

void TextBoxPeer::ReportSelection() {
  if (is_showing_) return;
  const QScopedValueRollback showing(is_showing_, true);
  const QString text = edit_->text();
  const qsizetype start =
      edit_->hasSelectedText() ? edit_->selectionStart() : edit_->cursorPosition();
  const TextSelection selection{
      BytesOf(text, start), edit_->hasSelectedText() ? FromQt(edit_->selectedText()).size() : 0};
  Report([&] { box_.Selection = selection; });
}

void TextBoxPeer::ReportFiles(const QStringList& files) {
  const std::vector<Path> paths = ProgramPathsOf(files, context_);
  Report([&] { box_.FilesDropped.Emit(paths); });
}

}  // namespace tarnvale
