#include "hosts/qt/peers/peer_factory.h"

#include "hosts/qt/peers/check_button_peer.h"
#include "hosts/qt/peers/combo_box_peer.h"
#include "hosts/qt/peers/file_list_peer.h"
#include "hosts/qt/peers/folder_tree_peer.h"
#include "hosts/qt/peers/label_peer.h"
#include "hosts/qt/peers/list_box_peer.h"
#include "hosts/qt/peers/memo_peer.h"
#include "hosts/qt/peers/option_button_peer.h"
#include "hosts/qt/peers/owner_drawn_peer.h"
#include "hosts/qt/peers/picture_box_peer.h"
#include "hosts/qt/peers/text_box_peer.h"

namespace tarnvale {
namespace {

class PeerMaker final : public ControlVisitor {
 public:
  PeerMaker(PeerContext& context, QWidget& parent) : context_(context), parent_(parent) {}

  void Visit(Label& label) override { Make<LabelPeer>(label); }
  void Visit(TextBox& box) override {
    if (box.Kind == TextKind::kMemo) {
      Make<MemoPeer>(box);
    } else {
      Make<TextBoxPeer>(box);
    }
  }
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
    peer_ = std::make_unique<PeerType>(context_, record, parent_);
  }

  PeerContext& context_;
  QWidget& parent_;
  std::unique_ptr<Peer> peer_;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(PeerContext& context, Control& control, QWidget& parent) {
  PeerMaker maker(context, parent);
  control.Accept(maker);
  return maker.Take();
}

}  // namespace tarnvale
