// One native window.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/windows/dragging.h"
#include "hosts/windows/peers/drawn_peer.h"
#include "hosts/windows/peers/native_peer.h"
#include "hosts/windows/peers/peer.h"
#include "hosts/windows/surface.h"
#include "hosts/windows/windows_menus.h"
#include "ui/window.h"

namespace tarnvale {

/// A window that is never shown: it owns those that aren't to be on the task bar, and menus
/// where none of ours can be seen.
HWND UnseenOwner();

/// Mirrors a window record by a native window, which is made when it is first shown. What
/// changes in one event comes to the desktop in one step after it. What its controls draw
/// is one scene, painted anew where something has changed; only the system's own controls
/// are windows within it.
class WindowsWindow final {
 public:
  /// `box_depth`: how many boxes and dialogs are open, during which no window takes input.
  WindowsWindow(PeerContext& context, Window& record, const int& box_depth);
  WindowsWindow(const WindowsWindow&) = delete;
  WindowsWindow& operator=(const WindowsWindow&) = delete;
  ~WindowsWindow();

  Window& Record() { return record_; }
  /// Null before the window was first shown.
  HWND Native() const { return native_; }
  /// The peer of one of its controls; none before the window was first shown.
  Peer* PeerOf(const Control& control) const;

  /// All is drawn anew in the colours that there are now.
  void FollowColors();
  /// The number of boxes changed.
  void ApplyEnabled();

  // For screen readers.
  const std::vector<std::unique_ptr<Peer>>& Peers() const { return peers_; }
  /// False once the window is gone.
  std::shared_ptr<const bool> Lives() const { return alive_; }
  bool ServesReaders() const { return !context_.ending; }
  std::string NameForReaders(const Peer& peer) const;
  /// Its place in the tab order, from 1 on.
  LONG NumberForReaders(const Peer& peer) const;
  /// What is shown at a point of the client area; none for the window itself.
  Peer* At(POINT at) const;
  /// Both from the loop, as they may take as long as they like. False for what can't be
  /// pressed now.
  bool PressForReaders(DrawnPeer& peer);
  void FocusForReaders(Peer& peer);
  void NotifyReaders(DWORD event, const Peer& peer) const;

  // For the peers.
  void Invalidate(const RECT& area);
  /// A drawn control may take drops now, or none any more.
  void FollowDrops();
  /// What a key does before the control gets it; true when that was all.
  bool ServeKey(Peer& peer, const KeyPress& press);
  /// The ground that a control lies on: its containers' drawings, without what is on them.
  void PaintGroundOf(const Peer& peer, Surface& surface) const;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;
  LRESULT Serve(UINT message, WPARAM first, LPARAM second);
  LRESULT ServeCommand(WPARAM first, LPARAM second);
  LRESULT ServeNotice(NMHDR& header);
  LRESULT ServeColor(UINT message, WPARAM first, LPARAM second);
  void ServeMouse(UINT message, WPARAM first, LPARAM second);
  void ServeMouseLeave();
  void ServeLostCapture();
  bool ServeDrawnKey(UINT message, WPARAM first, LPARAM second);
  bool ServeAccessKey(char32_t typed);
  bool ServePointer(HWND over, UINT place);
  HCURSOR PointerShown(PointerShape shape, const Peer* over);

  void FollowRecord();
  void FollowReach();
  void Build();
  void MakeNative();
  void BuildControls();
  void OrderScene(const Control* container);
  bool IsCovered(const Peer& peer) const;
  void CoverNatives();
  void MakeTips();

  void RequestSync();
  void Sync();
  void EmitResized();
  void ApplyTaskBar();
  void ApplyAlpha();
  void ApplyPosition();
  void PlaceFirst();
  void ApplyState();
  void ApplyIcon();
  void BringForward();

  void ReportState();
  void ReportActivation();
  void ReportOtherProgram();
  void LeaveUnreachable();
  void ShowFocus();
  void MarkFocused(DrawnPeer* peer);

  void Paint();
  void PaintScene(Surface& surface, const RECT& area) const;
  void PaintGround(Surface& surface) const;
  DrawnPeer* DrawnAt(POINT at) const;
  DrawnPeer* FocusedDrawn() const;
  DrawnPeer* DropTakerAt(POINT at) const;
  int AnswerDrag(const DragStep& step, POINT screen, int allowed_effects, bool is_drop);
  void MoveOver(DrawnPeer* peer);

  NativePeer* NativePeerOf(HWND window) const;
  bool TakesInput() const { return record_.Enabled && box_depth_ == 0; }

  template <class Handler>
  void Follow(Signal<>& signal, Handler handler) {
    subscriptions_.push_back(signal.Subscribe(std::move(handler)));
  }
  void Report(const std::function<void()>& handler);
  /// From the loop, if the window is still there then.
  void Later(std::function<void()> job);

  PeerContext& context_;
  Window& record_;
  const int& box_depth_;
  HWND native_ = nullptr;
  HWND tips_ = nullptr;
  HICON icons_[2] = {};
  std::optional<WindowsMenuBar> menus_;
  std::optional<DropArea> drops_;  ///< while a drawn control takes drops
  std::vector<std::unique_ptr<Peer>> peers_;
  std::map<const Control*, Peer*> peer_of_;
  std::map<const Control*, const Label*> labels_;
  std::vector<DrawnPeer*> scene_;  ///< the lowest first
  std::vector<Subscription> subscriptions_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);

  DrawnPeer* over_ = nullptr;     ///< the pointer is over it
  DrawnPeer* pressed_ = nullptr;  ///< gets the mouse while a button is held
  DrawnPeer* marked_ = nullptr;   ///< shows the focus
  bool hears_leaving_ = false;
  Raster pointer_picture_;  ///< what the next one was made of
  HCURSOR pointer_ = nullptr;

  WindowState emitted_state_ = WindowState::kNormal;
  std::optional<WindowState> ordered_state_;
  bool sync_is_requested_ = false;
  bool raise_is_requested_ = false;
  bool was_placed_ = false;
  bool is_applying_ = false;
};

}  // namespace tarnvale
