#include <QApplication>
#include <cmath>

#include "tests/hosts/contract/drawn_recorder.h"
#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

using testing::Heard;
using testing::Recorder;

class QtDrawn : public QtFixture {
 protected:
  void ShowDrawn() {
    Place(drawn);
    Show();
    ASSERT_TRUE(WaitFor([&] { return drawn.paints > 0; }));
    drawn.heard.clear();
  }

  Recorder drawn;
};

TEST_F(QtDrawn, HearsItsAccessKeyAndItsNextOne) {
  ShowDrawn();
  QTest::keyClick(&Native(), Qt::Key_B, Qt::AltModifier);
  ASSERT_TRUE(WaitFor([&] { return !drawn.heard.empty(); }));
  EXPECT_EQ(drawn.heard.back(), "access key");
  drawn.access_key = U'q';
  drawn.LookChanged.Emit();
  drawn.heard.clear();
  // Until the frame has come that takes the new key over.
  EXPECT_TRUE(WaitFor([&] {
    QTest::keyClick(&Native(), Qt::Key_Q, Qt::AltModifier);
    return !drawn.heard.empty() && drawn.heard.back() == "access key";
  }));
}

class PaintEvents final : public QObject {
 public:
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

TEST_F(QtDrawn, IsSentToTheScreenOnlyWhenItLooksDifferent) {
  ShowDrawn();
  PaintEvents sent;
  WidgetOf(drawn).installEventFilter(&sent);
  // What is still to come of the window's first appearance comes with this.
  WidgetOf(drawn).update();
  ASSERT_TRUE(WaitFor([&] { return sent.count > 0; }));
  sent.count = 0;
  for (int frame = 0; frame < 2; ++frame) {
    const int paints = drawn.paints;
    drawn.LookChanged.Emit();
    ASSERT_TRUE(WaitFor([&] { return drawn.paints > paints; }));
  }
  EXPECT_EQ(sent.count, 0);
  drawn.color = MakeColor(0, 255, 0);
  drawn.LookChanged.Emit();
  EXPECT_TRUE(WaitFor([&] { return sent.count > 0; }));
}

TEST_F(QtDrawn, IsPaintedAtMostSixtyTimesASecond) {
  ShowDrawn();
  const int paints = drawn.paints;
  QElapsedTimer since;
  since.start();
  while (since.elapsed() < 500) {
    drawn.LookChanged.Emit();
    loop.Yield();
  }
  EXPECT_GT(drawn.paints - paints, 1);
  EXPECT_LE(drawn.paints - paints, 32);
}

TEST_F(QtDrawn, ShowsItsDrawingAndItsParentWhereItIsClear) {
  ShowDrawn();
  EXPECT_EQ(drawn.size, (Size{200, 100}));
  const QImage shown = Native().grab().toImage();
  const QPoint corner = WidgetOf(drawn).mapTo(&Native(), QPoint(0, 0));
  const int scale = static_cast<int>(shown.devicePixelRatio());
  EXPECT_EQ(shown.pixel((corner + QPoint(5, 5)) * scale), qRgb(255, 0, 0));
  EXPECT_EQ(shown.pixel((corner + QPoint(50, 50)) * scale), shown.pixel(2, 2));
}

TEST_F(QtDrawn, DrawsAtTheDisplaysScale) {
  ShowDrawn();
  EXPECT_EQ(drawn.scale, std::ceil(Native().devicePixelRatioF()));
}

TEST_F(QtDrawn, HoldsTheControlsThatItContains) {
  Label label;
  Place(drawn);
  window.Place({{&label, &drawn, {5, 5, 50, 20}}});
  Show();
  EXPECT_EQ(WidgetOf(label).parentWidget(), &WidgetOf(drawn));
}

TEST_F(QtDrawn, AScreenReaderReadsAndPressesIt) {
  ShowDrawn();
  QAccessibleInterface* accessible = Accessible(drawn);
  EXPECT_EQ(accessible->role(), QAccessible::Button);
  EXPECT_EQ(NameOf(drawn), "Backup Selected Items");
  accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(drawn.heard, Heard{"press"});
}

TEST_F(QtDrawn, AScreenReaderReadsItsState) {
  ShowDrawn();
  QAccessibleInterface* accessible = Accessible(drawn);
  EXPECT_FALSE(accessible->state().checkable);
  EXPECT_FALSE(accessible->state().pressed);
  EXPECT_FALSE(accessible->state().disabled);
  EXPECT_EQ(accessible->valueInterface(), nullptr);
  drawn.state = {.checked = true, .pressed = true};
  EXPECT_TRUE(accessible->state().checkable);
  EXPECT_TRUE(accessible->state().checked);
  EXPECT_TRUE(accessible->state().pressed);
  drawn.Enabled = false;
  EXPECT_TRUE(accessible->state().disabled);
}

TEST_F(QtDrawn, AScreenReaderReadsHowFarItGotAndCannotMoveIt) {
  ShowDrawn();
  drawn.state.range = AccessibleRange{.value = 40, .min = 10, .max = 200};
  QAccessibleValueInterface* value = Accessible(drawn)->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->currentValue(), 40);
  EXPECT_EQ(value->minimumValue(), 10);
  EXPECT_EQ(value->maximumValue(), 200);
  value->setCurrentValue(90);
  EXPECT_EQ(value->currentValue(), 40);
}

/// What a screen reader hears, written down.
Heard reported;
void WriteDown(QAccessibleEvent* event) {
  if (event->type() == QAccessible::StateChanged) {
    const auto* change = static_cast<QAccessibleStateChangeEvent*>(event);
    if (change->changedStates().checked) reported.emplace_back("checked");
    if (change->changedStates().pressed) reported.emplace_back("pressed");
  } else if (event->type() == QAccessible::ValueChanged) {
    const auto* change = static_cast<QAccessibleValueChangeEvent*>(event);
    reported.push_back("value " + std::to_string(change->value().toInt()));
  }
}

/// Runs where a screen reader can listen: with an accessibility bus.
using QtReaders = QtDrawn;

TEST_F(QtReaders, HearOfEachChangeOfStateOnce) {
  ShowDrawn();
  ASSERT_TRUE(WaitFor([] { return QAccessible::isActive(); }));
  drawn.LookChanged.Emit();
  const int before = drawn.paints;
  ASSERT_TRUE(WaitFor([&] { return drawn.paints > before; }));
  const auto other = QAccessible::installUpdateHandler(WriteDown);
  reported.clear();
  const auto change = [this](const AccessibleState& state) {
    drawn.state = state;
    drawn.LookChanged.Emit();
    const int paints = drawn.paints;
    EXPECT_TRUE(WaitFor([&] { return drawn.paints > paints; }));
  };
  change({.checked = true});
  change({.checked = true});
  change({.checked = true, .pressed = true});
  change({.checked = true, .pressed = true, .range = AccessibleRange{.value = 7}});
  QAccessible::installUpdateHandler(other);
  EXPECT_EQ(reported, (Heard{"checked", "pressed", "value 7"}));
}

}  // namespace
}  // namespace tarnvale
