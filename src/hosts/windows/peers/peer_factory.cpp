#include "hosts/windows/peers/peer_factory.h"

#include "hosts/windows/peers/drawn_peer.h"
#include "hosts/windows/peers/label_peer.h"
#include "hosts/windows/peers/mark_button_peer.h"
#include "hosts/windows/peers/owner_drawn_peer.h"
#include "hosts/windows/peers/picture_box_peer.h"
#include "ui/palette.h"

namespace tarnvale {
namespace {

/// Keeps the place of a control that has no peer of its own yet.
class FieldPeer final : public DrawnPeer {
 public:
  template <class Record>
  FieldPeer(PeerContext& context, WindowsWindow& window, Record& record, const Rect& place,
            const Peer* container)
      : DrawnPeer(context, window, record, place, container) {}

  void Paint(Surface& surface) override {
    surface.Fill(Area(), ToColor(palette::kField));
    surface.Frame(Area(), ToColor(palette::kFieldFrame));
  }
};

class PeerMaker final : public ControlVisitor {
 public:
  PeerMaker(PeerContext& context, WindowsWindow& window, const Rect& place, const Peer* container)
      : context_(context), window_(window), place_(place), container_(container) {}

  void Visit(Label& label) override { Make<LabelPeer>(label); }
  void Visit(TextBox& box) override { Make<FieldPeer>(box); }
  void Visit(ListBox& list) override { Make<FieldPeer>(list); }
  void Visit(ComboBox& combo) override { Make<FieldPeer>(combo); }
  void Visit(OptionButton& option) override { Make<OptionButtonPeer>(option); }
  void Visit(CheckButton& check) override { Make<CheckButtonPeer>(check); }
  void Visit(FileList& files) override { Make<FieldPeer>(files); }
  void Visit(FolderTree& tree) override { Make<FieldPeer>(tree); }
  void Visit(PictureBox& picture) override { Make<PictureBoxPeer>(picture); }
  void Visit(OwnerDrawn& drawn) override { Make<OwnerDrawnPeer>(drawn); }

  std::unique_ptr<Peer> Take() { return std::move(peer_); }

 private:
  template <class PeerType, class Record>
  void Make(Record& record) {
    peer_ = std::make_unique<PeerType>(context_, window_, record, place_, container_);
  }

  PeerContext& context_;
  WindowsWindow& window_;
  const Rect& place_;
  const Peer* container_;
  std::unique_ptr<Peer> peer_;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(PeerContext& context, WindowsWindow& window,
                               const Placement& placement, const Peer* container) {
  PeerMaker maker(context, window, placement.place, container);
  placement.control->Accept(maker);
  return maker.Take();
}

}  // namespace tarnvale
