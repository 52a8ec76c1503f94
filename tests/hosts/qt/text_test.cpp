#include "hosts/qt/qt_text.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/qt/qt_text_painter.h"

namespace tarnvale {
namespace {

int Darkness(const Canvas& canvas, Rect area) {
  int dark = 0;
  for (int y = area.top_px * canvas.Scale(); y < area.BottomPx() * canvas.Scale(); ++y) {
    for (int x = area.left_px * canvas.Scale(); x < area.RightPx() * canvas.Scale(); ++x) {
      const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(canvas.DeviceWidth()) +
                      static_cast<std::size_t>(x);
      dark += 255 - GreenOf(canvas.DevicePixels()[at]);
    }
  }
  return dark;
}

Canvas White(Size size, int scale) {
  Canvas canvas(size, scale);
  canvas.FillRect({0, 0, size.width_px, size.height_px}, kWhite);
  return canvas;
}

TEST(QtText, KeepsBytesThatAreNoUtf8) {
  const std::string odd = "a\xFF\xC3z\xC3\xA4";
  EXPECT_EQ(FromQt(ToQt(odd)), odd);
}

TEST(QtText, CountsPositionsInBytesAndUnits) {
  const std::string text = "a\xC3\xA4z";
  EXPECT_EQ(UnitsOf(text, 3), 2);
  EXPECT_EQ(BytesOf(ToQt(text), 2), 3U);
  EXPECT_EQ(UnitsOf(text, 99), 3);
}

TEST(QtText, BreaksLinesAtEveryKindOfLineEnd) {
  EXPECT_EQ(WithPlainLineEnds(QStringLiteral("a\r\nb\rc\nd")), QStringLiteral("a\nb\nc\nd"));
}

TEST(QtText, ShowsQuestionMarksForControlsAndTurnsOfDirection) {
  EXPECT_EQ(ToShown("a\x01"
                    "b\x7F"
                    "c\tD\r\ne"),
            "a?b?c\tD\ne");
  EXPECT_EQ(ToShown("\xC2\x85\xC2\x9B\xC2\xA0"), QString("??") + QChar(0xA0));
  for (const char* turn :
       {"\xD8\x9C", "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA", "\xE2\x80\xAE", "\xE2\x81\xA6",
        "\xE2\x81\xA9", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    EXPECT_EQ(ToShown(turn), "?");
  }
  const std::string name =
      "Gr\xC3\xBC\xC3\x9F"
      "e \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xE2\x80\xA6";
  EXPECT_EQ(FromQt(ToShown(name)), name) << "letters of either direction stay";
}

TEST(QtText, MeasuresLongerTextWider) {
  QtTextPainter painter;
  const TextLook look;
  EXPECT_GT(painter.Measure("mmmm", look).width_px, painter.Measure("mm", look).width_px);
  EXPECT_GT(painter.Measure("", look).height_px, 8);
}

TEST(QtText, MeasuresWithoutTheMarkOfTheAccessKey) {
  QtTextPainter painter;
  TextLook marked;
  marked.access_key_marks = true;
  EXPECT_EQ(painter.Measure("&Save", marked).width_px, painter.Measure("Save", {}).width_px);
}

TEST(QtText, DrawsInsideTheAreaOnly) {
  QtTextPainter painter;
  Canvas canvas = White({60, 20}, 1);
  painter.Draw(canvas, "MMMMMMMMMMMM", {}, {10, 0, 20, 20});
  EXPECT_GT(Darkness(canvas, {10, 0, 20, 20}), 0);
  EXPECT_EQ(Darkness(canvas, {0, 0, 10, 20}), 0);
  EXPECT_EQ(Darkness(canvas, {30, 0, 30, 20}), 0);
}

TEST(QtText, DrawsInGreyOnly) {
  QtTextPainter painter;
  Canvas canvas = White({60, 20}, 1);
  painter.Draw(canvas, "Wavy", {}, {0, 0, 60, 20});
  for (int i = 0; i < 60 * 20; ++i) {
    const Color pixel = canvas.DevicePixels()[i];
    ASSERT_EQ(RedOf(pixel), GreenOf(pixel));
    ASSERT_EQ(GreenOf(pixel), BlueOf(pixel));
  }
}

TEST(QtText, DrawsInTheTextsColor) {
  QtTextPainter painter;
  Canvas canvas = White({60, 20}, 1);
  TextLook red;
  red.color = MakeColor(255, 0, 0);
  red.font.bold = true;
  painter.Draw(canvas, "HHH", red, {0, 0, 60, 20});
  const Canvas& drawn = canvas;
  const std::uint32_t* end = drawn.DevicePixels() + 60 * 20;
  EXPECT_NE(std::find(drawn.DevicePixels(), end, 0xFF0000FFU), end);
}

TEST(QtText, DrawsInFullResolutionAtTwiceTheScale) {
  QtTextPainter painter;
  Canvas canvas = White({60, 20}, 2);
  painter.Draw(canvas, "Wavy text", {}, {0, 0, 60, 20});
  bool has_fine_detail = false;
  for (int y = 0; y < 40; y += 2) {
    const std::uint32_t* row = canvas.DevicePixels() + y * 120;
    for (int x = 0; x < 120; x += 2) has_fine_detail |= row[x] != row[x + 1];
  }
  EXPECT_TRUE(has_fine_detail);
}

TEST(QtText, AlignsToTheRight) {
  QtTextPainter painter;
  Canvas canvas = White({100, 20}, 1);
  TextLook right;
  right.align = TextLook::Align::kRight;
  painter.Draw(canvas, "ab", right, {0, 0, 100, 20});
  EXPECT_EQ(Darkness(canvas, {0, 0, 70, 20}), 0);
  EXPECT_GT(Darkness(canvas, {70, 0, 30, 20}), 0);
}

}  // namespace
}  // namespace tarnvale
