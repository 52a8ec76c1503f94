#pragma once

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

class LabelWidget;

/// A text on the window. Its caption may change at any pace: the screen follows
/// once a frame.
class LabelPeer final : public Peer {
 public:
  LabelPeer(PeerContext& context, Label& label, QWidget& parent);

  void OnFrame() override;

  // For the widget.
  const Label& TheLabel() const { return label_; }
  void Click();

 private:
  Label& label_;
  LabelWidget* widget_ = nullptr;
};

}  // namespace tarnvale
