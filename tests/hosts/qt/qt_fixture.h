// What every test of the desktop host needs.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_text.h"
#include "hosts/qt/qt_window_host.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"
#include "tests/support/run_until.h"

namespace tarnvale {

class QtFixture : public ::testing::Test {
 protected:
  QtFixture() {
    loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
  }

  /// Lets the loop run until `condition` holds. False when it never did.
  bool WaitFor(const std::function<bool()>& condition) {
    return testing::RunUntil(loop, condition);
  }

  /// Puts one control on `window`, 200 by 100 pixels below the one before it.
  void Place(Control& control, Control* container = nullptr) {
    window.Place({{&control, container, {10, next_top, 200, 100}}});
    next_top += 110;
  }

  /// Adopts and shows `window`, and waits until it is the active one.
  void Show() {
    window.ClientSize = {300, next_top + 20};
    host.Adopt(window);
    window.Show();
    ASSERT_TRUE(WaitFor([&] { return Native().isActiveWindow() && Native().isVisible(); }));
  }

  QtWindow& Native() { return *host.NativeOf(window); }
  Peer& PeerOf(Control& control) { return *Native().PeerOf(control); }
  template <class Widget = QWidget>
  Widget& WidgetOf(Control& control) {
    return dynamic_cast<Widget&>(PeerOf(control).Widget());
  }
  std::string NameOf(Control& control) {
    return FromQt(Accessible(control)->text(QAccessible::Name));
  }
  QAccessibleInterface* Accessible(Control& control) {
    return QAccessible::queryAccessibleInterface(&PeerOf(control).FocusWidget());
  }

  // What the user does and sees, in the words of every desktop's fixture.

  enum class Held { kNothing, kShift, kControl };

  bool IsShown(const Window& of) { return host.NativeOf(of)->isVisible(); }
  bool IsMinimised(const Window& of) { return host.NativeOf(of)->isMinimized(); }
  void PressCross(const Window& of) { host.NativeOf(of)->close(); }
  void MinimiseByHand(const Window& of) { host.NativeOf(of)->setWindowState(Qt::WindowMinimized); }
  void RestoreByHand(const Window& of) { host.NativeOf(of)->setWindowState(Qt::WindowNoState); }
  bool IsActive(const Window& of) { return host.NativeOf(of)->isActiveWindow(); }
  void Activate(const Window& of) { host.NativeOf(of)->activateWindow(); }
  /// Says whether the native window of a record, which may go before it, is still there.
  std::function<bool()> LifeOf(const Window& of) {
    return [native = QPointer<QtWindow>(host.NativeOf(of))] { return !native.isNull(); };
  }

  bool ShowsFocus(Control& control) { return PeerOf(control).FocusWidget().hasFocus(); }
  /// To the control that has the focus.
  void PressKey(Key key, Held held = Held::kNothing) {
    static const std::map<Key, Qt::Key> keys{{Key::kSpace, Qt::Key_Space},
                                             {Key::kEnter, Qt::Key_Return},
                                             {Key::kTab, Qt::Key_Tab},
                                             {Key::kDelete, Qt::Key_Delete}};
    QTest::keyClick(&PeerOf(*window.Focused()).FocusWidget(), keys.at(key), ModifierOf(held));
  }
  /// "\r" is Enter, "\b" erases.
  void Type(Control& control, const std::string& text) {
    QWidget* widget = &PeerOf(control).FocusWidget();
    for (const QChar c : ToQt(text)) {
      if (c.unicode() < 0x80) {
        QTest::keyClick(widget, c.toLatin1());
      } else {
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
      }
    }
  }
  void Click(Control& control, Point at = {8, 50}) {
    QTest::mouseClick(&WidgetOf(control), Qt::LeftButton, {}, {at.x_px, at.y_px});
  }
  void PressMouse(Control& control, Point at) {
    SendMouse(QEvent::MouseButtonPress, control, at, Qt::LeftButton, Qt::LeftButton);
  }
  /// The second one of a double click.
  void PressMouseAgain(Control& control, Point at) {
    SendMouse(QEvent::MouseButtonDblClick, control, at, Qt::LeftButton, Qt::LeftButton);
  }
  void MoveMouse(Control& control, Point at, bool is_held) {
    SendMouse(QEvent::MouseMove, control, at, Qt::NoButton,
              is_held ? Qt::LeftButton : Qt::NoButton);
  }
  void ReleaseMouse(Control& control, Point at) {
    SendMouse(QEvent::MouseButtonRelease, control, at, Qt::LeftButton, Qt::NoButton);
  }
  void LeaveByMouse(Control& control) {
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&WidgetOf(control), &leave);
  }
  /// Another window goes from above it.
  void Uncover(Control& control) { WidgetOf(control).repaint(); }
  bool ShowsTick(Control& control) { return WidgetOf<QAbstractButton>(control).isChecked(); }

  /// Lines end in "\n".
  std::string TextIn(TextBox& box) {
    auto* memo = qobject_cast<QPlainTextEdit*>(&WidgetOf(box));
    return FromQt(memo != nullptr ? memo->toPlainText() : WidgetOf<QLineEdit>(box).text());
  }
  std::string SelectedTextIn(TextBox& box) {
    return FromQt(WidgetOf<QLineEdit>(box).selectedText());
  }
  void SelectByHand(TextBox& box, int start, int length) {
    if (auto* memo = qobject_cast<QPlainTextEdit*>(&WidgetOf(box))) {
      QTextCursor cursor = memo->textCursor();
      cursor.setPosition(start);
      cursor.setPosition(start + length, QTextCursor::KeepAnchor);
      memo->setTextCursor(cursor);
    } else {
      WidgetOf<QLineEdit>(box).setSelection(start, length);
      if (length == 0) WidgetOf<QLineEdit>(box).setCursorPosition(start);
    }
  }

  std::vector<std::string> RowsIn(Control& list) {
    std::vector<std::string> rows;
    const QAbstractItemModel& model = *WidgetOf<QListView>(list).model();
    for (int i = 0; i < model.rowCount(); ++i) {
      rows.push_back(FromQt(model.index(i, 0).data().toString()));
    }
    return rows;
  }
  std::vector<int> SelectedRowsIn(Control& list) {
    std::vector<int> rows;
    for (const QModelIndex& row : WidgetOf<QListView>(list).selectionModel()->selectedRows()) {
      rows.push_back(row.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
  }
  void ClickRow(Control& list, int row, Held held = Held::kNothing) {
    auto& view = WidgetOf<QListView>(list);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, ModifierOf(held), MiddleOf(view, row));
  }
  void DoubleClickRow(Control& list, int row) {
    auto& view = WidgetOf<QListView>(list);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, MiddleOf(view, row));
  }

  bool IsBoxOpen() {
    QWidget* box = QApplication::activeModalWidget();
    return box != nullptr && box->isActiveWindow();
  }
  bool IsBoxOver(const Window& of) { return Box().parentWidget() == host.NativeOf(of); }
  std::string TextInBox() { return FromQt(Box().text()); }
  std::string TitleOfBox() { return FromQt(Box().windowTitle()); }
  void CloseBox() { Box().close(); }
  void PressButton(BoxAnswer button) {
    static const std::map<BoxAnswer, QMessageBox::StandardButton> buttons{
        {BoxAnswer::kOk, QMessageBox::Ok},
        {BoxAnswer::kCancel, QMessageBox::Cancel},
        {BoxAnswer::kYes, QMessageBox::Yes},
        {BoxAnswer::kNo, QMessageBox::No}};
    QTest::mouseClick(Box().button(buttons.at(button)), Qt::LeftButton);
  }

  using Loop = QtEventLoop;

  testing::FakeClock clock;
  testing::FakeFiles files{clock};
  QtEventLoop loop;
  /// No path can have a name with a backslash.
  QtWindowHost host{loop, files, [](const std::string& native) {
                      return native.find('\\') == std::string::npos ? "C:" + native : Path();
                    }};
  QtMessageBoxes boxes;
  Window window;
  int next_top = 10;

 private:
  static Qt::KeyboardModifiers ModifierOf(Held held) {
    return held == Held::kShift     ? Qt::ShiftModifier
           : held == Held::kControl ? Qt::ControlModifier
                                    : Qt::NoModifier;
  }
  void SendMouse(QEvent::Type type, Control& control, Point at, Qt::MouseButton button,
                 Qt::MouseButtons held) {
    QWidget& widget = WidgetOf(control);
    const QPoint point(at.x_px, at.y_px);
    QMouseEvent event(type, point, widget.mapToGlobal(point), button, held, {});
    QApplication::sendEvent(&widget, &event);
  }
  static QMessageBox& Box() {
    return dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
  }
  static QPoint MiddleOf(QListView& view, int row) {
    return view.visualRect(view.model()->index(row, 0)).center();
  }
};

}  // namespace tarnvale
