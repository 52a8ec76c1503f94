#include "kit/check_box.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/tick_pictures.h"
#include "tests/kit/recording_painter.h"

namespace tarnvale::testing {
namespace {

class CheckBoxTest : public ::testing::Test {
 protected:
  CheckBoxTest() {
    box.OnResize({120, 17});
    box.ButtonClicked.Listen([this](bool& state) { states.push_back(state); });
  }

  void ClickAt(Point at, MouseButton button = MouseButton::kLeft) {
    box.OnMouseDown(button, at);
    box.OnMouseUp(button, at);
    box.OnClick(button);
  }
  void ClickOnPicture() { ClickAt({6, 8}); }

  CheckBox box;
  std::vector<bool> states;
};

TEST_F(CheckBoxTest, FlipsByAClickOnThePicture) {
  ClickOnPicture();
  EXPECT_TRUE(box.Checked);
  EXPECT_TRUE(box.ShowsTick());
  ClickOnPicture();
  EXPECT_FALSE(box.Checked);
  EXPECT_FALSE(box.ShowsTick());
  EXPECT_EQ(states, (std::vector<bool>{true, false}));
}

TEST_F(CheckBoxTest, IgnoresAClickBesideThePicture) {
  ClickAt({13, 8});
  ClickAt({40, 8});
  ClickAt({6, 1});   // above: the picture is in the middle, from 2 to 14
  ClickAt({6, 15});  // below
  EXPECT_FALSE(box.Checked);
  EXPECT_TRUE(states.empty());
}

TEST_F(CheckBoxTest, IgnoresTheRightButton) {
  ClickAt({6, 8}, MouseButton::kRight);
  EXPECT_FALSE(box.Checked);
}

TEST_F(CheckBoxTest, IgnoresAClickWhileDisabled) {
  box.Enabled = false;
  ClickOnPicture();
  box.Press();
  EXPECT_FALSE(box.Checked);
  EXPECT_TRUE(states.empty());
}

TEST_F(CheckBoxTest, LooksTheSameWhileDisabled) {
  box.Caption = "Tick";
  RecordingPainter enabled_text;
  Canvas enabled({120, 17}, 1);
  box.Paint(enabled, enabled_text);
  box.Enabled = false;
  RecordingPainter disabled_text;
  Canvas disabled({120, 17}, 1);
  box.Paint(disabled, disabled_text);
  for (int y = 0; y < 17; ++y) {
    for (int x = 0; x < 120; ++x) ASSERT_EQ(enabled.PixelAt(x, y), disabled.PixelAt(x, y));
  }
  EXPECT_EQ(enabled_text.drawn.at(0).look.color, disabled_text.drawn.at(0).look.color);
}

TEST_F(CheckBoxTest, RaisesNoEventWhenSetByCode) {
  box.Checked = true;
  EXPECT_TRUE(box.ShowsTick());
  EXPECT_TRUE(states.empty());
}

TEST_F(CheckBoxTest, TakesTheStateThatAHandlerWritesButKeepsThePicture) {
  box.ButtonClicked.Listen([](bool& state) { state = false; });
  ClickOnPicture();
  EXPECT_FALSE(box.Checked);
  EXPECT_TRUE(box.ShowsTick());
}

TEST_F(CheckBoxTest, SettingTheStateThatItHasShowsTheMatchingPicture) {
  box.ButtonClicked.Listen([](bool& state) { state = false; });
  ClickOnPicture();
  ASSERT_TRUE(box.ShowsTick());
  box.Checked = false;
  EXPECT_FALSE(box.ShowsTick());
}

TEST_F(CheckBoxTest, AHandlerThatWritesTheReferenceHasTheLastWord) {
  box.ButtonClicked.Listen([this](bool& state) {
    box.Checked = false;
    EXPECT_FALSE(state);
    state = true;
  });
  ClickOnPicture();
  EXPECT_TRUE(box.Checked);
  EXPECT_FALSE(box.ShowsTick()) << "the picture is that of the last setting";
}

TEST_F(CheckBoxTest, IgnoresAPressBesideThePictureThatIsLetGoOnIt) {
  box.OnMouseDown(MouseButton::kLeft, {40, 8});
  box.OnMouseUp(MouseButton::kLeft, {6, 8});
  box.OnClick(MouseButton::kLeft);
  box.OnMouseDown(MouseButton::kLeft, {6, 8});
  box.OnMouseUp(MouseButton::kLeft, {40, 8});
  box.OnClick(MouseButton::kLeft);
  EXPECT_TRUE(states.empty());
}

TEST_F(CheckBoxTest, FlipsBySpaceAndByItsAccessKeyAndByAScreenReader) {
  box.OnKeyUp({Key::kSpace});
  EXPECT_TRUE(box.Checked);
  box.OnAccessKey();
  EXPECT_FALSE(box.Checked);
  box.Press();
  EXPECT_TRUE(box.Checked);
  EXPECT_EQ(states.size(), 3U);
}

TEST_F(CheckBoxTest, FlipsByNoOtherKey) {
  box.OnKeyUp({Key::kEnter});
  EXPECT_FALSE(box.Checked);
}

TEST_F(CheckBoxTest, TakesItsAccessKeyAndItsSpokenNameFromTheCaption) {
  box.Caption = "Show &Alerts";
  EXPECT_EQ(box.AccessKeyChar(), U'a');
  EXPECT_EQ(box.AccessibleText(), "Show Alerts");
}

TEST_F(CheckBoxTest, HoldsBoldInItsFont) {
  box.Bold = true;
  EXPECT_TRUE(box.Font.Get().bold);
  box.Font = Font{.family = "Sans"};
  EXPECT_FALSE(box.Bold);
  EXPECT_EQ(box.Font.Get().family, "Sans");
}

TEST_F(CheckBoxTest, WritesItsCaptionInItsColourAndFont) {
  box.Caption = "Tick";
  box.ForeColor = 0x0000FF;
  box.Bold = true;
  RecordingPainter text;
  Canvas canvas({120, 17}, 1);
  box.Paint(canvas, text);
  ASSERT_EQ(text.drawn.size(), 1U);
  EXPECT_EQ(text.drawn[0].text, "Tick");
  EXPECT_EQ(text.drawn[0].look.color, 0x0000FFU);
  EXPECT_TRUE(text.drawn[0].look.font.bold);
}

TEST_F(CheckBoxTest, CutsTheFocusRectangleOfALongCaptionAtItsOwnEdge) {
  box.Caption = "A Caption Of 24 Letters!";  // 144 pixels
  box.OnFocusChanged(true);
  RecordingPainter text;
  Canvas canvas({60, 17}, 1);
  box.Paint(canvas, text);
  EXPECT_EQ(canvas.PixelAt(58, 8), std::nullopt);
  EXPECT_EQ(canvas.PixelAt(59, 9), kBlack);
}

TEST_F(CheckBoxTest, MarksItsPersistedPropertiesOnly) {
  std::vector<std::string> names;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.Checked = true;
  box.Enabled = false;
  box.Caption = "Tick";
  box.Bold = true;
  box.ForeColor = 1;
  EXPECT_EQ(names, (std::vector<std::string>{"Checked", "Enabled", "Caption"}));
}

TEST_F(CheckBoxTest, MarksAPropertyThatGetsTheValueThatItHasAndIsDrawnAnew) {
  std::vector<std::string> names;
  int drawings = 0;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.LookChanged.Listen([&] { ++drawings; });
  box.Checked = false;
  box.Enabled = true;
  box.Caption = "";
  EXPECT_EQ(names, (std::vector<std::string>{"Checked", "Enabled", "Caption"}));
  EXPECT_EQ(drawings, 3);
}

TEST_F(CheckBoxTest, IsReadWithoutMarkingAnything) {
  std::vector<std::string> names;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.ReadProperties({}, "CheckBox1");
  EXPECT_TRUE(names.empty());
}

TEST_F(CheckBoxTest, ComesBackFromABag) {
  box.Checked = true;
  box.Enabled = false;
  box.Caption = "Tick";
  PropertyBag bag;
  box.WriteProperties(bag);
  CheckBox read;
  read.ReadProperties(bag, "CheckBox1");
  EXPECT_TRUE(read.Checked);
  EXPECT_TRUE(read.ShowsTick());
  EXPECT_FALSE(read.Enabled);
  EXPECT_EQ(read.Caption.Get(), "Tick");
}

TEST_F(CheckBoxTest, ReadsItsDefaultsFromAnEmptyBag) {
  box.Checked = true;
  box.ReadProperties({}, "CheckBox1");
  EXPECT_FALSE(box.Checked);
  EXPECT_TRUE(box.Enabled);
  EXPECT_EQ(box.Caption.Get(), "CheckBox1");
}

TEST_F(CheckBoxTest, BeginsClearAndIsCalledByItsName) {
  box.Checked = true;
  box.InitProperties("CheckBox1");
  EXPECT_FALSE(box.ShowsTick());
  EXPECT_EQ(box.Caption.Get(), "CheckBox1");
}

TEST(BoundCheckBox, ShowsAndSetsItsRecord) {
  Property<bool> record{true};
  CheckBox box(record);
  EXPECT_TRUE(box.ShowsTick());
  record = false;
  EXPECT_FALSE(box.ShowsTick());
  box.Press();
  EXPECT_TRUE(record);
}

TEST(BoundCheckBox, ShowsTheMatchingPictureWhenItsRecordGetsTheStateThatItHas) {
  Property<bool> record{false};
  CheckBox box(record);
  box.ButtonClicked.Listen([](bool& state) { state = false; });
  box.Press();
  ASSERT_TRUE(box.ShowsTick());
  record = false;
  EXPECT_FALSE(box.ShowsTick());
}

TEST(BoundCheckBox, CanGoBeforeItsRecord) {
  Property<bool> record{true};
  { CheckBox box(record); }
  record = false;
  EXPECT_FALSE(record);
}

TEST(TickPictures, AreInTheDisplaysResolution) {
  EXPECT_EQ(TickedPicture(1).width, 13);
  EXPECT_EQ(TickedPicture(2).width, 26);
  EXPECT_EQ(ClearPicture(3).height, 39);
}

TEST(TickPictures, HaveTheSameFrameTickedAndClear) {
  const Raster ticked = TickedPicture(2);
  const Raster clear = ClearPicture(2);
  for (int i = 0; i < 26; ++i) {
    EXPECT_EQ(ticked.At(i, 0), clear.At(i, 0));
    EXPECT_EQ(ticked.At(i, 1), clear.At(i, 0));
    EXPECT_EQ(ticked.At(0, i), clear.At(0, 0));
    EXPECT_EQ(ticked.At(25, i), clear.At(0, 0));
  }
}

TEST(TickPictures, AreFinerAtScale2ThanDoubled) {
  const Raster fine = TickedPicture(2);
  int differing_blocks = 0;
  for (int y = 0; y < 26; y += 2) {
    for (int x = 0; x < 26; x += 2) {
      if (fine.At(x, y) != fine.At(x + 1, y + 1)) ++differing_blocks;
    }
  }
  EXPECT_GT(differing_blocks, 20);
}

TEST_F(CheckBoxTest, ReportsItsStateToAScreenReaderNotItsPicture) {
  EXPECT_EQ(box.StateForReaders(), (AccessibleState{.checked = false}));
  box.ButtonClicked.Listen([](bool& state) { state = false; });
  box.Press();
  EXPECT_TRUE(box.ShowsTick());
  EXPECT_EQ(box.StateForReaders(), (AccessibleState{.checked = false}));
}

TEST_F(CheckBoxTest, PaintsThePictureInTheCanvassResolution) {
  box.Checked = true;
  RecordingPainter text;
  Canvas canvas({120, 17}, 2);
  box.Paint(canvas, text);
  const Raster tick = TickedPicture(2);
  for (int y = 0; y < 26; ++y) {
    for (int x = 0; x < 26; ++x) {
      ASSERT_EQ(canvas.DevicePixels()[(y + 4) * canvas.DeviceWidth() + x], tick.At(x, y));
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
