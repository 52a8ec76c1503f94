#pragma once

#include <QPlainTextEdit>

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// A field of many lines. What is appended comes to the screen once a frame, in
/// time that doesn't grow with the text.
class MemoPeer final : public Peer {
 public:
  MemoPeer(PeerContext& context, TextBox& box, QWidget& parent);

  void OnFrame() override;

 private:
  void ShowText();
  void ShowSelection();
  void ReportText();
  void ReportSelection();

  TextBox& box_;
  QPlainTextEdit* edit_;
  std::string appended_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
