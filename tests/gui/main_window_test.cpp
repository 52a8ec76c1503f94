#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "core/engine.h"
#include "hosts/linux/linux_host.h"
#include "hosts/qt/qt_file_dialogs.h"
#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_sockets.h"
#include "hosts/qt/qt_text.h"
#include "hosts/qt/qt_tray.h"
#include "hosts/qt/qt_window_host.h"
#include "platform/no_ftp_transport.h"
#include "shell/form1.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {
namespace {

constexpr int kPatienceMs = 20000;

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    Write("Data.txt", "\"C:\\Data\"\r\n");
    Write("Data/Tarnvale.ini", "[Setup]\r\nWizard=1\r\n");
    Write("Work/a.txt", "one");
    Write("Work/b.txt", "two");
    std::filesystem::create_directories(Native("Store"));
    loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
    QObject::connect(&watch_, &QTimer::timeout, [this] { RefuseUnexpectedBox(); });
    watch_.start(5);
    host.Adopt(form);
    form.Load();
  }

  std::string Native(const std::string& path) const { return folder.Path() + "/drive/" + path; }

  void Write(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(Native(path)).parent_path());
    std::ofstream(Native(path), std::ios::binary) << content;
  }

  std::string Content(const std::string& path) const {
    std::ifstream file(Native(path), std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
  }

  bool WaitFor(const std::function<bool()>& condition) {
    QElapsedTimer since;
    since.start();
    while (!condition()) {
      if (since.elapsed() > kPatienceMs) return false;
      loop.WaitPass();
    }
    return true;
  }

  /// Brings the minimised window up, as its button on the task bar does.
  void BringUp() {
    form.State = WindowState::kNormal;
    form.Show();
    ASSERT_TRUE(WaitFor([&] { return NativeWindow().isActiveWindow(); }));
  }

  QtWindow& NativeWindow() { return *host.NativeOf(form); }
  QWidget& WidgetOf(Control& control) { return NativeWindow().PeerOf(control)->FocusWidget(); }

  void Click(Control& control) { QTest::mouseClick(&WidgetOf(control), Qt::LeftButton); }

  /// Answers the box that the next action opens. Its text is in `box_text`.
  void AnswerNextBox(QMessageBox::StandardButton answer) {
    is_box_expected_ = true;
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, qApp, [this, poll, answer] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      box_text = FromQt(box->text());
      poll->deleteLater();
      answered_ = box;
      is_box_expected_ = false;
      if (box->button(answer) == nullptr) {
        ADD_FAILURE() << "another box: " << box_text;
        box->reject();
        return;
      }
      // Not by the mouse: the window manager may still be placing the box.
      box->button(answer)->click();
    });
    poll->start(5);
  }

  /// A box that nobody waits for would stay there for ever.
  void RefuseUnexpectedBox() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || is_box_expected_ || box == answered_) return;
    ADD_FAILURE() << "an unexpected box: " << FromQt(box->text());
    box->reject();
  }

  /// Opens a tree's root and types the name of a folder below it.
  void ChooseFolder(FolderTree& tree, const char* name, const std::string& path) {
    auto& view = dynamic_cast<QTreeView&>(WidgetOf(tree));
    const QModelIndex root = view.model()->index(0, 0);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(root).center());
    EXPECT_EQ(form.Focused(), &tree);
    if (!view.isExpanded(root)) QTest::keyClick(&view, Qt::Key_Right);
    ASSERT_TRUE(WaitFor([&] { return view.isExpanded(root) && view.model()->rowCount(root) > 0; }));
    QTest::keyClicks(&view, name);
    ASSERT_TRUE(WaitFor([&] { return tree.SelectedPath.Get() == path; }));
  }

  TemporaryFolder folder;
  LinuxHost system{{.root = folder.Path() + "/drive",
                    .state_folder = folder.Path() + "/state",
                    .locale_name = "C"}};
  QtEventLoop loop;
  QtWindowHost host{loop, system.files, [](const std::string& native) { return "C:" + native; }};
  QtMessageBoxes boxes;
  QtFileDialogs dialogs{host,
                        {.to_program = [](const std::string& native) { return "C:" + native; },
                         .to_native = [](const Path&) { return std::string(); }}};
  QtTray tray{loop};
  QtSockets sockets{loop};
  NoFtpTransport ftp;
  Machine machine{system.Parts(),
                  {loop, boxes, host.Surroundings(), host, dialogs, tray, sockets, ftp}};
  Engine engine{machine};
  Form1 form{engine};
  std::string box_text;

 private:
  QTimer watch_;
  QPointer<QMessageBox> answered_;
  bool is_box_expected_ = false;
};

TEST_F(MainWindowTest, APersonMakesAListChoosesThePlaceSetsTheScheduleSavesAndBacksUp) {
  BringUp();
  Click(form.Label37);
  ChooseFolder(form.List.ListTree, "Work", "C:\\Work");
  ASSERT_TRUE(WaitFor([&] { return form.List.File1.Rows().size() == 2; }));
  auto& files = dynamic_cast<QAbstractItemView&>(WidgetOf(form.List.File1));
  QTest::mouseClick(files.viewport(), Qt::LeftButton, {},
                    files.visualRect(files.model()->index(1, 0)).center());
  Click(form.List.Command5);
  EXPECT_EQ(form.List.List1.Rows.Rows(), std::vector<std::string>{"C:\\Work\\b.txt"});

  Click(form.Label36);
  ChooseFolder(form.Storage.StorageTree, "Store", "C:\\Store");
  Click(form.Storage.chameleonButton1);
  EXPECT_EQ(form.Storage.Text1.Text.Get(), "C:\\Store");

  Click(form.Label44);
  Click(form.Schedule.Optionbutton1);
  QTest::keyClicks(&WidgetOf(form.Schedule.MaskEdBox1), "1234");
  EXPECT_EQ(form.Schedule.MaskEdBox1.Text.Get(), "12:34");
  QTest::keyClick(&WidgetOf(form.Schedule.MaskEdBox1), Qt::Key_Tab);
  EXPECT_TRUE(WaitFor([&] { return form.Schedule.Label60.Caption.Get().find("12:34") == 0; }))
      << form.Schedule.Label60.Caption.Get();

  AnswerNextBox(QMessageBox::Ok);
  Click(form.Label45);
  EXPECT_EQ(box_text, "Your Tarnvale Settings Have Been Sucessfully Saved");
  const std::string saved = Content("Data/Tarnvale.ini");
  for (const char* line :
       {"AlwaysAt=12:34\r\n", "Default=False\r\n", "Dir=C:\\Store\r\n", "0=C:\\Work\\b.txt\r\n"}) {
    EXPECT_NE(saved.find(line), std::string::npos) << line << " in\n" << saved;
  }

  AnswerNextBox(QMessageBox::Yes);
  Click(form.Label49);
  ASSERT_TRUE(WaitFor([&] { return form.Progress.Label14.Caption.Get().starts_with("Success"); }));
  EXPECT_EQ(Content("Store/b.txt"), "two");
  EXPECT_TRUE(form.Progress.GroupBox3.Visible);
  EXPECT_NE(Content("Data/Backup Log.txt").find("Backup Status: OK!"), std::string::npos);
}

TEST_F(MainWindowTest, EveryControlThatTakesTheFocusHasANameForScreenReaders) {
  int unnamed = 0;
  for (const Placement& placement : form.Placements()) {
    if (!placement.control->TakesFocus()) continue;
    QAccessibleInterface* accessible =
        QAccessible::queryAccessibleInterface(&WidgetOf(*placement.control));
    if (accessible == nullptr || accessible->text(QAccessible::Name).isEmpty()) ++unnamed;
  }
  std::printf("controls without a name: %d\n", unnamed);
  EXPECT_EQ(unnamed, 0);
}

TEST_F(MainWindowTest, NoFixedTextIsCutOff) {
  for (const Placement& placement : form.Placements()) {
    const auto* label = dynamic_cast<Label*>(placement.control);
    const bool has_fixed_text = (label != nullptr && label->Role != TextRole::kValue) ||
                                dynamic_cast<OptionButton*>(placement.control) != nullptr ||
                                dynamic_cast<CheckButton*>(placement.control) != nullptr;
    if (!has_fixed_text) continue;
    const QWidget& widget = WidgetOf(*placement.control);
    EXPECT_LE(widget.sizeHint().width(), widget.width())
        << (label != nullptr ? label->Caption.Get() : "a button");
    EXPECT_LE(widget.sizeHint().height(), widget.height())
        << (label != nullptr ? label->Caption.Get() : "a button");
  }
}

TEST_F(MainWindowTest, TabVisitsEveryFieldOfTheScheduleInItsOrder) {
  BringUp();
  form.Focus(form.Schedule.Optionbutton1);
  std::vector<Control*> visited;
  for (int step = 0; step < 4; ++step) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    visited.push_back(form.Focused());
  }
  EXPECT_EQ(visited,
            (std::vector<Control*>{&form.Schedule.MaskEdBox1, &form.Schedule.Optionbutton2,
                                   &form.Schedule.MaskEdBox2, &form.Schedule.Optionbutton3}));
}

TEST_F(MainWindowTest, EnterMovesOnAsTabDoes) {
  BringUp();
  form.Focus(form.Schedule.Optionbutton1);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox1);
  EXPECT_EQ(QApplication::focusWidget(), &WidgetOf(form.Schedule.MaskEdBox1));
}

TEST_F(MainWindowTest, ABadIntervalBringsItsBoxAndTheFocusBack) {
  BringUp();
  Click(form.Schedule.Optionbutton2);
  QTest::keyClicks(&WidgetOf(form.Schedule.MaskEdBox2), "2500");
  AnswerNextBox(QMessageBox::Ok);
  Click(form.Schedule.Checkbox2[0]);
  EXPECT_EQ(box_text, "An Invalid Interval Has Been Entered.");
  EXPECT_EQ(engine.settings.EachTime, 0);
  EXPECT_EQ(form.Focused(), &form.Schedule.MaskEdBox2);
  EXPECT_FALSE(form.Schedule.Checkbox2[0].Value) << "the click that was interrupted does nothing";
}

TEST_F(MainWindowTest, AWindowBroughtUpRightAfterTheStartStaysUp) {
  ASSERT_TRUE(WaitFor([&] { return NativeWindow().isVisible(); }));
  // As the task bar does it: without the record.
  NativeWindow().setWindowState(Qt::WindowActive);
  // The timers of the first second show the window again.
  ASSERT_TRUE(WaitFor([&] { return !engine.timers[EngineTimer::kStorageTree].Enabled; }));
  ASSERT_TRUE(WaitFor([&] { return form.State.Get() == WindowState::kNormal; }));
  EXPECT_FALSE(NativeWindow().isMinimized());
}

class PaintCounter : public QObject {
 public:
  int count = 0;
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && object->isWidgetType()) ++count;
    return false;
  }
};

TEST_F(MainWindowTest, AnIdleScreenIsNotDrawnAgain) {
  BringUp();
  Click(form.Label37);
  form.Focus(form.List.Command1);  // no blinking caret
  QElapsedTimer since;
  since.start();
  ASSERT_TRUE(WaitFor([&] { return since.elapsed() > 1500; }));  // the trees are set up
  PaintCounter paints;
  qApp->installEventFilter(&paints);
  since.restart();
  ASSERT_TRUE(WaitFor([&] { return since.elapsed() > 2000; }));
  qApp->removeEventFilter(&paints);
  EXPECT_EQ(paints.count, 0) << "in two seconds of all timers ticking";
}

TEST_F(MainWindowTest, ARunningBarIsDrawnSixtyTimesASecondAtMost) {
  BringUp();
  form.Schedule.GroupBox4.Visible = false;
  form.Progress.GroupBox3.Visible = true;
  ASSERT_TRUE(WaitFor([&] { return WidgetOf(form.Progress.XP_ProgressBar1).isVisible(); }));
  PaintCounter paints;
  WidgetOf(form.Progress.XP_ProgressBar1).installEventFilter(&paints);
  QElapsedTimer since;
  since.start();
  int changes = 0;
  while (since.elapsed() < 1000) {
    engine.run.CopyBar = ++changes % 100;
    loop.Yield();
  }
  const double seconds = static_cast<double>(since.elapsed()) / 1000;
  std::printf("a running bar: %.0f changes and %.1f draws a second\n", changes / seconds,
              paints.count / seconds);
  EXPECT_GT(paints.count, 0);
  EXPECT_LE(paints.count / seconds, 61.0);
}

}  // namespace
}  // namespace tarnvale::testing
