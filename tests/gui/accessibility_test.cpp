// What a screen reader finds: every window of the program, all of its tree.
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QMenuBar>
#include <QTest>

#include "tests/gui/every_window.h"

namespace tarnvale::testing {
namespace {

/// Counts what a blind user would have to guess at.
class Walk {
 public:
  int met = 0;
  std::vector<std::string> unnamed;

  void Visit(QAccessibleInterface* node, const std::string& where) {
    if (node == nullptr || !node->isValid() || node->state().invisible) return;
    ++met;
    const std::string here = where + "/" + Describe(*node);
    if (NeedsName(*node) && node->text(QAccessible::Name).trimmed().isEmpty()) {
      unnamed.push_back(here);
    }
    // The rows of lists and trees are data; what can be seen of it is text.
    if (IsData(*node)) return;
    for (int i = 0; i < node->childCount(); ++i) Visit(node->child(i), here);
  }

 private:
  static std::string Describe(QAccessibleInterface& node) {
    const QObject* object = node.object();
    return (object == nullptr ? std::string("?") : object->metaObject()->className()) + "[" +
           std::to_string(node.role()) + "]" + node.text(QAccessible::Name).toStdString();
  }

  /// Everything but what only holds others or is drawn as ground.
  static bool NeedsName(QAccessibleInterface& node) {
    switch (node.role()) {
      case QAccessible::Client:
      case QAccessible::Pane:
      case QAccessible::Separator:
      case QAccessible::Border:
      case QAccessible::ScrollBar:
      case QAccessible::Splitter:
      case QAccessible::MenuBar:
      case QAccessible::Grip:
      case QAccessible::Graphic:
      case QAccessible::LayeredPane:
        return node.state().focusable;
      case QAccessible::StaticText:
        // An empty line says nothing to sighted users, either.
        return false;
      case QAccessible::Grouping:
        return false;
      default:
        return true;
    }
  }

  static bool IsData(QAccessibleInterface& node) {
    return qobject_cast<QAbstractItemView*>(node.object()) != nullptr;
  }
};

class GuiAccessibility : public EveryWindowTest {
 protected:
  /// Walks through a window and says what it found.
  void ExpectAllNamed(QWidget& window, const std::string& name) {
    Walk walk;
    walk.Visit(QAccessible::queryAccessibleInterface(&window), name);
    std::printf("%-28s %3d met, %d unnamed\n", name.c_str(), walk.met,
                static_cast<int>(walk.unnamed.size()));
    EXPECT_GT(walk.met, 1) << name;
    for (const std::string& where : walk.unnamed) ADD_FAILURE() << "unnamed: " << where;
  }
  void ExpectAllNamed(Window& window, const std::string& name) {
    ASSERT_TRUE(WaitUntilShown(window)) << name;
    ExpectAllNamed(NativeOf(window), name);
  }
};

TEST_F(GuiAccessibility, EverythingOnEachScreenOfTheMainWindowHasAName) {
  Program& p = StartAndBringUp();
  ForEachScreen(p, [&](const std::string& name) { ExpectAllNamed(p.form, name); });
}

TEST_F(GuiAccessibility, EverythingOnEachOtherWindowHasAName) {
  Program& p = Start("");
  ExpectAllNamed(p.Splash, "splash");
  EndSplash();
  ExpectAllNamed(p.Agreement.Get(), "agreement");
  LoadEveryWindow(p);
  for (Window* window : OtherWindows(p)) {
    window->Show();
    ExpectAllNamed(*window, NameOf(*window));
    // Panels share a place, and one of them lies before the others.
    for (const Placement& placement : window->Placements()) {
      if (dynamic_cast<GroupBox*>(placement.control) != nullptr) placement.control->Visible = true;
    }
    ExpectAllNamed(*window, NameOf(*window) + ", all panels");
    window->Hide();
  }
}

TEST_F(GuiAccessibility, EverythingInADialogHasAName) {
  StartAndBringUp();
  int dialogs_met = 0;
  const auto walk_and_leave = [&](const char* name) {
    WithNextDialog([this, name, &dialogs_met](QDialog& dialog) {
      ++dialogs_met;
      ExpectAllNamed(dialog, name);
      dialog.reject();
    });
  };
  walk_and_leave("open dialog");
  Click(program->form.Label38);
  Click(program->form.General.chameleonButton3);
  walk_and_leave("save dialog");
  Click(program->form.General.chameleonButton2);
  walk_and_leave("folder dialog");
  Click(program->form.Label39);
  Click(program->form.Advanced.chameleonButton4);
  walk_and_leave("question");
  Click(program->form.Label49);
  EXPECT_EQ(dialogs_met, 4);
}

TEST_F(GuiAccessibility, TheMenuIsReadRowByRow) {
  Form1& f = StartAndBringUp().form;
  Walk walk;
  for (QAction* action : NativeOf(f).Menus()->actions()) {
    QMenu* menu = action->menu();
    ASSERT_NE(menu, nullptr);
    menu->popup(QPoint(0, 0));
    ASSERT_TRUE(WaitFor([&] { return menu->isVisible(); }));
    walk.Visit(QAccessible::queryAccessibleInterface(menu), "menu");
    menu->close();
  }
  EXPECT_GE(walk.met, 7);
  for (const std::string& where : walk.unnamed) ADD_FAILURE() << "unnamed: " << where;
}

TEST_F(GuiAccessibility, DrawnControlsReportTheirState) {
  Form1& f = StartAndBringUp("[Log]\r\nSave=True\r\n[Setup]\r\nWizard=1\r\n").form;
  const auto read = [this](Control& control) {
    return QAccessible::queryAccessibleInterface(&WidgetOf(control));
  };
  EXPECT_FALSE(read(f.Schedule.CheckBox9)->state().checked);
  EXPECT_TRUE(read(f.Schedule.CheckBox9)->state().checkable);
  f.Schedule.CheckBox9.Checked = true;
  EXPECT_TRUE(read(f.Schedule.CheckBox9)->state().checked);
  EXPECT_FALSE(read(f.Advanced.chameleonButton5)->state().disabled);
  f.Advanced.chameleonButton5.Enabled = false;
  EXPECT_TRUE(read(f.Advanced.chameleonButton5)->state().disabled);
  program->engine.run.CopyBar = 40;
  ASSERT_NE(read(f.Progress.XP_ProgressBar1)->valueInterface(), nullptr);
  EXPECT_EQ(read(f.Progress.XP_ProgressBar1)->valueInterface()->currentValue(), 40);

  Click(f.Label37);
  QWidget& button = WidgetOf(f.List.Command4);
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_TRUE(read(f.List.Command4)->state().pressed);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_FALSE(read(f.List.Command4)->state().pressed);
}

}  // namespace
}  // namespace tarnvale::testing
