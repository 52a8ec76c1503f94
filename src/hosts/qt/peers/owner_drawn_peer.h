#pragma once

#include <QImage>
#include <QPoint>

#include "hosts/qt/peers/peer.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

class DrawnWidget;

/// A control that draws itself: keeps what it drew, and hands on what the user
/// does.
class OwnerDrawnPeer final : public Peer {
 public:
  OwnerDrawnPeer(PeerContext& context, OwnerDrawn& drawn, QWidget& parent);
  ~OwnerDrawnPeer() override;

  void OnFrame() override;

  // For the widget.
  OwnerDrawn& Drawn() { return drawn_; }
  const PeerContext& Context() const { return context_; }
  /// What the control looks like at a number of device pixels to the logical
  /// pixel, which may be a fraction.
  const QImage& Picture(qreal pixel_ratio);
  void Resize(QSize size);
  /// Lends the control its surroundings.
  void Lend();
  void Forward(const std::function<void()>& handler) { Report(handler); }

 protected:
  void OnFocus(bool has_focus) override;

 private:
  void FollowAccessKey();
  AmbientLook AmbientOfContainer() const;
  Raster CopyOfContainer() const;
  void DragAway(DragStep& step);

  OwnerDrawn& drawn_;
  DrawnWidget* widget_ = nullptr;
  QImage picture_;
  bool is_stale_ = true;
  /// What was reported to screen readers last.
  AccessibleState reported_state_;
  char32_t access_key_ = 0;
  int shortcut_ = 0;
};

}  // namespace tarnvale
