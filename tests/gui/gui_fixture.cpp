#include "tests/gui/gui_fixture.h"
#include "tests/support/run_until.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "hosts/qt/qt_text.h"

namespace tarnvale::testing {
namespace {

/// How often a test looks whether a dialog has come.
constexpr int kLookMs = 5;

}  // namespace

GuiTest::GuiTest()
    : system({.root = folder.Path() + "/drive",
              .state_folder = folder.Path() + "/state",
              .locale_name = "C",
              .processes = {.program_file = folder.Path() + "/drive/tarnvale",
                            .lock_folder = folder.Path() + "/lock",
                            .desktop_opener = folder.Path() + "/drive/opener"},
              .user = {.home = folder.Path() + "/drive/home/ann",
                       .config = folder.Path() + "/drive/home/ann/.config"}}),
      paths{.to_program = [this](const std::string& native) { return system.PathOf(native); },
            .to_native = [this](const Path& path) { return system.NativeOf(path); }},
      host(loop, system.files, paths.to_program),
      dialogs(host, paths),
      tray(loop),
      sockets(loop) {
  loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
  QObject::connect(&watch_, &QTimer::timeout, [this] { RefuseUnexpectedDialog(); });
  watch_.start(kLookMs);
  Write("Data.txt", "\"C:\\Data\"\r\n");
  Write("Work/a.txt", "one");
  Write("Work/b.txt", "two");
  for (const char* name : {"Data", "Store"}) std::filesystem::create_directories(Native(name));
  for (const char* name : {"U3-Data.exe", "Quit.exe", "opener"}) WriteCompanion(name);
}

GuiTest::~GuiTest() {
  EXPECT_TRUE(DialogsAreDone()) << "a dialog that was expected didn't come";
}

void GuiTest::WriteCompanion(const std::string& name) const {
  Write(name, "#!/bin/sh\necho started >>'" + Native("started-" + name) + "'\n");
  std::filesystem::permissions(Native(name), std::filesystem::perms::owner_all);
}

void GuiTest::Write(const std::string& path, const std::string& content) const {
  std::filesystem::create_directories(std::filesystem::path(Native(path)).parent_path());
  std::ofstream(Native(path), std::ios::binary) << content;
}

std::string GuiTest::Content(const std::string& path) const {
  std::ifstream file(Native(path), std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

bool GuiTest::Exists(const std::string& path) const {
  return std::filesystem::exists(Native(path));
}

int GuiTest::Starts(const std::string& companion) const {
  const std::string lines = Content("started-" + companion);
  return static_cast<int>(std::count(lines.begin(), lines.end(), '\n'));
}

Program& GuiTest::Start(const std::string& ini) {
  if (!ini.empty()) Write("Data/Tarnvale.ini", ini);
  machine.emplace(Machine{
      system.Parts(), {loop, boxes, host.Surroundings(), host, dialogs, tray, *mail_sockets, ftp}});
  program = std::make_unique<Program>(*machine);
  EXPECT_TRUE(program->Start());
  return *program;
}

Program& GuiTest::StartAndBringUp(const std::string& ini) {
  Start(ini);
  EndSplash();
  // The timers of the first second set up the trees and show the window again.
  EXPECT_TRUE(WaitFor([&] { return !program->engine.timers[EngineTimer::kStorageTree].Enabled; }));
  program->form.State = WindowState::kNormal;
  program->form.InTaskBar = true;
  program->form.Show();
  EXPECT_TRUE(WaitUntilActive(program->form));
  return *program;
}

void GuiTest::EndSplash() {
  loop.Deliver([&] { program->Splash.Timer1.Tick.Emit(); });
}

void GuiTest::EndPauseBeforeRun() {
  Timer& pause = program->engine.timers[EngineTimer::kRunStart];
  ASSERT_TRUE(WaitFor([&] { return pause.Enabled.Get(); }));
  loop.Deliver([&] { pause.Tick.Emit(); });
}

bool GuiTest::WaitFor(const std::function<bool()>& condition, int patience_ms) {
  return RunUntil(loop, condition, std::chrono::milliseconds(patience_ms));
}

bool GuiTest::WaitUntilShown(Window& window) {
  return WaitFor([&] {
    const QtWindow* native = host.NativeOf(window);
    return native != nullptr && native->isVisible() && !native->isMinimized();
  });
}

bool GuiTest::WaitUntilActive(Window& window) {
  constexpr int kAskAgainMs = 1000;
  if (!WaitUntilShown(window)) return false;
  const auto is_active = [&] { return NativeOf(window).isActiveWindow(); };
  if (WaitFor(is_active, kAskAgainMs)) return true;
  // A window manager on a busy machine may pass the focus on to nobody when a
  // box goes. A person would click on the window.
  NativeOf(window).activateWindow();
  return WaitFor(is_active);
}

int GuiTest::PaintsWhileIdle() {
  QElapsedTimer since;
  since.start();
  EXPECT_TRUE(WaitFor([&] { return since.elapsed() > 1500; }));
  PaintCounter paints;
  qApp->installEventFilter(&paints);
  since.restart();
  EXPECT_TRUE(WaitFor([&] { return since.elapsed() > 2000; }));
  return paints.count;
}

QWidget& GuiTest::WidgetOf(Control& control) {
  return NativeOf(*control.Owner()).PeerOf(control)->FocusWidget();
}

void GuiTest::Click(Control& control) {
  QWidget& widget = WidgetOf(control);
  EXPECT_TRUE(widget.isVisible()) << FromQt(widget.accessibleName()) << " can't be seen";
  QTest::mouseClick(&widget, Qt::LeftButton);
}

void GuiTest::Press(int key, Qt::KeyboardModifiers held) {
  QWidget* target = QApplication::activePopupWidget();
  if (target == nullptr) target = QApplication::focusWidget();
  ASSERT_NE(target, nullptr) << "nothing has the focus";
  QTest::keyClick(target, static_cast<Qt::Key>(key), held);
}

void GuiTest::Type(const char* text) {
  ASSERT_NE(QApplication::focusWidget(), nullptr);
  QTest::keyClicks(QApplication::focusWidget(), text);
}

void GuiTest::ClickRow(Control& list, int row, Qt::KeyboardModifiers held) {
  auto& view = WidgetAs<QAbstractItemView>(list);
  const QModelIndex index = view.model()->index(row, 0);
  ASSERT_TRUE(index.isValid());
  view.scrollTo(index);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, held, view.visualRect(index).center());
}

void GuiTest::DoubleClickRow(Control& list, int row) {
  auto& view = WidgetAs<QAbstractItemView>(list);
  const QPoint at = view.visualRect(view.model()->index(row, 0)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at);
}

void GuiTest::ChooseFolder(FolderTree& tree, const std::vector<std::string>& names) {
  auto& view = WidgetAs<QTreeView>(tree);
  const QModelIndex root = view.model()->index(0, 0);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(root).center());
  std::string path = "C:";
  for (const std::string& name : names) {
    const QModelIndex parent = view.currentIndex();
    if (!view.isExpanded(parent)) QTest::keyClick(&view, Qt::Key_Right);
    ASSERT_TRUE(
        WaitFor([&] { return view.isExpanded(parent) && view.model()->rowCount(parent) > 0; }));
    path += "\\" + name;
    // What was typed a moment ago doesn't count: a tree looks for what comes
    // within its typing interval as one name.
    view.setFocus();
    const QModelIndexList found = view.model()->match(
        view.model()->index(0, 0, parent), Qt::DisplayRole, ToQt(name), 1, Qt::MatchExactly);
    ASSERT_FALSE(found.isEmpty()) << path;
    view.scrollTo(found.front());
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(found.front()).center());
    ASSERT_TRUE(WaitFor([&] { return tree.SelectedPath.Get() == path; })) << path;
  }
}

void GuiTest::LetDisplay(const QStringList& what) {
  QProcess display;
  display.start("xdotool", what);
  ASSERT_TRUE(WaitFor([&] { return display.state() == QProcess::NotRunning; }));
  EXPECT_EQ(display.exitCode(), 0);
}

void GuiTest::MovePointerTo(const QPoint& global) {
  const qreal ratio = qApp->devicePixelRatio();
  LetDisplay({"mousemove", QString::number(qRound(global.x() * ratio)),
              QString::number(qRound(global.y() * ratio))});
}

void GuiTest::ChooseInMenuBar(const std::vector<QString>& captions) {
  const auto find = [](const QList<QAction*>& actions, const QString& caption) {
    for (QAction* action : actions) {
      QString text = action->text();
      text.replace("&&", "\n").remove('&').replace('\n', '&');
      if (text == caption) return action;
    }
    return static_cast<QAction*>(nullptr);
  };
  QMenuBar* bar = NativeOf(program->form).Menus();
  ASSERT_NE(bar, nullptr);
  QAction* action = find(bar->actions(), captions.front());
  ASSERT_NE(action, nullptr);
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
  for (std::size_t i = 1; i < captions.size(); ++i) {
    QMenu* menu = action->menu();
    ASSERT_TRUE(WaitFor([&] { return menu->isVisible(); }));
    action = find(menu->actions(), captions[i]);
    ASSERT_NE(action, nullptr) << FromQt(captions[i]);
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
  }
}

void GuiTest::WithNextDialog(std::function<void(QDialog&)> act) {
  ++pending_dialogs_;
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, qApp, [this, poll, act = std::move(act)] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible()) return;
    // Before the act, which may wait in a loop of its own.
    poll->stop();
    poll->deleteLater();
    --pending_dialogs_;
    answered_ = dialog;
    act(*dialog);
  });
  poll->start(kLookMs);
}

void GuiTest::RefuseUnexpectedDialog() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (dialog == nullptr || pending_dialogs_ > 0 || dialog == answered_) return;
  const auto* box = qobject_cast<QMessageBox*>(dialog);
  ADD_FAILURE() << "an unexpected dialog: " << FromQt(dialog->windowTitle()) << ", "
                << (box == nullptr ? std::string() : FromQt(box->text()));
  dialog->reject();
}

void GuiTest::AnswerNextBox(QMessageBox::StandardButton answer) {
  WithNextDialog([this, answer](QDialog& dialog) {
    auto* box = qobject_cast<QMessageBox*>(&dialog);
    box_title = FromQt(dialog.windowTitle());
    box_text = box == nullptr ? std::string() : FromQt(box->text());
    QAbstractButton* button = box == nullptr ? nullptr : box->button(answer);
    EXPECT_NE(button, nullptr) << "another dialog: " << box_title << ", " << box_text;
    if (button == nullptr) {
      dialog.reject();
    } else {
      // Not by the mouse: the window manager may still be placing the box.
      button->click();
    }
  });
}

void GuiTest::TypeIntoNextFileDialog(const std::string& native) {
  WithNextDialog([native](QDialog& dialog) {
    auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
    if (name == nullptr) {
      ADD_FAILURE() << "another dialog: " << FromQt(dialog.windowTitle());
      dialog.reject();
      return;
    }
    // In one piece: typed by letters, the list of completions would take the Enter.
    name->setText(ToQt(native));
    QTest::keyClick(name, Qt::Key_Return);
  });
}

void GuiTest::CancelNextFileDialog() {
  WithNextDialog([](QDialog& dialog) {
    EXPECT_NE(qobject_cast<QFileDialog*>(&dialog), nullptr);
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
}

}  // namespace tarnvale::testing
