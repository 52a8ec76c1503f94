// Native windows for window records.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/windows/fonts.h"
#include "hosts/windows/message_window.h"
#include "hosts/windows/peers/peer.h"
#include "hosts/windows/windows_event_loop.h"
#include "hosts/windows/windows_text_painter.h"
#include "hosts/windows/windows_window.h"
#include "ui/frame_clock.h"
#include "ui/window.h"

namespace tarnvale {

/// The display's resolution.
int SystemDpi();

class WindowsWindowHost final : public WindowHost {
 public:
  /// `loop`, `files` and `boxes` must outlive it. `program_path` gives a native path in the
  /// program's path language; empty when no path can name it.
  WindowsWindowHost(WindowsEventLoop& loop, FileSystem& files, MessageBoxes& boxes,
                    std::function<Path(const std::wstring& native)> program_path,
                    int dpi = SystemDpi());
  ~WindowsWindowHost() override;

  void Adopt(Window& window) override;
  void Drop(Window& window) override;
  void PopUp(MenuItem& menu) override;
  int ScreenWidthTwips() override;
  int ScreenHeightTwips() override;
  Desktop& Surroundings() override { return desktop_; }

  /// The user's session ends, and with it the process as soon as the handlers return.
  Signal<> SessionEnds;
  /// The system's colours while the user needs high contrast; set before anything is drawn in
  /// them.
  Property<std::optional<SystemColorTable>> HighContrast;

  WindowsEventLoop& Loop() { return context_.loop; }
  /// The native window of an adopted record; none for any other.
  WindowsWindow* NativeOf(const Window& window) const;
  const std::vector<std::unique_ptr<WindowsWindow>>& Adopted() const { return windows_; }
  /// What a box or dialog stands over: the window that is wanted, or the active one; null
  /// when neither can be seen.
  HWND OwnerFor(const Window* wanted) const;

  /// A box or dialog: while it lives none of the windows takes input, those that are shown
  /// meanwhile included. The system itself disables and enables `owner`: only so is that
  /// one active again when the box goes, and no window of another program.
  class Modal {
   public:
    Modal(WindowsWindowHost& host, HWND owner);
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;
    ~Modal();

   private:
    WindowsWindowHost& host_;
  };

 private:
  void ApplyEnabled(HWND but);
  std::optional<LRESULT> OnBroadcast(UINT message, WPARAM first);
  bool MaySessionEnd();
  void FollowColors();
  void ShowPointer();

  Fonts fonts_;
  WindowsTextPainter text_;
  FrameClock frames_;
  Desktop desktop_;
  PeerContext context_;
  int box_depth_ = 0;
  std::vector<std::unique_ptr<WindowsWindow>> windows_;
  std::vector<Subscription> subscriptions_;
  MessageWindow broadcasts_{
      [this](UINT message, WPARAM first, LPARAM) { return OnBroadcast(message, first); },
      MessageWindow::Hears::kBroadcasts};
};

}  // namespace tarnvale
