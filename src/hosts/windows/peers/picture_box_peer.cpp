#include "hosts/windows/peers/picture_box_peer.h"

#include "hosts/windows/windows_pictures.h"

namespace tarnvale {

PictureBoxPeer::PictureBoxPeer(PeerContext& context, WindowsWindow& window, PictureBox& picture,
                               const Rect& place, const Peer* container)
    : DrawnPeer(context, window, picture, place, container), picture_(picture) {
  Follow(picture_.Picture.Changed, [this] { Repaint(); });
}

void PictureBoxPeer::PaintGround(Surface& surface) const {
  const RECT& area = Area();
  const LookColors& colors = context_.colors;
  switch (picture_.Background) {
    case PictureBox::Ground::kWindow:
      return;
    case PictureBox::Ground::kTaskPanel:
      surface.FillVertically(area, colors.panel_top, colors.panel_bottom);
      surface.Fill({area.right - 1, area.top, area.right, area.bottom}, colors.panel_edge);
      return;
    case PictureBox::Ground::kField:
      surface.Fill(area, colors.field);
      surface.Frame(area, colors.field_frame);
      return;
  }
}

void PictureBoxPeer::Paint(Surface& surface) {
  PaintGround(surface);
  const RECT& area = Area();
  const Raster& picture =
      PictureNamed(picture_.Picture, area.right - area.left, area.bottom - area.top);
  if (picture.Empty()) return;
  surface.Blend(picture.pixels.data(), picture.width, picture.height,
                area.left + (area.right - area.left - picture.width) / 2,
                area.top + (area.bottom - area.top - picture.height) / 2);
}

LONG PictureBoxPeer::RoleForReaders() const {
  return picture_.Picture.Get().empty() ? ROLE_SYSTEM_PANE : ROLE_SYSTEM_GRAPHIC;
}

void PictureBoxPeer::OnClick(MouseButton button) {
  if (button == MouseButton::kLeft) Report([this] { picture_.Clicked.Emit(); });
}

}  // namespace tarnvale
