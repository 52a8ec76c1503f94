#pragma once

#include <QCheckBox>

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// A CheckButton as Qt's own.
class CheckButtonPeer final : public Peer {
 public:
  CheckButtonPeer(PeerContext& context, CheckButton& check, QWidget& parent);

 private:
  void ReportClick();

  CheckButton& check_;
  QCheckBox* button_;
};

}  // namespace tarnvale
