// The base of all peers: what every control has in common.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QWidget>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/signal.h"
#include "hosts/qt/qt_event_loop.h"
#include "hosts/qt/qt_text_painter.h"
#include "platform/files.h"
#include "ui/controls.h"
#include "ui/frame_clock.h"
#include "ui/message_boxes.h"

namespace tarnvale {

/// What the peers need of their host. Outlives them.
struct PeerContext {
  QtEventLoop& loop;
  FrameClock& frames;
  QtTextPainter& text;
  FileSystem& files;
  MessageBoxes& boxes;
  /// An absolute native path in the program's path language; empty when no path
  /// can name it.
  std::function<Path(const std::string& native)> program_path;
  /// The host goes down: records may be gone, so nothing is reported any more.
  bool ending = false;
};

KeyPress ToKeyPress(const QKeyEvent& event);
MouseButton ToMouseButton(Qt::MouseButton button);
/// The one of several held buttons that counts: left, right, middle.
MouseButton HeldButton(Qt::MouseButtons buttons);

/// Mirrors one control record by a widget. The widget belongs to its parent
/// widget. What the user does is reported to the record as if the event loop
/// had called the handler: no ProgramError gets into Qt.
class Peer : public QObject, public FrameClient {
 public:
  ~Peer() override;

  /// The widget on the window.
  QWidget& Widget() { return *widget_; }
  /// The one that gets the keys: mostly the same.
  virtual QWidget& FocusWidget() { return *widget_; }
  Control& Record() { return record_; }

  /// Names the widget for screen readers.
  virtual void UpdateName();
  /// The label before the control, for UpdateName.
  void SetLabel(const Label* label) { label_ = label; }

  /// Brings the widget up to date; see RequestFrame.
  void OnFrame() override {}

 protected:
  Peer(PeerContext& context, Control& record);

  /// Takes the widget, and mirrors what all controls have from now on. The last
  /// act of each constructor.
  void Adopt(QWidget* widget);

  /// Listens for as long as the peer lives.
  template <class... Args, class Handler>
  void Follow(Signal<Args...>& signal, Handler handler) {
    subscriptions_.push_back(signal.Subscribe(std::move(handler)));
  }
  /// Runs what reports to the record something that the user did.
  void Report(const std::function<void()>& handler);
  /// Has OnFrame called before the next screen update.
  void RequestFrame() { context_.frames.Request(*this); }

  virtual void OnFocus(bool /*has_focus*/) {}
  bool eventFilter(QObject* watched, QEvent* event) override;

  PeerContext& context_;

 private:
  void ReportFocus(QFocusEvent& event, bool has_focus);
  bool ReportKey(QKeyEvent& event);
  bool IsPressRefused();
  void UpdatePointer();

  Control& record_;
  QWidget* widget_ = nullptr;
  const Label* label_ = nullptr;
  std::vector<Subscription> subscriptions_;
};

}  // namespace tarnvale
