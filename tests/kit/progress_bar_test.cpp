#include "kit/progress_bar.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "tests/kit/recording_painter.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

int DrawingsOf(XP_ProgressBar& bar, const std::function<void()>& action) {
  int drawings = 0;
  const Subscription count = bar.LookChanged.Subscribe([&] { ++drawings; });
  action();
  return drawings;
}

TEST(ProgressBar, HoldsItsPositionAsAPercentOfMax) {
  XP_ProgressBar bar;
  bar.Max = 200;
  bar.Value = 50;
  EXPECT_EQ(bar.Percent(), 25);
  EXPECT_EQ(bar.Value, 50);
}

TEST(ProgressBar, RoundsThePercentHalfToEven) {
  XP_ProgressBar bar;
  bar.Max = 200;
  bar.Value = 1;  // 0.5
  EXPECT_EQ(bar.Percent(), 0);
  EXPECT_EQ(bar.Value, 0);
  bar.Value = 3;  // 1.5
  EXPECT_EQ(bar.Percent(), 2);
  EXPECT_EQ(bar.Value, 4);
}

TEST(ProgressBar, AddsMinToThePercent) {
  XP_ProgressBar bar;
  bar.Min = 10;
  bar.Value = 50;
  EXPECT_EQ(bar.Percent(), 60);
  EXPECT_EQ(bar.Value, 70);  // 60 / 100 * 100 + 10
}

TEST(ProgressBar, ReadsWithoutANegativeMin) {
  XP_ProgressBar bar;
  bar.Min = -10;
  bar.Value = 50;
  EXPECT_EQ(bar.Percent(), 40);
  EXPECT_EQ(bar.Value, 40);
}

TEST(ProgressBar, CutsAPercentAbove100AtDrawing) {
  XP_ProgressBar bar;
  bar.Value = 105;
  EXPECT_EQ(bar.Percent(), 100);
  EXPECT_EQ(bar.Value, 100);
}

TEST(ProgressBar, ReachesItsMaximumInStepsThatPassIt) {
  // The animated bars add 7 and wrap when the value equals the maximum.
  XP_ProgressBar bar;
  for (int tick = 0; tick < 15; ++tick) bar.Value = bar.Value + 7;
  EXPECT_EQ(bar.Value, bar.Max.Get());
}

TEST(ProgressBar, IsFullAt100Of100) {
  XP_ProgressBar bar;
  bar.Value = 100;
  EXPECT_EQ(bar.Percent(), 100);
}

TEST(ProgressBar, RunsInStepsOf25AndBeginsAgain) {
  XP_ProgressBar bar;
  std::vector<int> percents;
  for (int tick = 0; tick < 5; ++tick) {
    if (bar.Value == bar.Max) bar.Value = 0;
    bar.Value = bar.Value + 25;
    percents.push_back(bar.Percent());
  }
  EXPECT_EQ(percents, (std::vector<int>{25, 50, 75, 100, 25}));
}

TEST(ProgressBar, KeepsTheOldPercentAndRedrawsWhenTheArithmeticFails) {
  XP_ProgressBar bar;
  bar.Value = 40;
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Value = std::numeric_limits<int>::max(); }), 1);
  EXPECT_EQ(bar.Percent(), 40);
  bar.Max = 0;
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Value = 5; }), 1);
  EXPECT_EQ(bar.Percent(), 40);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Value = 0; }), 1);
  EXPECT_EQ(bar.Percent(), 40);
}

TEST(ProgressBar, RedrawsByItsSettersButForBrushStyleMinAndMax) {
  XP_ProgressBar bar;
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Color = 0x0000FF; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Image = Picture{Raster{1, 1, {0xFF000000}}, false}; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Orientation = 1; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Scrolling = 9; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.ShowText = true; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Value = 10; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.BrushStyle = 2; }), 0);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Min = 1; }), 0);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Max = 50; }), 0);
}

TEST(ProgressBar, RedrawsOnEachResize) {
  XP_ProgressBar bar;
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.OnResize({100, 20}); }), 1);
}

TEST(ProgressBar, MarksEachPropertyAsChanged) {
  XP_ProgressBar bar;
  std::vector<std::string> names;
  bar.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  bar.BrushStyle = 1;
  bar.Color = 0x0000FF;
  bar.Font = Font{.family = {}, .size_pt = 12};
  bar.Image = Picture{Raster{1, 1, {0xFF000000}}, false};
  bar.Min = -1;
  bar.Max = 90;
  bar.Orientation = 1;
  bar.Scrolling = 9;
  bar.ShowText = true;
  bar.Value = 9;
  EXPECT_EQ(names, (std::vector<std::string>{"BrushStyle", "Color", "Font", "Image", "Min", "Max",
                                             "Orientation", "Scrolling", "ShowText", "Value"}));
}

TEST(ProgressBar, MarksAPropertyThatGetsTheValueThatItHasAndRedrawsAsEver) {
  XP_ProgressBar bar;
  std::vector<std::string> names;
  bar.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Color = bar.Color.Get(); }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Image = Picture{}; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Orientation = 0; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Scrolling = 0; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.ShowText = false; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Value = 0; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.BrushStyle = 4; }), 0);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Min = 0; }), 0);
  EXPECT_EQ(DrawingsOf(bar, [&] { bar.Max = 100; }), 0);
  EXPECT_EQ(names, (std::vector<std::string>{"Color", "Image", "Orientation", "Scrolling",
                                             "ShowText", "Value", "BrushStyle", "Min", "Max"}));
}

TEST(ProgressBar, IsReadWithoutMarkingAnything) {
  XP_ProgressBar bar;
  std::vector<std::string> names;
  bar.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  bar.ReadProperties({});
  EXPECT_TRUE(names.empty());
}

TEST(ProgressBar, HasItsDefaults) {
  XP_ProgressBar bar;
  EXPECT_EQ(bar.BrushStyle, 4);
  EXPECT_EQ(bar.Color, 0x8000000DU);
  EXPECT_EQ(bar.Min, 0);
  EXPECT_EQ(bar.Max, 100);
  EXPECT_EQ(bar.Orientation, 0);
  EXPECT_EQ(bar.Scrolling, 0);
  EXPECT_FALSE(bar.ShowText);
  EXPECT_EQ(bar.Value, 0);
  EXPECT_TRUE(bar.Image.Get().Empty());
}

TEST(ProgressBar, ComesBackFromABag) {
  XP_ProgressBar written;
  written.BrushStyle = 5;
  written.Color = 0x123456;
  written.Max = 200;
  written.Orientation = 1;
  written.Scrolling = 9;
  written.ShowText = true;
  written.Value = 50;
  PropertyBag bag;
  written.WriteProperties(bag);
  XP_ProgressBar read;
  read.ReadProperties(bag);
  EXPECT_EQ(read.BrushStyle, 5);
  EXPECT_EQ(read.Color, 0x123456U);
  EXPECT_EQ(read.Max, 200);
  EXPECT_EQ(read.Orientation, 1);
  EXPECT_EQ(read.Scrolling, 9);
  EXPECT_TRUE(read.ShowText);
  EXPECT_EQ(read.Value, 50);
}

TEST(ProgressBar, ReadsItsDefaultsFromAnEmptyBag) {
  XP_ProgressBar bar;
  bar.BrushStyle = 1;
  bar.Color = 0x123456;
  bar.Font = Font{.family = "Sans"};
  bar.Image = Picture{Raster{1, 1, {0xFF000000}}, false};
  bar.Min = 10;
  bar.Max = 50;
  bar.Orientation = 1;
  bar.Scrolling = 9;
  bar.ShowText = true;
  bar.Value = 25;
  bar.ReadProperties({});
  EXPECT_EQ(bar.BrushStyle, 4);
  EXPECT_EQ(bar.Color, 0x8000000DU);
  EXPECT_EQ(bar.Font.Get(), Font{});
  EXPECT_TRUE(bar.Image.Get().Empty());
  EXPECT_EQ(bar.Min, 0);
  EXPECT_EQ(bar.Max, 100);
  EXPECT_EQ(bar.Orientation, 0);
  EXPECT_EQ(bar.Scrolling, 0);
  EXPECT_FALSE(bar.ShowText);
  EXPECT_EQ(bar.Value, 0);
}

TEST(ProgressBar, RefusesAStoredBrushStyleBeyond16Bits) {
  PropertyBag bag;
  bag.Write("BrushStyle", 70000);
  XP_ProgressBar bar;
  EXPECT_EQ(RaisedBy([&] { bar.ReadProperties(bag); }), kOverflow);
}

TEST(BoundProgressBar, ShowsTheRecordFromTheStart) {
  Property<int> record{30};
  const XP_ProgressBar bar(record);
  EXPECT_EQ(bar.Percent(), 30);
}

TEST(BoundProgressBar, FollowsTheRecord) {
  Property<int> record{0};
  XP_ProgressBar bar(record);
  EXPECT_EQ(DrawingsOf(bar, [&] { record = 25; }), 1);
  EXPECT_EQ(bar.Percent(), 25);
  EXPECT_EQ(record, 25);
}

TEST(BoundProgressBar, RedrawsOnceWhenItsRecordGetsTheValueThatItHas) {
  Property<int> record{25};
  XP_ProgressBar bar(record);
  std::vector<std::string> names;
  bar.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  EXPECT_EQ(DrawingsOf(bar, [&] { record = 25; }), 1);
  EXPECT_EQ(DrawingsOf(bar, [&] { record = 130; }), 1);
  EXPECT_EQ(names, (std::vector<std::string>{"Value", "Value"}));
}

TEST(BoundProgressBar, WritesTheRecord) {
  Property<int> record{0};
  XP_ProgressBar bar(record);
  bar.Value = 60;
  EXPECT_EQ(record, 60);
}

TEST(BoundProgressBar, LeavesInTheRecordWhatValueReads) {
  Property<int> record{0};
  XP_ProgressBar bar(record);
  record = 140;
  EXPECT_EQ(record, 100);
  bar.Max = 200;
  EXPECT_EQ(record, 200);
  EXPECT_EQ(bar.Percent(), 100);
}

TEST(BoundProgressBar, TakesAValueThatAHandlerOfTheRecordWrites) {
  Property<int> record{0};
  XP_ProgressBar bar(record);
  record.Changed.Listen([&] {
    if (record == 100) record = 0;
  });
  record = 140;
  EXPECT_EQ(record, 0);
  EXPECT_EQ(bar.Percent(), 0);
}

TEST(BoundProgressBar, CanGoBeforeItsRecord) {
  Property<int> record{0};
  { XP_ProgressBar bar(record); }
  record = 25;
  EXPECT_EQ(record, 25);
}

struct TextCase {
  int mode;
  int percent;
  std::string text;
  Color color;
};

class ProgressTextTest : public ::testing::TestWithParam<TextCase> {};

TEST_P(ProgressTextTest, IsThePercentOrSearching) {
  XP_ProgressBar bar;
  bar.Scrolling = GetParam().mode;
  bar.ShowText = true;
  bar.Value = GetParam().percent;
  Canvas canvas({100, 20}, 1);
  RecordingPainter text;
  bar.Paint(canvas, text);
  ASSERT_EQ(text.drawn.size(), 1U);
  EXPECT_EQ(text.drawn[0].text, GetParam().text);
  EXPECT_EQ(text.drawn[0].look.color, GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(Modes, ProgressTextTest,
                         ::testing::Values(TextCase{0, 0, "0 %", kBlack},
                                           TextCase{2, 40, "Searching..", kBlack},
                                           TextCase{6, 40, "40 %", 0xC0C0C0},
                                           TextCase{9, 100, "100 %", kBlack}));

TEST(ProgressText, IsAbsentUnlessShown) {
  XP_ProgressBar bar;
  bar.Scrolling = 2;
  Canvas canvas({100, 20}, 1);
  RecordingPainter text;
  bar.Paint(canvas, text);
  EXPECT_TRUE(text.drawn.empty());
}

TEST(ProgressReading, ReportsToAScreenReaderHowFarItGot) {
  XP_ProgressBar bar;
  bar.Max = 200;
  bar.Value = 50;
  EXPECT_EQ(bar.StateForReaders().range, (AccessibleRange{.value = 50, .min = 0, .max = 200}));
  EXPECT_FALSE(bar.StateForReaders().checked.has_value());
}

}  // namespace
}  // namespace tarnvale::testing
