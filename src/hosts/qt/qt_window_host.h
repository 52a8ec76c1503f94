// Native windows for window records.
#pragma once

#include <QCursor>
#include <QObject>

#include <memory>
#include <vector>

#include "hosts/qt/peers/peer.h"
#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_window.h"
#include "ui/window.h"

namespace tarnvale {

class QtWindowHost final : public WindowHost {
 public:
  /// `loop` and `files` must outlive it. `program_path` gives an absolute native
  /// path in the program's path language; empty when no path can name it.
  QtWindowHost(QtEventLoop& loop, FileSystem& files,
               std::function<Path(const std::string& native)> program_path);
  ~QtWindowHost() override;

  void Adopt(Window& window) override;
  void Drop(Window& window) override;
  void PopUp(MenuItem& menu) override;
  int ScreenWidthTwips() override;
  int ScreenHeightTwips() override;
  Desktop& Surroundings() override { return desktop_; }

  TextPainter& Text() { return text_; }
  /// The native window of an adopted record; none for any other.
  QtWindow* NativeOf(const Window& window) const;
  /// All native windows, in the order in which their records came.
  const std::vector<std::unique_ptr<QtWindow>>& Adopted() const { return windows_; }

 private:
  void ShowPointer();
  void ForgetActiveWindow();

  QtTextPainter text_;
  FrameClock frames_;
  QtMessageBoxes boxes_;
  PeerContext context_;
  Desktop desktop_;
  std::vector<std::unique_ptr<QtWindow>> windows_;
  std::vector<Subscription> subscriptions_;
  QObject receiver_;
  bool shows_hourglass_ = false;
};

}  // namespace tarnvale
