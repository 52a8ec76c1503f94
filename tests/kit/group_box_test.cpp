#include "kit/group_box.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/check_box.h"
#include "kit/group_drawing.h"
#include "tests/kit/recording_painter.h"
#include "tests/support/canvas_rows.h"
#include "ui/window.h"

namespace tarnvale::testing {
namespace {

constexpr Color kFace = 0xD8E9EC;
constexpr Color kShadow = 0x99A8AC;

Canvas Painted(GroupBox& box, Size size, TextPainter& text) {
  Canvas canvas(size, 1);
  box.Paint(canvas, text);
  return canvas;
}

const std::map<Color, char>& Legend() {
  static const std::map<Color, char> legend = {
      {kFace, 'f'}, {kShadow, 's'}, {kWhite, 'h'}, {kBlack, 'b'}};
  return legend;
}

// The recording painter's texts are 13 high: the frame's top lies at 6.5 -> 6.
TEST(GroupBox, IsAnEtchedFrameFromHalfTheTextsHeight) {
  GroupBox box;
  RecordingPainter text;
  EXPECT_EQ(RowsOf(Painted(box, {8, 12}, text), Legend()),
            (Rows{"ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "sssssssh",  //
                  "shhhhhsh",  //
                  "shffffsh",  //
                  "shffffsh",  //
                  "sssssssh",  //
                  "hhhhhhhh"}));
}

TEST(GroupBox, IsAFlatFrameWithoutAppearance) {
  GroupBox box;
  box.Appearance = 0;
  RecordingPainter text;
  EXPECT_EQ(RowsOf(Painted(box, {8, 12}, text), Legend()),
            (Rows{"ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  "bbbbbbbb",  //
                  "bhhhhhhb",  //
                  "bhffffhb",  //
                  "bhffffhb",  //
                  "bhhhhhhb",  //
                  "bbbbbbbb"}));
}

TEST(GroupBox, DrawsNothingAtAllWithoutBorder) {
  GroupBox box;
  box.Caption = "Caption";
  box.BorderStyle = 0;
  RecordingPainter text;
  const Rows empty(12, "ffffffff");
  EXPECT_EQ(RowsOf(Painted(box, {8, 12}, text), Legend()), empty);
  EXPECT_TRUE(text.drawn.empty());
}

TEST(GroupBox, LeavesTheFrameUnbrokenWithoutCaption) {
  GroupBox box;
  RecordingPainter text;
  const Canvas canvas = Painted(box, {30, 20}, text);
  EXPECT_EQ(text.measured, (std::vector<std::string>{" "}));
  for (int x = 0; x < 29; ++x) EXPECT_EQ(canvas.PixelAt(x, 6), kShadow) << x;
  EXPECT_TRUE(text.drawn.empty());
}

TEST(GroupBox, CutsTheCaptionsGapOutOfTheFrame) {
  GroupBox box;
  box.Caption = "abc";  // 18 wide
  RecordingPainter text;
  const Canvas canvas = Painted(box, {40, 20}, text);
  EXPECT_EQ(canvas.PixelAt(6, 6), kShadow);
  for (int x = 7; x < 27; ++x) EXPECT_EQ(canvas.PixelAt(x, 6), kFace) << x;
  EXPECT_EQ(canvas.PixelAt(27, 6), kShadow);
}

TEST(GroupBox, WritesItsCaptionAt9WithoutCuttingItsEnd) {
  GroupBox box;
  box.Caption = "abc";
  box.ForeColor = 0x0000FF;
  box.Font = Font{.family = {}, .size_pt = 12};
  RecordingPainter text;
  Painted(box, {40, 20}, text);
  ASSERT_EQ(text.drawn.size(), 1U);
  EXPECT_EQ(text.drawn[0].area, (Rect{9, 0, 31, 13}));
  EXPECT_EQ(text.drawn[0].look.color, 0x0000FFU);
  EXPECT_EQ(text.drawn[0].look.font.size_pt, 12);
}

TEST(GroupBox, EngravesItsCaptionWhileDisabled) {
  GroupBox box;
  box.Caption = "abc";
  box.Enabled = false;
  RecordingPainter text;
  Painted(box, {40, 20}, text);
  ASSERT_EQ(text.drawn.size(), 2U);
  EXPECT_EQ(text.drawn[0].look.color, kWhite);
  EXPECT_EQ(text.drawn[0].area, (Rect{10, 1, 31, 13}));
  EXPECT_EQ(text.drawn[1].look.color, kShadow);
  EXPECT_EQ(text.drawn[1].area, (Rect{9, 0, 31, 13}));
}

TEST(GroupBox, MeasuresADoubleAmpersandAsOneA) {
  GroupBox box;
  box.Caption = "Export && Import";
  RecordingPainter text;
  Painted(box, {140, 20}, text);
  EXPECT_EQ(text.measured, (std::vector<std::string>{"Export A Import"}));
  // It is written as it is, with marks: the pair shows as one ampersand.
  EXPECT_EQ(text.drawn.at(0).text, "Export && Import");
  EXPECT_TRUE(text.drawn.at(0).look.access_key_marks);
  EXPECT_EQ(box.AccessKeyChar(), U'\0');
}

TEST(GroupBox, TakesItsAccessKeyFromASingleAmpersand) {
  GroupBox box;
  box.Caption = "Export && &Import";
  RecordingPainter text;
  Painted(box, {140, 20}, text);
  EXPECT_EQ(box.AccessKeyChar(), U'i');
  EXPECT_EQ(text.measured, (std::vector<std::string>{"Export A Import"}));
  EXPECT_TRUE(text.drawn.at(0).look.show_access_key);
}

TEST(MeasuredCaption, DropsEveryMark) {
  EXPECT_EQ(MeasuredCaption("&a&b&"), "ab");
}

TEST(GroupBox, FillsItselfWithItsBackColour) {
  GroupBox box;
  box.BackColor = 0x112233;
  RecordingPainter text;
  EXPECT_EQ(Painted(box, {20, 20}, text).PixelAt(10, 2), 0x112233U);
}

// Answers no questions, and remembers what was shown.
class ListedBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const BoxRequest& request) override {
    texts.push_back(request.text);
    return BoxAnswer::kOk;
  }
  std::vector<std::string> texts;
};

TEST(GroupBoxBackStyle, Of0ShowsABoxAndChangesNothing) {
  GroupBox box;
  ListedBoxes boxes;
  box.OnLent({.boxes = &boxes});
  std::vector<std::string> names;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.BackStyle = 0;
  EXPECT_EQ(box.BackStyle, 1);
  EXPECT_EQ(boxes.texts,
            (std::vector<std::string>{
                "This feature has not yet been implemented!\nI'm not quite sure how I am going to "
                "implement this feature, as some controls are shaped."}));
  EXPECT_TRUE(names.empty());
}

TEST(GroupBoxBackStyle, IsAppliedAndMarkedWhenItIsNot0) {
  GroupBox box;
  std::vector<std::string> names;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.BackStyle = 2;
  EXPECT_EQ(box.BackStyle, 2);
  EXPECT_EQ(names, (std::vector<std::string>{"BackStyle"}));
}

TEST(GroupBoxBackStyle, KeepsTheLastAppliedOneWhen0IsRefused) {
  GroupBox box;
  box.BackStyle = 2;
  box.BackStyle = 0;
  EXPECT_EQ(box.BackStyle, 2);
}

TEST(GroupBoxBackStyle, Of0FromABagMakesTheBackColourTransparent) {
  PropertyBag bag;
  bag.Write("BackStyle", 0);
  GroupBox box;
  box.ReadProperties(bag, "", {});
  EXPECT_EQ(box.BackStyle, 0);
  RecordingPainter text;
  EXPECT_EQ(RowsOf(Painted(box, {6, 11}, text), Legend()),
            (Rows{"......",  //
                  "......",  //
                  "......",  //
                  "......",  //
                  "......",  //
                  "......",  //
                  "sssssh",  //
                  "shhhsh",  //
                  "sh..sh",  //
                  "sssssh",  //
                  "hhhhhh"}));
}

TEST(GroupBoxBackStyle, Of0ShowsItsBoxWhenItWas0) {
  PropertyBag bag;
  bag.Write("BackStyle", 0);
  GroupBox box;
  box.ReadProperties(bag, "", {});
  ListedBoxes boxes;
  box.OnLent({.boxes = &boxes});
  box.BackStyle = 0;
  EXPECT_EQ(boxes.texts.size(), 1U);
  EXPECT_EQ(box.BackStyle, 0);
}

TEST(GroupBox, TakesDropsWithADropModeAndHandsTheStepsOn) {
  GroupBox box;
  EXPECT_FALSE(box.TakesDrops());
  box.OLEDropMode = 1;
  EXPECT_TRUE(box.TakesDrops());
  std::vector<std::string> steps;
  box.OLEDragOver.Listen([&](DragStep& step) {
    steps.push_back("over " + step.data);
    step.effect = 1;
  });
  box.OLEDragDrop.Listen([&](DragStep& step) { steps.push_back("drop " + step.data); });
  DragStep step;
  step.data = "x";
  box.OnDragOver(step);
  EXPECT_EQ(step.effect, 1);
  box.OnDragDrop(step);
  EXPECT_EQ(steps, (std::vector<std::string>{"over x", "drop x"}));
}

TEST(GroupBox, HasWhatItsHandlersGiveDraggedAwayAndReportsTheEffect) {
  GroupBox box;
  std::vector<std::string> steps;
  box.OLEStartDrag.Listen([&](DragStep&) { steps.push_back("start"); });
  box.OLESetData.Listen([&](DragStep& step) { step.data = "text"; });
  box.DragAway.Listen([&](DragStep& step) {
    steps.push_back("away with " + step.data);
    step.effect = 2;
    box.OnGiveFeedback(step);
  });
  box.OLEGiveFeedback.Listen(
      [&](DragStep& step) { steps.push_back("would be " + std::to_string(step.effect)); });
  box.OLECompleteDrag.Listen(
      [&](DragStep& step) { steps.push_back("effect " + std::to_string(step.effect)); });
  box.OLEDrag();
  EXPECT_EQ(steps, (std::vector<std::string>{"start", "away with text", "would be 2", "effect 2"}));
}

TEST(GroupBox, RepaintsAndMarksAfterEachSetterWhateverTheValueWas) {
  GroupBox box;
  std::vector<std::string> names;
  int paintings = 0;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.LookChanged.Listen([&] { ++paintings; });
  for (const char* value : {"another one", "the one that it has"}) {
    names.clear();
    paintings = 0;
    box.BackColor = 1;
    box.ForeColor = 2;
    box.Enabled = false;
    box.Font = Font{.family = "Sans"};
    box.BorderStyle = 2;
    box.OLEDropMode = 1;
    box.BackStyle = 3;
    box.Caption = "x";
    box.Appearance = 0;
    EXPECT_EQ(names,
              (std::vector<std::string>{"BackColor", "ForeColor", "Enabled", "Font", "BorderStyle",
                                        "OLEDropMode", "BackStyle", "Caption", "Appearance"}))
        << value;
    EXPECT_EQ(paintings, 9) << value;
  }
  box.Refresh();
  box.OnResize({10, 10});
  EXPECT_EQ(paintings, 11);
}

TEST(GroupBox, IsReadWithoutMarkingAnything) {
  GroupBox box;
  std::vector<std::string> names;
  box.PropertyChanged.Listen([&](const std::string& name) { names.push_back(name); });
  box.ReadProperties({}, "GroupBox1", {.family = "Sans"});
  EXPECT_TRUE(names.empty());
}

TEST(GroupBox, ComesBackFromABag) {
  GroupBox written;
  written.BackColor = 1;
  written.ForeColor = 2;
  written.Enabled = false;
  written.Font = Font{.family = "Sans"};
  written.BorderStyle = 0;
  written.OLEDropMode = 1;
  written.BackStyle = 3;
  written.Caption = "Storage";
  written.Appearance = 0;
  PropertyBag bag;
  written.WriteProperties(bag);
  GroupBox read;
  read.ReadProperties(bag, "GroupBox1", {});
  EXPECT_EQ(read.BackColor, 1U);
  EXPECT_EQ(read.ForeColor, 2U);
  EXPECT_FALSE(read.Enabled);
  EXPECT_EQ(read.Font.Get().family, "Sans");
  EXPECT_EQ(read.BorderStyle, 0);
  EXPECT_EQ(read.OLEDropMode, 1);
  EXPECT_EQ(read.BackStyle, 3);
  EXPECT_EQ(read.Caption.Get(), "Storage");
  EXPECT_EQ(read.Appearance, 0);
}

TEST(GroupBox, ReadsItsDefaultsFromAnEmptyBag) {
  GroupBox box;
  box.ReadProperties({}, "GroupBox1", {.family = "Sans"});
  EXPECT_EQ(box.BackColor, 0x8000000FU);
  EXPECT_EQ(box.ForeColor, 0x80000012U);
  EXPECT_TRUE(box.Enabled);
  EXPECT_EQ(box.Font.Get().family, "Sans");
  EXPECT_EQ(box.BorderStyle, 1);
  EXPECT_EQ(box.OLEDropMode, 0);
  EXPECT_EQ(box.BackStyle, 1);
  EXPECT_EQ(box.Caption.Get(), "GroupBox1");
  EXPECT_EQ(box.Appearance, 1);
}

TEST(GroupBox, PassesItsEventsOn) {
  GroupBox box;
  std::string events;
  box.MouseDown.Listen([&](MouseButton, Point) { events += "down "; });
  box.MouseMove.Listen([&](MouseButton, Point) { events += "move "; });
  box.MouseUp.Listen([&](MouseButton, Point) { events += "up "; });
  box.Click.Listen([&] { events += "click "; });
  box.DblClick.Listen([&] { events += "double "; });
  box.OLEStartDrag.Listen([&](DragStep&) { events += "drag "; });
  box.OnMouseDown(MouseButton::kLeft, {1, 1});
  box.OnMouseMove(MouseButton::kLeft, {2, 1});
  box.OnMouseUp(MouseButton::kLeft, {2, 1});
  box.OnClick(MouseButton::kLeft);
  box.OnDoubleClick(MouseButton::kLeft, {2, 1});
  box.OLEDrag();
  EXPECT_EQ(events, "down move up click double drag ");
}

TEST(GroupBox, GivesTheFocusToItsFirstControlByItsAccessKey) {
  Window window;
  window.Visible = true;
  GroupBox box;
  CheckBox outside;
  CheckBox hidden;
  CheckBox inside;
  hidden.Visible = false;
  window.Place(
      {{&outside, nullptr, {}}, {&box, nullptr, {}}, {&hidden, &box, {}}, {&inside, &box, {}}});
  box.OnAccessKey();
  EXPECT_EQ(window.Focused(), &inside);
}

TEST(GroupBox, ItsAccessKeyLeavesTheFocusWhereNothingInItTakesIt) {
  Window window;
  window.Visible = true;
  GroupBox box;
  CheckBox outside;
  CheckBox hidden;
  hidden.Visible = false;
  window.Place({{&outside, nullptr, {}}, {&box, nullptr, {}}, {&hidden, &box, {}}});
  window.Focus(outside);
  box.OnAccessKey();
  EXPECT_EQ(window.Focused(), &outside);
}

TEST(GroupBox, RequestsNothingWhenADragStartsWithItsData) {
  GroupBox box;
  box.OLEStartDrag.Listen([](DragStep& step) { step.data = "text"; });
  box.OLESetData.Listen([](DragStep& step) { step.data = "other"; });
  std::string dragged;
  box.DragAway.Listen([&](DragStep& step) { dragged = step.data; });
  box.OLEDrag();
  EXPECT_EQ(dragged, "text");
}

TEST(GroupBox, BeginsWithItsNameInTheFontOfItsContainer) {
  GroupBox box;
  box.InitProperties("GroupBox1", {.family = "Sans"});
  EXPECT_EQ(box.Caption.Get(), "GroupBox1");
  EXPECT_EQ(box.Font.Get().family, "Sans");
}

// A theme that writes down its calls.
class ListedTheme : public VisualTheme {
 public:
  SystemVersion Version() override {
    if (version_fails) throw ProgramError(kInvalidCall);
    return version;
  }
  bool IsAppThemed() override { return themed; }
  int CommonControlsMajor() override { return controls_major; }
  ThemeHandle OpenThemeData(const std::string& class_name) override {
    calls.push_back("open " + class_name);
    return 7;
  }
  void DrawThemeBackground(ThemeHandle theme, Canvas&, int part, int state, Rect area) override {
    calls.push_back("background " + std::to_string(theme) + " " + std::to_string(part) + " " +
                    std::to_string(state) + " top " + std::to_string(area.top_px));
  }
  bool KeyboardCues() override { return cues; }
  void DrawThemeText(ThemeHandle theme, Canvas&, TextPainter&, int part, int state,
                     const std::string& text, TextFlags flags, Rect area, const Font&) override {
    calls.push_back("text " + std::to_string(theme) + " " + std::to_string(part) + " " +
                    std::to_string(state) + " " + text + " " + std::to_string(flags.first) + " " +
                    std::to_string(flags.second) + " left " + std::to_string(area.left_px));
  }
  void CloseThemeData(ThemeHandle theme) override {
    calls.push_back("close " + std::to_string(theme));
  }

  SystemVersion version{5, 1};
  bool version_fails = false;
  bool themed = true;
  int controls_major = 6;
  bool cues = true;
  std::vector<std::string> calls;
};

using Calls = std::vector<std::string>;

TEST(ThemedGroupBox, DrawsByTheTheme) {
  GroupBox box;
  ListedTheme theme;
  box.UseTheme(&theme);
  box.Caption = "&Storage";
  RecordingPainter text;
  const Canvas canvas = Painted(box, {80, 20}, text);
  EXPECT_EQ(theme.calls, (Calls{"open BUTTON", "background 7 4 0 top 6",
                                "text 7 4 1 &Storage 0 0 left 9", "close 7"}));
  EXPECT_TRUE(text.drawn.empty());
  EXPECT_EQ(canvas.PixelAt(0, 10), kFace);
}

TEST(ThemedGroupBox, HidesTheAccessKeyWithoutKeyboardCues) {
  GroupBox box;
  ListedTheme theme;
  theme.cues = false;
  box.UseTheme(&theme);
  box.Caption = "&Storage";
  RecordingPainter text;
  Painted(box, {80, 20}, text);
  EXPECT_EQ(theme.calls.at(2), "text 7 4 1 &Storage 1048576 0 left 9");
}

TEST(ThemedGroupBox, HasTheThemeDrawItDisabled) {
  GroupBox box;
  ListedTheme theme;
  box.UseTheme(&theme);
  box.Caption = "x";
  box.Enabled = false;
  RecordingPainter text;
  Painted(box, {80, 20}, text);
  EXPECT_EQ(theme.calls.at(2), "text 7 4 1 x 0 32 left 9");
}

TEST(ThemedGroupBox, DrawsNeitherPathWhenTheTestFails) {
  GroupBox box;
  ListedTheme theme;
  theme.version_fails = true;
  box.UseTheme(&theme);
  box.Caption = "x";
  RecordingPainter text;
  const Canvas canvas = Painted(box, {20, 20}, text);
  EXPECT_TRUE(theme.calls.empty());
  EXPECT_TRUE(text.drawn.empty());
  EXPECT_EQ(canvas.PixelAt(0, 10), kFace);
}

TEST(ThemedGroupBox, FallsBackToTheClassicFrame) {
  GroupBox box;
  ListedTheme theme;
  theme.themed = false;
  box.UseTheme(&theme);
  RecordingPainter text;
  EXPECT_EQ(Painted(box, {20, 20}, text).PixelAt(0, 10), kShadow);
  EXPECT_TRUE(theme.calls.empty());
}

TEST(ThemeTest, NeedsSystem51AThemedApplicationAndControlsOfVersion6) {
  ListedTheme theme;
  EXPECT_TRUE(IsThemed(theme));
  theme.version = {5, 0};
  EXPECT_FALSE(IsThemed(theme));
  theme.version = {6, 0};
  EXPECT_TRUE(IsThemed(theme));
  theme.version = {4, 11};  // 4 + 1.1 is 5.1
  EXPECT_TRUE(IsThemed(theme));
  theme.version = {4, 10};
  EXPECT_FALSE(IsThemed(theme));
  theme.version = {5, 1};
  theme.controls_major = 5;
  EXPECT_FALSE(IsThemed(theme));
  theme.controls_major = 6;
  theme.themed = false;
  EXPECT_FALSE(IsThemed(theme));
}

}  // namespace
}  // namespace tarnvale::testing
