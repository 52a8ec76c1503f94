// Peers that are native windows of their own.
#pragma once

#include <vector>

#include "hosts/windows/peers/peer.h"

namespace tarnvale {

/// A control that the system brings: a child window of its window. Focus, the order in
/// which keys get to window and control, and presses that are refused are seen to here.
class NativePeer : public Peer {
 public:
  ~NativePeer() override;

  HWND Native() const { return native_; }

  // Called by the window, which gets what the control reports.
  virtual void OnCommand(WORD /*code*/) {}
  virtual LRESULT OnNotify(NMHDR& /*header*/) { return 0; }
  /// Sets the colours of a text and returns the ground's; null for the system's.
  virtual HBRUSH OnColor(HDC) { return nullptr; }

  /// Out of sight while something drawn lies above it, though it stays shown for the record.
  void SetCovered(bool is_covered);
  void TakeNativeFocus() override;
  void Repaint() override;

 protected:
  using Peer::Peer;

  /// Makes the control, in the body's font. The last act of each constructor.
  void Create(const wchar_t* window_class, DWORD style, DWORD extended_style = 0);
  /// A window within it that gets the keys for it.
  void AddInner(HWND inner);

  /// A message to the control or an inner window; what isn't the peer's is passed on.
  virtual LRESULT OnMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    return PassOn(window, message, first, second);
  }
  /// To the system's own procedure.
  LRESULT PassOn(HWND window, UINT message, WPARAM first, LPARAM second);

  virtual void OnFocus(bool /*has_focus*/) {}
  /// Whether a key is the control's own, before the window gets it.
  virtual bool KeepsKey(Key /*key*/) const { return false; }
  /// Whether the press that is being served brought the focus.
  bool GotFocusByPress() const { return got_focus_by_press_; }
  void OnShown(bool is_shown) override;
  void OnUsable(bool is_usable) override;

 private:
  struct Followed {
    HWND window;
    WNDPROC procedure;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;
  LRESULT Serve(HWND window, UINT message, WPARAM first, LPARAM second);
  void FollowWindow(HWND window);

  HWND native_ = nullptr;
  bool got_focus_by_press_ = false;
  bool is_covered_ = false;
  std::vector<Followed> followed_;
};

}  // namespace tarnvale
