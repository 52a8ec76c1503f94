#pragma once

#include "hosts/windows/peers/native_peer.h"

namespace tarnvale {

/// A field with a list below it.
class ComboBoxPeer final : public NativePeer {
 public:
  ComboBoxPeer(PeerContext& context, WindowsWindow& window, ComboBox& combo, const Rect& place,
               const Peer* container);

  LONG RoleForReaders() const override { return ROLE_SYSTEM_COMBOBOX; }
  void OnCommand(WORD code) override;

 protected:
  bool KeepsKey(Key key) const override;

 private:
  void Fit();
  void ShowRows();
  void ShowText();
  void ReportText(const std::wstring& text);
  std::wstring FieldText() const;
  std::wstring RowAt(LRESULT row) const;
  bool IsOpen() const;

  ComboBox& combo_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
