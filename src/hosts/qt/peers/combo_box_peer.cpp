#include "hosts/qt/peers/combo_box_peer.h"

#include <QCompleter>
#include <QLineEdit>
#include <QScopedValueRollback>

#include "hosts/qt/qt_text.h"

namespace tarnvale {

ComboBoxPeer::ComboBoxPeer(PeerContext& context, ComboBox& combo, QWidget& parent)
    : Peer(context, combo),
      combo_(combo),
      model_(combo.Rows, context.ending),
      box_(new QComboBox(&parent)) {
  box_->setEditable(combo_.Editable);
  box_->setInsertPolicy(QComboBox::NoInsert);
  box_->setModel(&model_);
  if (combo_.Editable) box_->setCompleter(nullptr);
  // Rows that come and go would choose another text by themselves.
  model_.before_change = [this] { is_showing_ = true; };
  model_.after_change = [this] {
    is_showing_ = false;
    ShowText();
  };
  ShowText();
  Follow(combo_.Text.Changed(), [this] { ShowText(); });
  connect(box_, &QComboBox::currentTextChanged, this,
          [this](const QString& text) { ReportText(text); });
  Adopt(box_);
  UpdateName();
}

// The field within it is a widget of its own for screen readers.
void ComboBoxPeer::UpdateName() {
  Peer::UpdateName();
  if (box_->lineEdit() != nullptr) box_->lineEdit()->setAccessibleName(box_->accessibleName());
}

void ComboBoxPeer::ShowText() {
  const QScopedValueRollback showing(is_showing_, true);
  const QString text = ToQt(combo_.Text.Get());
  const int row = box_->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive);
  if (box_->currentIndex() != row) box_->setCurrentIndex(row);
  if (!combo_.Editable) {
    // A text that is no row is shown all the same.
    box_->setPlaceholderText(text);
  } else if (box_->currentText() != text) {
    box_->setEditText(text);
  }
}

void ComboBoxPeer::ReportText(const QString& text) {
  if (is_showing_) return;
  Report([&] { combo_.Text = FromQt(text); });
}

}  // namespace tarnvale
