#pragma once

#include "hosts/windows/peers/drawn_peer.h"

namespace tarnvale {

/// A picture, or an area that holds other controls.
class PictureBoxPeer final : public DrawnPeer {
 public:
  PictureBoxPeer(PeerContext& context, WindowsWindow& window, PictureBox& picture,
                 const Rect& place, const Peer* container);

  void Paint(Surface& surface) override;
  LONG RoleForReaders() const override;

 protected:
  void OnClick(MouseButton button) override;

 private:
  void PaintGround(Surface& surface) const;

  PictureBox& picture_;
};

}  // namespace tarnvale
