// The whole program on a real desktop: real windows, real files, real time.
#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QEvent>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/program.h"
#include "hosts/linux/linux_host.h"
#include "hosts/qt/qt_file_dialogs.h"
#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_sockets.h"
#include "hosts/qt/qt_tray.h"
#include "hosts/qt/qt_window_host.h"
#include "platform/no_ftp_transport.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {

/// Counts how often what it is installed on is painted.
class PaintCounter : public QObject {
 public:
  int count = 0;
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && object->isWidgetType()) ++count;
    return false;
  }
};

/// A test has a drive of its own, in whose root the program believes to lie, with
/// the two companion programs beside it. Each of those writes its name into a
/// file. Data is the data folder, Work holds a.txt and b.txt, Store is empty.
class GuiTest : public ::testing::Test {
 protected:
  GuiTest();
  ~GuiTest() override;

  // Files of the drive, by native paths from its root.
  std::string Native(const std::string& path) const { return folder.Path() + "/drive/" + path; }
  void Write(const std::string& path, const std::string& content) const;
  std::string Content(const std::string& path) const;
  bool Exists(const std::string& path) const;
  /// How often a companion program was started.
  int Starts(const std::string& companion) const;

  /// Starts the program with the settings file `ini`; empty: without one.
  Program& Start(const std::string& ini = "[Setup]\r\nWizard=1\r\n");
  /// Starts it and brings the main window up, past the splash.
  Program& StartAndBringUp(const std::string& ini = "[Setup]\r\nWizard=1\r\n");
  /// The splash decides now instead of after its seven seconds.
  void EndSplash();
  /// The pause before a run ends now instead of after its eight seconds.
  void EndPauseBeforeRun();

  /// Lets the loop run until `condition` holds. False when it never did.
  bool WaitFor(const std::function<bool()>& condition, int patience_ms = 25000);
  bool WaitUntilActive(Window& window);
  bool WaitUntilShown(Window& window);
  /// How often anything is painted in two seconds of all timers ticking, once what
  /// is open has settled.
  int PaintsWhileIdle();

  QtWindow& NativeOf(Window& window) { return *host.NativeOf(window); }
  /// The widget that takes what the user does with a control.
  QWidget& WidgetOf(Control& control);
  template <class Widget>
  Widget& WidgetAs(Control& control) {
    return dynamic_cast<Widget&>(WidgetOf(control));
  }

  // What a person does.
  void Click(Control& control);
  void Press(int key, Qt::KeyboardModifiers held = {});
  void Type(const char* text);
  /// Clicks a row of a list or file list.
  void ClickRow(Control& list, int row, Qt::KeyboardModifiers held = {});
  void DoubleClickRow(Control& list, int row);
  /// Opens a tree's root and types the names of the folders below it.
  void ChooseFolder(FolderTree& tree, const std::vector<std::string>& names);
  /// Clicks through the menu bar: the captions of one row of each menu, without
  /// their marks.
  void ChooseInMenuBar(const std::vector<QString>& captions);

  /// Lets the X server move and click the mouse, or press keys: for what belongs to
  /// other programs.
  void LetDisplay(const QStringList& what);
  void MovePointerTo(const QPoint& global);

  // What a person will do in the modal dialog that the next action opens. One that
  // nobody expects fails the test.
  void AnswerNextBox(QMessageBox::StandardButton answer);
  /// Types a native path and Enter.
  void TypeIntoNextFileDialog(const std::string& native);
  void CancelNextFileDialog();
  /// Every dialog that was announced has come.
  bool DialogsAreDone() const { return pending_dialogs_ == 0; }

  /// Calls `act`, which must end the dialog, with the next modal one.
  void WithNextDialog(std::function<void(QDialog&)> act);

  TemporaryFolder folder;
  LinuxHost system;
  QtEventLoop loop;
  PathTranslation paths;
  QtWindowHost host;
  QtMessageBoxes boxes;
  QtFileDialogs dialogs;
  QtTray tray;
  QtSockets sockets;
  NoFtpTransport ftp;
  /// What the program's mail goes by; to be set before its start.
  Sockets* mail_sockets = &sockets;
  std::optional<Machine> machine;  ///< made at the start
  std::unique_ptr<Program> program;
  /// The text and title of the box that was answered last.
  std::string box_text;
  std::string box_title;

 private:
  void WriteCompanion(const std::string& name) const;

  void RefuseUnexpectedDialog();

  int pending_dialogs_ = 0;
  QPointer<QDialog> answered_;
  QTimer watch_;
};

}  // namespace tarnvale::testing
