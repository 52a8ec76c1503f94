#include "kit/chameleon_button.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/kit/recording_painter.h"
#include "ui/window.h"

namespace tarnvale::testing {
namespace {

using Events = std::vector<std::string>;

constexpr Point kInside{10, 10};
constexpr Point kOutside{200, 10};
constexpr KeyPress kBlank{.key = Key::kSpace, .character = U' '};

// A button on a window, with a record of what it raises and how often it draws.
class ChameleonButtonTest : public ::testing::Test {
 protected:
  ChameleonButtonTest() {
    button.OnResize({100, 26});
    button.Caption = "&Browse";
    button.MouseDown.Listen([this](MouseButton, Point) { Raised("MouseDown"); });
    button.MouseMove.Listen([this](MouseButton, Point) { Raised("MouseMove"); });
    button.MouseUp.Listen([this](MouseButton, Point) { Raised("MouseUp"); });
    button.Click.Listen([this] { Raised("Click"); });
    button.KeyDown.Listen([this](const KeyPress&) { Raised("KeyDown"); });
    button.KeyPress.Listen([this](const tarnvale::KeyPress&) { Raised("KeyPress"); });
    button.KeyUp.Listen([this](const tarnvale::KeyPress&) { Raised("KeyUp"); });
    button.MouseOver.Listen([this] { Raised("MouseOver"); });
    button.MouseOut.Listen([this] { Raised("MouseOut"); });
    button.LookChanged.Listen([this] { ++drawings; });
  }

  void Raised(const std::string& event) {
    events.push_back(event + (IsPressed() ? " pressed" : ""));
  }

  bool IsPressed() const { return button.Drawn()->state == ButtonState::kPressed; }
  bool ShowsOver() const { return button.Drawn()->over; }

  void Press() { button.OnMouseDown(MouseButton::kLeft, kInside); }
  void Release(Point at = kInside) {
    button.OnMouseUp(MouseButton::kLeft, at);
    if (at == kInside) button.OnClick(MouseButton::kLeft);
  }
  void MoveTo(Point at, MouseButton held = MouseButton::kNone) { button.OnMouseMove(held, at); }
  void Leave() { button.OnMouseLeave(); }

  chameleonButton button;
  Events events;
  int drawings = 0;
};

TEST_F(ChameleonButtonTest, RaisesDownUpClickInOrder) {
  Press();
  Release();
  // Each event comes before the drawing that belongs to it, but for Click.
  EXPECT_EQ(events, (Events{"MouseDown", "MouseUp pressed", "Click"}));
}

TEST_F(ChameleonButtonTest, IsPressedWhileTheLeftButtonIsDown) {
  Press();
  EXPECT_TRUE(IsPressed());
  Release();
  EXPECT_FALSE(IsPressed());
}

TEST_F(ChameleonButtonTest, IsNotPressedByTheRightButton) {
  button.OnMouseDown(MouseButton::kRight, kInside);
  EXPECT_FALSE(IsPressed());
  button.OnMouseUp(MouseButton::kRight, kInside);
  button.OnClick(MouseButton::kRight);
  EXPECT_EQ(events, (Events{"MouseDown", "MouseUp"}));
}

TEST_F(ChameleonButtonTest, IsPressedByTheMiddleButtonButNotClicked) {
  button.OnMouseDown(MouseButton::kMiddle, kInside);
  EXPECT_TRUE(IsPressed());
  button.OnMouseUp(MouseButton::kMiddle, kInside);
  button.OnClick(MouseButton::kMiddle);
  EXPECT_EQ(events, (Events{"MouseDown", "MouseUp pressed"}));
}

TEST_F(ChameleonButtonTest, RaisesMouseOverOnceWhenThePointerComes) {
  MoveTo(kInside);
  MoveTo({11, 10});
  EXPECT_EQ(events, (Events{"MouseMove", "MouseOver", "MouseMove"}));
  EXPECT_TRUE(ShowsOver());
}

TEST_F(ChameleonButtonTest, RaisesMouseOutWhenThePointerLeaves) {
  MoveTo(kInside);
  events.clear();
  Leave();
  EXPECT_EQ(events, (Events{"MouseOut"}));
  EXPECT_FALSE(ShowsOver());
}

TEST_F(ChameleonButtonTest, RaisesNoMouseOutWithoutMouseOver) {
  Leave();
  EXPECT_TRUE(events.empty());
}

TEST_F(ChameleonButtonTest, DrawsNothingOnMovesWhileNothingChanges) {
  MoveTo(kInside);
  drawings = 0;
  for (int x = 11; x < 40; ++x) MoveTo({x, 10});
  EXPECT_EQ(drawings, 0);
}

TEST_F(ChameleonButtonTest, ShowsNormalOffTheButtonAndPressedBackOnIt) {
  Press();
  MoveTo(kOutside, MouseButton::kLeft);
  EXPECT_FALSE(IsPressed());
  MoveTo(kInside, MouseButton::kLeft);
  EXPECT_TRUE(IsPressed());
  EXPECT_TRUE(ShowsOver());
}

TEST_F(ChameleonButtonTest, RaisesMouseOutWhileDraggedOffAHoveredButton) {
  MoveTo(kInside);
  Press();
  events.clear();
  MoveTo(kOutside, MouseButton::kLeft);
  EXPECT_EQ(events, (Events{"MouseMove pressed", "MouseOut"}));
}

TEST_F(ChameleonButtonTest, DoesNotClickWhenReleasedOutside) {
  Press();
  MoveTo(kOutside, MouseButton::kLeft);
  Release(kOutside);
  EXPECT_EQ(events.back(), "MouseUp");
}

TEST_F(ChameleonButtonTest, IsHoveredAnewAfterMovingWhilePressed) {
  MoveTo(kInside);
  Press();
  MoveTo({12, 10}, MouseButton::kLeft);
  Release();
  EXPECT_FALSE(ShowsOver());
  events.clear();
  MoveTo(kInside);
  EXPECT_EQ(events, (Events{"MouseMove", "MouseOver"}));
}

TEST_F(ChameleonButtonTest, StaysHoveredAfterAClickWithoutMoving) {
  MoveTo(kInside);
  Press();
  Release();
  EXPECT_TRUE(ShowsOver());
}

TEST_F(ChameleonButtonTest, DoesNotHoverWhileTheRightButtonIsHeld) {
  MoveTo(kInside, MouseButton::kRight);
  EXPECT_EQ(events, (Events{"MouseMove"}));
  EXPECT_FALSE(ShowsOver());
}

TEST_F(ChameleonButtonTest, IsNotOverAtACornerThatItsRegionLeavesOut) {
  button.ButtonType = 13;
  MoveTo({0, 0});
  EXPECT_FALSE(button.IsMouseOver());
  EXPECT_EQ(events, (Events{"MouseMove"}));
}

TEST_F(ChameleonButtonTest, ShowsPressedOnceMoreOnADoubleClickAndTakesTheMouse) {
  Press();
  Release();
  events.clear();
  button.OnDoubleClick(MouseButton::kLeft, kInside);
  EXPECT_TRUE(IsPressed());
  EXPECT_TRUE(button.HasCapture());
  EXPECT_EQ(events, (Events{"MouseDown"}));
  button.OnMouseUp(MouseButton::kLeft, kInside);
  EXPECT_FALSE(IsPressed());
  EXPECT_FALSE(button.HasCapture());
}

TEST_F(ChameleonButtonTest, IgnoresADoubleClickWithTheRightButton) {
  button.OnDoubleClick(MouseButton::kRight, kInside);
  EXPECT_TRUE(events.empty());
  EXPECT_FALSE(button.HasCapture());
}

TEST_F(ChameleonButtonTest, IsPressedAndClickedBySpace) {
  button.OnKeyDown(kBlank);
  EXPECT_TRUE(IsPressed());
  button.OnKeyUp(kBlank);
  EXPECT_FALSE(IsPressed());
  EXPECT_EQ(events, (Events{"KeyDown", "KeyPress pressed", "KeyUp pressed", "Click"}));
}

TEST_F(ChameleonButtonTest, IsNotClickedBySpaceAfterAnotherKey) {
  button.OnKeyDown(kBlank);
  button.OnKeyDown({Key::kOther});
  button.OnKeyUp(kBlank);
  EXPECT_EQ(events.back(), "KeyUp pressed");
}

TEST_F(ChameleonButtonTest, IsNotClickedByOtherKeys) {
  button.OnKeyDown({.key = Key::kEnter, .character = U'\r'});
  button.OnKeyUp({.key = Key::kEnter, .character = U'\r'});
  EXPECT_EQ(events, (Events{"KeyDown", "KeyPress", "KeyUp"}));
}

TEST_F(ChameleonButtonTest, IsNotClickedWhenAnotherKeyIsReleasedWhileSpaceIsHeld) {
  button.OnKeyDown(kBlank);
  button.OnKeyUp({Key::kOther});
  EXPECT_EQ(events, (Events{"KeyDown", "KeyPress pressed", "KeyUp pressed"}));
}

TEST_F(ChameleonButtonTest, RaisesKeyPressForEachCharacterWithIt) {
  std::u32string typed;
  button.KeyPress.Listen([&](const tarnvale::KeyPress& press) { typed += press.character; });
  for (const char32_t character : {U'a', U'\u00DF', U'\b'}) {
    button.OnKeyDown({.character = character});
  }
  button.OnKeyDown({.key = Key::kTab});
  EXPECT_EQ(typed, U"a\u00DF\b");
}

TEST_F(ChameleonButtonTest, MovesTheFocusByTheArrowKeys) {
  Window window;
  window.Visible = true;
  chameleonButton before;
  chameleonButton after;
  window.Place({{&before, nullptr, {}}, {&button, nullptr, {}}, {&after, nullptr, {}}});
  for (const Key key : {Key::kRight, Key::kDown}) {
    window.Focus(button);
    button.OnKeyDown({key});
    EXPECT_EQ(window.Focused(), &after);
  }
  for (const Key key : {Key::kLeft, Key::kUp}) {
    window.Focus(button);
    button.OnKeyDown({key});
    EXPECT_EQ(window.Focused(), &before);
  }
}

TEST_F(ChameleonButtonTest, ClicksByItsAccessKey) {
  button.OnAccessKey();
  EXPECT_EQ(events, (Events{"Click"}));
}

TEST_F(ChameleonButtonTest, ClicksByItsAccessKeyAfterARightClick) {
  button.OnMouseDown(MouseButton::kRight, kInside);
  events.clear();
  button.OnAccessKey();
  EXPECT_EQ(events, (Events{"Click"}));
}

TEST_F(ChameleonButtonTest, TakesItsAccessKeyAndItsSpokenNameFromTheCaption) {
  EXPECT_EQ(button.AccessKeyChar(), U'b');
  EXPECT_EQ(button.AccessibleText(), "Browse");
}

TEST_F(ChameleonButtonTest, IgnoresTheUserWhileDisabled) {
  button.Enabled = false;
  MoveTo(kInside);
  Press();
  Release();
  button.OnKeyDown(kBlank);
  button.OnKeyUp(kBlank);
  button.OnAccessKey();
  EXPECT_TRUE(events.empty());
  EXPECT_FALSE(IsPressed());
}

TEST_F(ChameleonButtonTest, IsNotLeftPressedWhenDisabledUnderTheFinger) {
  Press();
  button.Enabled = false;
  button.Enabled = true;
  EXPECT_FALSE(IsPressed());
}

TEST_F(ChameleonButtonTest, TogglesItsValueByAClickInCheckBoxMode) {
  button.CheckBoxBehaviour = true;
  Press();
  Release();
  EXPECT_TRUE(button.Value);
  EXPECT_TRUE(IsPressed());
  Press();
  Release();
  EXPECT_FALSE(button.Value);
  EXPECT_FALSE(IsPressed());
}

TEST_F(ChameleonButtonTest, HasToggledBeforeClickIsRaised) {
  button.CheckBoxBehaviour = true;
  bool value_at_click = false;
  button.Click.Listen([&] { value_at_click = button.Value; });
  button.OnAccessKey();
  EXPECT_TRUE(value_at_click);
}

TEST_F(ChameleonButtonTest, TogglesItsValueBySpaceInCheckBoxMode) {
  button.CheckBoxBehaviour = true;
  button.OnKeyDown(kBlank);
  button.OnKeyUp(kBlank);
  EXPECT_TRUE(button.Value);
  EXPECT_TRUE(IsPressed());
}

TEST_F(ChameleonButtonTest, KeepsItsValueOutOfCheckBoxMode) {
  Press();
  Release();
  EXPECT_FALSE(button.Value);
}

TEST_F(ChameleonButtonTest, ShowsItsValueOnlyInCheckBoxMode) {
  button.Value = true;
  EXPECT_FALSE(IsPressed());
  button.CheckBoxBehaviour = true;
  EXPECT_TRUE(IsPressed());
}

TEST_F(ChameleonButtonTest, IsACheckBoxForAScreenReaderInCheckBoxModeOnly) {
  EXPECT_EQ(button.AccessibleKind(), OwnerDrawn::Kind::kButton);
  button.CheckBoxBehaviour = true;
  EXPECT_EQ(button.AccessibleKind(), OwnerDrawn::Kind::kCheckBox);
}

TEST_F(ChameleonButtonTest, ReportsToAScreenReaderThatItIsHeldDown) {
  EXPECT_EQ(button.StateForReaders(), AccessibleState{});
  Press();
  EXPECT_EQ(button.StateForReaders(), (AccessibleState{.pressed = true}));
}

TEST_F(ChameleonButtonTest, ReportsItsTickToAScreenReaderInCheckBoxModeOnly) {
  button.Value = true;
  EXPECT_EQ(button.StateForReaders(), AccessibleState{});
  button.CheckBoxBehaviour = true;
  EXPECT_EQ(button.StateForReaders(), (AccessibleState{.checked = true}));
  button.Value = false;
  EXPECT_EQ(button.StateForReaders(), (AccessibleState{.checked = false}));
}

TEST_F(ChameleonButtonTest, DrawsTheFocusInTheLastState) {
  Press();
  button.OnFocusChanged(true);
  EXPECT_TRUE(button.Drawn()->has_focus);
  EXPECT_TRUE(IsPressed());
  button.OnFocusChanged(false);
  EXPECT_FALSE(button.Drawn()->has_focus);
}

TEST_F(ChameleonButtonTest, DrawsNothingBetweenDisableRefreshAndRefresh) {
  button.DisableRefresh();
  drawings = 0;
  button.Caption = "Export";
  button.ButtonType = 3;
  Press();
  EXPECT_EQ(drawings, 0);
  EXPECT_EQ(button.Drawn()->caption, "&Browse");
  button.Refresh();
  EXPECT_EQ(drawings, 1);
  EXPECT_EQ(button.Drawn()->caption, "Export");
  EXPECT_EQ(button.Drawn()->type, 3);
}

TEST_F(ChameleonButtonTest, PaintsWhatWasDrawnLastWhileRefreshIsOff) {
  button.DisableRefresh();
  button.Caption = "Export";
  Canvas canvas({100, 26}, 1);
  RecordingPainter text;
  button.Paint(canvas, text);
  EXPECT_EQ(text.drawn.back().text, "&Browse");
}

TEST_F(ChameleonButtonTest, DrawsNothingWhileHidden) {
  button.Visible = false;
  drawings = 0;
  button.Caption = "Export";
  EXPECT_EQ(drawings, 0);
  button.Visible = true;
  EXPECT_EQ(button.Drawn()->caption, "Export");
}

TEST_F(ChameleonButtonTest, IsNotHoveredAnymoreWhenItIsHidden) {
  MoveTo(kInside);
  button.Visible = false;
  EXPECT_EQ(events.back(), "MouseOut");
  button.Visible = true;
  EXPECT_FALSE(ShowsOver());
}

TEST(ChameleonButton, DrawsNothingWithoutHeight) {
  chameleonButton button;
  button.OnResize({100, 0});
  button.RedrawButton(ButtonState::kPressed, chameleonButton::Redraw::kForced);
  EXPECT_FALSE(button.Drawn().has_value());
}

TEST_F(ChameleonButtonTest, RedrawsOnlyIfCaptionOrStateChangedUnlessForced) {
  drawings = 0;
  button.RedrawButton(ButtonState::kNormal, chameleonButton::Redraw::kIfChanged);
  EXPECT_EQ(drawings, 0);
  button.RedrawButton(ButtonState::kNormal, chameleonButton::Redraw::kForced);
  EXPECT_EQ(drawings, 1);
  button.RedrawButton(ButtonState::kPressed, chameleonButton::Redraw::kIfChanged);
  EXPECT_EQ(drawings, 2);
}

TEST_F(ChameleonButtonTest, TakesBackOverForItsFaceWhileHoveredInScheme2) {
  button.ColorScheme = 2;
  button.BackColor = 0x806040;
  button.BackOver = 0x90A0B0;
  EXPECT_EQ(button.Drawn()->colors.face, 0x806040U);
  MoveTo(kInside);
  EXPECT_EQ(button.Drawn()->colors.face, 0x90A0B0U);
  EXPECT_EQ(button.Drawn()->colors.shadow, 0x506070U);
  Leave();
  EXPECT_EQ(button.Drawn()->colors.face, 0x806040U);
}

TEST_F(ChameleonButtonTest, IgnoresBackOverInOtherSchemes) {
  button.BackOver = 0x90A0B0;
  MoveTo(kInside);
  EXPECT_EQ(button.Drawn()->colors.face, SystemColor(15));
}

TEST_F(ChameleonButtonTest, FollowsItsAmbientColoursButInScheme2) {
  button.ColorScheme = 4;
  button.Ambient = AmbientLook{.name = {}, .font = {}, .back = 0xA0B0C0, .fore = 0x112233};
  EXPECT_EQ(button.Drawn()->colors.face, 0xA0B0C0U);
  EXPECT_EQ(button.Drawn()->colors.text, 0x112233U);
  button.ColorScheme = 2;
  drawings = 0;
  button.Ambient = AmbientLook{};
  EXPECT_EQ(drawings, 0);
}

TEST_F(ChameleonButtonTest, CopiesItsGroundWhenItBecomesTransparent) {
  int copies = 0;
  button.CopyOfContainer = [&] {
    ++copies;
    return Raster{1, 1, {0xFF0000FF}};
  };
  button.Caption = "Other";
  EXPECT_EQ(copies, 0);
  button.ButtonType = 11;
  EXPECT_EQ(copies, 1);
  EXPECT_EQ(button.Drawn()->ground.At(0, 0), 0xFF0000FFU);
  button.Caption = "Another";
  EXPECT_EQ(copies, 1);
  button.Refresh();
  EXPECT_EQ(copies, 2);
}

TEST_F(ChameleonButtonTest, ShowsTheHandWithPointerType99) {
  button.HandPointer = true;
  EXPECT_EQ(button.MousePointer, 99);
  EXPECT_EQ(button.Pointer, PointerShape::kHand);
  button.HandPointer = false;
  EXPECT_EQ(button.Pointer, PointerShape::kDefault);
  button.MousePointer = 11;
  EXPECT_EQ(button.Pointer, PointerShape::kHourglass);
}

TEST_F(ChameleonButtonTest, ShowsItsMouseIconWithPointerType99) {
  const Raster icon{1, 1, {0xFF0000FF}};
  button.MouseIcon = Picture{.image = icon};
  EXPECT_EQ(button.Pointer, PointerShape::kDefault);
  button.MousePointer = 99;
  EXPECT_EQ(button.Pointer, PointerShape::kPicture);
  EXPECT_EQ(button.PointerPicture.Get(), icon);
  button.MouseIcon = Picture{};
  EXPECT_EQ(button.Pointer, PointerShape::kHand);
}

TEST_F(ChameleonButtonTest, TakesWhatTheHostLends) {
  button.ColorScheme = 4;
  button.OnLent({.ambient = {.back = 0xA0B0C0, .fore = 0x112233},
                 .is_default = true,
                 .copy_of_container = [] {
                   return Raster{1, 1, {0xFF0000FF}};
                 }});
  EXPECT_EQ(button.Drawn()->colors.face, 0xA0B0C0U);
  EXPECT_EQ(button.Drawn()->colors.text, 0x112233U);
  EXPECT_TRUE(button.Drawn()->is_default);
  button.ButtonType = 11;
  EXPECT_EQ(button.Drawn()->ground.At(0, 0), 0xFF0000FFU);
}

TEST_F(ChameleonButtonTest, GivesItsVersionAndItsWindow) {
  EXPECT_EQ(button.Version(), "2.0.6");
  EXPECT_EQ(button.hWnd(), 0U);
  button.OnLent({.native_window = 42});
  EXPECT_EQ(button.hWnd(), 42U);
}

}  // namespace
}  // namespace tarnvale::testing
