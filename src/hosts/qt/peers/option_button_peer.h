#pragma once

#include <QRadioButton>

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// A OptionButton as Qt's own.
class OptionButtonPeer final : public Peer {
 public:
  OptionButtonPeer(PeerContext& context, OptionButton& option, QWidget& parent);

 private:
  void ReportClick();

  OptionButton& option_;
  QRadioButton* button_;
};

}  // namespace tarnvale
