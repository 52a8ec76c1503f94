#include "hosts/windows/peers/peer_factory.h"

#include "hosts/windows/peers/combo_box_peer.h"
#include "hosts/windows/peers/folder_tree_peer.h"
#include "hosts/windows/peers/label_peer.h"
#include "hosts/windows/peers/list_peer.h"
#include "hosts/windows/peers/mark_button_peer.h"
#include "hosts/windows/peers/owner_drawn_peer.h"
#include "hosts/windows/peers/picture_box_peer.h"
#include "hosts/windows/peers/text_box_peer.h"

namespace tarnvale {
namespace {

class PeerMaker final : public ControlVisitor {
 public:
  PeerMaker(PeerContext& context, WindowsWindow& window, const Rect& place, const Peer* container)
      : context_(context), window_(window), place_(place), container_(container) {}

  void Visit(Label& label) override { Make<LabelPeer>(label); }
  void Visit(TextBox& box) override { Make<TextBoxPeer>(box); }
  void Visit(ListBox& list) override { Make<ListBoxPeer>(list); }
  void Visit(ComboBox& combo) override { Make<ComboBoxPeer>(combo); }
  void Visit(OptionButton& option) override { Make<OptionButtonPeer>(option); }
  void Visit(CheckButton& check) override { Make<CheckButtonPeer>(check); }
  void Visit(FileList& files) override { Make<FileListPeer>(files); }
  void Visit(FolderTree& tree) override { Make<FolderTreePeer>(tree); }
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
