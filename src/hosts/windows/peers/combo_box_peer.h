#pragma once

#include "hosts/windows/peers/line_in_middle.h"
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
  LRESULT OnMessage(HWND window, UINT message, WPARAM first, LPARAM second) override;

 private:
  void Fit();
  void ShowRows();
  void ShowText();
  void ReportText(const std::wstring& text);
  std::wstring FieldText() const;
  std::wstring RowAt(LRESULT row) const;
  bool IsOpen() const;

  ComboBox& combo_;
  HWND field_ = nullptr;
  LineInMiddle line_;
  bool is_showing_ = false;
};

}  // namespace tarnvale
