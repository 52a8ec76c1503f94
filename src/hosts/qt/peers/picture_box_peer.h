#pragma once

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

class PictureWidget;

/// A task panel's ground is this widget.
bool IsTaskPanel(const QWidget& widget);

/// A picture, or an area that holds other controls.
class PictureBoxPeer final : public Peer {
 public:
  PictureBoxPeer(PeerContext& context, PictureBox& picture, QWidget& parent);

  // For the widget.
  const PictureBox& ThePicture() const { return picture_; }
  void Click();

 private:
  PictureBox& picture_;
  PictureWidget* widget_ = nullptr;
};

}  // namespace tarnvale
