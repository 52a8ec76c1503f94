// The base of all peers: what every control has in common.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/signal.h"
#include "hosts/windows/fonts.h"
#include "hosts/windows/look_colors.h"
#include "hosts/windows/windows_event_loop.h"
#include "platform/files.h"
#include "ui/controls.h"
#include "ui/frame_clock.h"
#include "ui/message_boxes.h"
#include "ui/window.h"

namespace tarnvale {

class WindowsWindow;

/// What windows and peers need of their host. Outlives them.
struct PeerContext {
  WindowsEventLoop& loop;
  FrameClock& frames;
  Fonts& fonts;
  TextPainter& text;
  FileSystem& files;
  MessageBoxes& boxes;
  Desktop& desktop;
  /// A native path in the program's path language; empty when no path can name it.
  std::function<Path(const std::wstring& native)> program_path;
  /// Of the display: 96 is one device pixel to the logical one.
  int dpi = 96;
  LookColors colors = {};
  /// The host goes down: records may be gone, so nothing is reported any more.
  bool ending = false;

  int ToDevice(int logical_px) const { return ::MulDiv(logical_px, dpi, 96); }
  RECT ToDevice(const Rect& place) const {
    return {ToDevice(place.left_px), ToDevice(place.top_px), ToDevice(place.RightPx()),
            ToDevice(place.BottomPx())};
  }
};

/// Mirrors one control record. What the user does is reported to the record as if the
/// event loop had called the handler: no ProgramError gets into the system.
class Peer : public FrameClient {
 public:
  ~Peer() override;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  Control& Record() { return record_; }
  const Control& Record() const { return record_; }
  /// Where it lies, in device pixels of the window's client area.
  const RECT& Area() const { return area_; }
  /// What of that its containers let show.
  const RECT& SeenArea() const { return seen_area_; }
  /// It and all of its containers are visible; enabled.
  bool IsShown() const { return is_shown_; }
  bool IsUsable() const { return is_usable_; }

  /// Takes over from the records what has changed in IsShown and IsUsable.
  void UpdateReach();
  /// Puts the system's focus onto it.
  virtual void TakeNativeFocus() = 0;
  /// Shows its look anew.
  virtual void Repaint() = 0;
  /// The colours are others now; its window repaints all of itself.
  virtual void OnColors() {}
  /// What it is for a screen reader: one of the system's roles.
  virtual LONG RoleForReaders() const = 0;
  /// What is shown when the pointer rests on it.
  virtual std::string Tip() { return record_.ToolTip; }

  void OnFrame() override {}

 protected:
  /// `container` is the peer of its container; none directly on the window.
  Peer(PeerContext& context, WindowsWindow& window, Control& record, const Rect& place,
       const Peer* container);

  /// Listens for as long as the peer lives.
  template <class... Args, class Handler>
  void Follow(Signal<Args...>& signal, Handler handler) {
    subscriptions_.push_back(signal.Subscribe(std::move(handler)));
  }
  /// Runs what reports to the record something that the user did.
  void Report(const std::function<void()>& handler);
  /// Has OnFrame called before the next screen update.
  void RequestFrame() { context_.frames.Request(*this); }

  virtual void OnShown(bool /*is_shown*/) {}
  virtual void OnUsable(bool /*is_usable*/) {}

  PeerContext& context_;
  WindowsWindow& window_;

 private:
  Control& record_;
  RECT area_{};
  RECT seen_area_{};
  bool is_shown_ = false;
  bool is_usable_ = false;
  std::vector<Subscription> subscriptions_;
};

}  // namespace tarnvale
