// The registry and the user data window as a person uses them: real widgets,
// real files; only the choice of the folder is scripted.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <functional>
#include <string>

#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_text.h"
#include "hosts/qt/qt_window_host.h"
#include "registry/registry.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/fake_machine.h"
#include "userdata/user_data_window.h"

namespace tarnvale::testing {
namespace {

constexpr int kPatienceMs = 20000;

class ToolWindowsTest : public LinuxStage {
 protected:
  ToolWindowsTest() {
    loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
    windows.Adopt(user_data);
    windows.Adopt(registry_backup);
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
  void Open(Window& window) {
    window.Show();
    ASSERT_TRUE(WaitFor([&] { return windows.NativeOf(window)->isActiveWindow(); }));
  }
  QWidget& WidgetOf(Control& control) {
    return windows.NativeOf(*control.Owner())->PeerOf(control)->FocusWidget();
  }
  void Click(Control& control) { QTest::mouseClick(&WidgetOf(control), Qt::LeftButton); }

  /// Answers the box that the next action opens. Its text is in `box_text`.
  void AnswerNextBox() {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, qApp, [this, poll] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      box_text = FromQt(box->text());
      poll->deleteLater();
      box->button(QMessageBox::Ok)->click();
    });
    poll->start(5);
  }

  /// Every fixed text of a window has the room that it needs.
  void ExpectNothingCutOff(Window& window) {
    for (const Placement& placement : window.Placements()) {
      const auto* label = dynamic_cast<Label*>(placement.control);
      if (label == nullptr) continue;
      const QWidget& widget = WidgetOf(*placement.control);
      const int flags = label->Wrap ? Qt::TextWordWrap : 0;
      const QRect needed = widget.fontMetrics().boundingRect(
          QRect(0, 0, widget.width(), 10000), flags, ToQt(label->Caption.Get()).trimmed());
      EXPECT_LE(needed.width(), widget.width()) << label->Caption.Get();
      EXPECT_LE(needed.height(), widget.height()) << label->Caption.Get();
    }
  }
  void ExpectNamesForScreenReaders(Window& window) {
    for (const Placement& placement : window.Placements()) {
      if (!placement.control->TakesFocus()) continue;
      QAccessibleInterface* accessible =
          QAccessible::queryAccessibleInterface(&WidgetOf(*placement.control));
      EXPECT_TRUE(accessible != nullptr && !accessible->text(QAccessible::Name).isEmpty());
    }
  }

  LinuxHost host{surroundings};
  QtEventLoop loop;
  QtWindowHost windows{loop, host.files, [](const std::string& native) { return "C:" + native; }};
  QtMessageBoxes boxes;
  FakeMachine fake;
  Machine machine{host.Parts(),
                  {loop, boxes, windows.Surroundings(), windows, fake.dialogs, fake.tray,
                   fake.network, fake.ftp}};
  userdata user_data{machine};
  registry registry_backup{machine};
  std::string box_text;
};

TEST_F(ToolWindowsTest, NoFixedTextIsCutOff) {
  Open(user_data);
  ExpectNothingCutOff(user_data);
  Open(registry_backup);
  ExpectNothingCutOff(registry_backup);
}

TEST_F(ToolWindowsTest, EveryControlThatTakesTheFocusHasANameForScreenReaders) {
  Open(user_data);
  ExpectNamesForScreenReaders(user_data);
  Open(registry_backup);
  ExpectNamesForScreenReaders(registry_backup);
}

TEST_F(ToolWindowsTest, APersonBacksUpThunderbirdAndRestoresIt) {
  std::filesystem::create_directories(OnDrive("home/ann/.thunderbird/abc.default"));
  std::filesystem::create_directories(OnDrive("Keep"));
  WriteNative(OnDrive("home/ann/.thunderbird/abc.default/prefs.js"), "good");
  Open(user_data);
  ASSERT_TRUE(WaitFor([&] { return !user_data.Text3.Text.Get().empty(); }));
  Click(user_data.Label49);
  ASSERT_TRUE(WaitFor([&] { return WidgetOf(user_data.chameleonButton4).isVisible(); }));
  EXPECT_FALSE(WidgetOf(user_data.chameleonButton1).isVisible());

  fake.dialogs.Choose(FakeDialogs::Kind::kFolder, "C:\\Keep");
  AnswerNextBox();
  Click(user_data.chameleonButton4);
  EXPECT_EQ(box_text, "Your User Data Has Been Successfully Backed Up.");
  EXPECT_EQ(ReadNative(OnDrive("Keep/Thunderbird Backup/abc.default/prefs.js")), "good");

  WriteNative(OnDrive("home/ann/.thunderbird/abc.default/prefs.js"), "broken");
  fake.dialogs.Choose(FakeDialogs::Kind::kFolder, "C:\\Keep\\Thunderbird Backup");
  AnswerNextBox();
  Click(user_data.chameleonButton3);
  EXPECT_EQ(box_text, "Your User Data Has Been Successfully Restored");
  EXPECT_EQ(ReadNative(OnDrive("home/ann/.thunderbird/abc.default/prefs.js")), "good");
}

TEST_F(ToolWindowsTest, APersonTypesABranchAndALocationAndSaves) {
  Open(registry_backup);
  registry_backup.Combo1.Text = "";
  registry_backup.Focus(registry_backup.Combo1);
  QTest::keyClicks(QApplication::focusWidget(), "HKEY_USERS");
  ASSERT_TRUE(WaitFor([&] { return registry_backup.Text4.Text.Get() == "HKEY_USERS"; }));
  EXPECT_TRUE(WidgetOf(registry_backup.Text2).isEnabled());
  EXPECT_FALSE(WidgetOf(registry_backup.Command1).isEnabled());
  Click(registry_backup.Text3);
  QTest::keyClicks(QApplication::focusWidget(), "C:\\a.reg");
  ASSERT_TRUE(WaitFor([&] { return WidgetOf(registry_backup.Command1).isEnabled(); }));
  AnswerNextBox();
  Click(registry_backup.Command1);
  EXPECT_EQ(box_text, "Your Registry Has Been Sucessfully Backed Up");
}

class PaintCounter : public QObject {
 public:
  int count = 0;
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && object->isWidgetType()) ++count;
    return false;
  }
};

TEST_F(ToolWindowsTest, TheTimersOfIdleWindowsDrawNothing) {
  Open(registry_backup);
  registry_backup.Focus(registry_backup.chameleonButton1);  // no blinking caret
  Open(user_data);
  QElapsedTimer since;
  since.start();
  ASSERT_TRUE(WaitFor([&] { return since.elapsed() > 1000; }));
  PaintCounter paints;
  qApp->installEventFilter(&paints);
  since.restart();
  ASSERT_TRUE(WaitFor([&] { return since.elapsed() > 2000; }));
  qApp->removeEventFilter(&paints);
  EXPECT_EQ(paints.count, 0);
}

}  // namespace
}  // namespace tarnvale::testing
