#pragma once

#include "hosts/qt/peers/line_edit.h"
#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// A field of one line: plain, masked or password.
class TextBoxPeer final : public Peer {
 public:
  TextBoxPeer(PeerContext& context, TextBox& box, QWidget& parent);

 private:
  void ShowText();
  void ShowSelection();
  void ReportText(const QString& text);
  void ReportSelection();
  void ReportFiles(const QStringList& files);

  TextBox& box_;
  LineEdit* edit_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
