#pragma once

#include "hosts/windows/system_headers.h"

#include <shellapi.h>

#include <string>

#include "hosts/windows/peers/line_in_middle.h"
#include "hosts/windows/peers/native_peer.h"
#include "ui/masked_text.h"

namespace tarnvale {

/// A field: plain, masked, password or of many lines. What is appended to many lines comes
/// to the screen once a frame, in time that doesn't grow with the text.
class TextBoxPeer : public NativePeer {
 public:
  TextBoxPeer(PeerContext& context, WindowsWindow& window, TextBox& box, const Rect& place,
              const Peer* container);

  LONG RoleForReaders() const override { return ROLE_SYSTEM_TEXT; }
  void OnFrame() override;
  void OnCommand(WORD code) override;

 protected:
  LRESULT OnMessage(HWND edit, UINT message, WPARAM first, LPARAM second) override;

 private:
  struct Range {
    DWORD start = 0;
    DWORD end = 0;
    bool operator==(const Range&) const = default;
  };

  bool IsMemo() const { return box_.Kind == TextKind::kMemo; }
  std::wstring Text() const;
  std::wstring Document(std::string_view text) const;
  Range Selected() const;

  void ShowText();
  void ShowSelection();
  void ReportText();
  void ReportSelection();
  void ReportFiles(HDROP drop);

  bool IgnoresPress(UINT message);
  bool ServeTyped(WPARAM character);
  bool ServeMasked(UINT message, WPARAM first);
  template <class Change>
  void Apply(Change change);

  TextBox& box_;
  std::string appended_;
  Range reported_;
  LineInMiddle line_;
  bool is_showing_ = false;
  bool ignores_press_ = false;
};

}  // namespace tarnvale
