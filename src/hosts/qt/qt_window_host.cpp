#include "hosts/qt/qt_window_host.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>

#include "hosts/qt/qt_menus.h"

namespace tarnvale {
QtWindowHost::QtWindowHost(QtEventLoop& loop, FileSystem& files,
                           std::function<Path(const std::string& native)> program_path)
    : frames_(loop.Timers()),
      context_{.loop = loop,
               .frames = frames_,
               .text = text_,
               .files = files,
               .boxes = boxes_,
               .program_path = std::move(program_path)} {
  subscriptions_.push_back(desktop_.Pointer.Changed.Subscribe([this] { ShowPointer(); }));
  QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &receiver_,
                   [this](Qt::ApplicationState state) {
                     if (state != Qt::ApplicationActive) ForgetActiveWindow();
                   });
}

QtWindowHost::~QtWindowHost() {
  context_.ending = true;
}

void QtWindowHost::Adopt(Window& window) {
  windows_.push_back(std::make_unique<QtWindow>(context_, window, desktop_));
}

void QtWindowHost::Drop(Window& window) {
  std::erase_if(windows_, [&](const auto& native) { return &native->Record() == &window; });
  if (desktop_.ActiveWindow.Get() == &window) desktop_.ActiveWindow = nullptr;
}

QtWindow* QtWindowHost::NativeOf(const Window& window) const {
  for (const auto& native : windows_) {
    if (&native->Record() == &window) return native.get();
  }
  return nullptr;
}

void QtWindowHost::PopUp(MenuItem& menu) {
  MenuItem* chosen = nullptr;
  {
    QMenu popup;
    std::vector<Subscription> follows;
    FillMenu(
        popup, menu, [&](MenuItem& row) { chosen = &row; }, follows);
    popup.exec(QCursor::pos());
  }
  if (chosen != nullptr) context_.loop.Deliver([&] { chosen->Clicked.Emit(); });
}

int QtWindowHost::ScreenWidthTwips() {
  return QGuiApplication::primaryScreen()->geometry().width() * kTwipsPerPixel;
}

int QtWindowHost::ScreenHeightTwips() {
  return QGuiApplication::primaryScreen()->geometry().height() * kTwipsPerPixel;
}

void QtWindowHost::ShowPointer() {
  const bool wants = desktop_.Pointer.Get() == PointerShape::kHourglass;
  if (wants == shows_hourglass_) return;
  shows_hourglass_ = wants;
  if (wants) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QGuiApplication::restoreOverrideCursor();
  }
}

void QtWindowHost::ForgetActiveWindow() {
  if (context_.ending) return;
  context_.loop.Deliver([this] { desktop_.ActiveWindow = nullptr; });
}

}  // namespace tarnvale
