#pragma once

#include <QComboBox>

#include "hosts/qt/peers/peer.h"
#include "hosts/qt/peers/rows_model.h"

namespace tarnvale {

/// A field with a list below it.
class ComboBoxPeer final : public Peer {
 public:
  ComboBoxPeer(PeerContext& context, ComboBox& combo, QWidget& parent);

  void UpdateName() override;

 private:
  void ShowText();
  void ReportText(const QString& text);

  ComboBox& combo_;
  RowsModel model_;
  QComboBox* box_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
