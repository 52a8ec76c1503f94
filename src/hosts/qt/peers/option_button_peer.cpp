#include "hosts/qt/peers/option_button_peer.h"

#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

/// Which other buttons go out is the record's affair; a click puts this one on.
class RadioButton final : public QRadioButton {
 public:
  explicit RadioButton(QWidget& parent) : QRadioButton(&parent) { setAutoExclusive(false); }

 protected:
  void nextCheckState() override { setChecked(true); }
};

}  // namespace

OptionButtonPeer::OptionButtonPeer(PeerContext& context, OptionButton& option, QWidget& parent)
    : Peer(context, option), option_(option), button_(new RadioButton(parent)) {
  button_->setText(ToQt(option_.Caption.Get()));
  button_->setChecked(option_.Value);
  Follow(option_.Caption.Changed, [this] {
    button_->setText(ToQt(option_.Caption.Get()));
    UpdateName();
  });
  Follow(option_.Value.Changed(), [this] { button_->setChecked(option_.Value); });
  connect(button_, &QRadioButton::clicked, this, [this] { ReportClick(); });
  Adopt(button_);
}

void OptionButtonPeer::ReportClick() {
  Report([this] { option_.Value = true; });
  Report([this] { option_.Clicked.Emit(); });
}

}  // namespace tarnvale
