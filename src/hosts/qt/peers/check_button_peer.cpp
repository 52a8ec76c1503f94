#include "hosts/qt/peers/check_button_peer.h"

#include "hosts/qt/qt_text.h"

namespace tarnvale {

CheckButtonPeer::CheckButtonPeer(PeerContext& context, CheckButton& check, QWidget& parent)
    : Peer(context, check), check_(check), button_(new QCheckBox(&parent)) {
  button_->setText(ToQt(check_.Caption.Get()));
  button_->setChecked(check_.Value);
  Follow(check_.Caption.Changed, [this] {
    button_->setText(ToQt(check_.Caption.Get()));
    UpdateName();
  });
  Follow(check_.Value.Changed(), [this] { button_->setChecked(check_.Value); });
  connect(button_, &QCheckBox::clicked, this, [this] { ReportClick(); });
  Adopt(button_);
}

void CheckButtonPeer::ReportClick() {
  const bool value = button_->isChecked();
  Report([&] { check_.Value = value; });
  Report([this] { check_.Clicked.Emit(); });
}

}  // namespace tarnvale
