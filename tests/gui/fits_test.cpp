// Every text of every window has room at each scale, and with a larger font; nothing
// lies over anything else.
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"
#include "tests/gui/every_window.h"
#include "tests/gui/gui_fixture.h"
#include "tests/support/said_by.h"

namespace tarnvale::testing {
namespace {

// A size in which a person may see the windows.
struct Eyes {
  double scale;      ///< pixels for each of 96 dpi
  int larger_by_px;  ///< of all fonts, at 96 dpi
  const char* typeface;
};

// What of the room is missing, in pixels of 96 dpi; 0 when it fits.
double MissingRoom(const Said& said, const Eyes& eyes) {
  QFont font = ProgramFont(said.font.size_pt, said.font.bold);
  font.setFamily(eyes.typeface);
  font.setPixelSize(
      static_cast<int>(std::lround((font.pixelSize() + eyes.larger_by_px) * eyes.scale)));
  const QFontMetricsF metrics(font);
  const QString text = ToQt(said.text);
  if (!said.wraps) {
    return std::max(0.0, metrics.horizontalAdvance(text) / eyes.scale - said.width_px);
  }
  const QRectF room(0, 0, said.width_px * eyes.scale, 1e6);
  const double height = metrics.boundingRect(room, Qt::TextWordWrap, text).height();
  return std::max(0.0, height / eyes.scale - said.height_px);
}

class GuiFits : public EveryWindowTest {
 protected:
  static void ExpectTextsFit(Window& window, const std::string& name, const Eyes& eyes) {
    for (const Placement& placement : window.Placements()) {
      const auto said = SaidBy(placement);
      if (!said || said->text.empty()) continue;
      ++met;
      const double missing = MissingRoom(*said, eyes);
      EXPECT_LE(missing, 0.5) << name << " at " << eyes.scale << ", " << eyes.typeface << " +"
                              << eyes.larger_by_px << ": \"" << said->text << "\" lacks " << missing
                              << " pixels";
    }
  }

  static bool IsContainer(const Window& window, const Control* control) {
    const auto& all = window.Placements();
    return dynamic_cast<const GroupBox*>(control) != nullptr ||
           dynamic_cast<const PictureBox*>(control) != nullptr ||
           std::any_of(all.begin(), all.end(),
                       [&](const Placement& other) { return other.container == control; });
  }

  static void ExpectNothingOverlaps(Window& window, const std::string& name) {
    const auto& all = window.Placements();
    for (std::size_t i = 0; i < all.size(); ++i) {
      for (std::size_t j = i + 1; j < all.size(); ++j) {
        const Placement& a = all[i];
        const Placement& b = all[j];
        if (a.container != b.container || !a.control->Visible || !b.control->Visible) continue;
        if (IsContainer(window, a.control) || IsContainer(window, b.control)) continue;
        const bool apart =
            a.place.RightPx() <= b.place.left_px || b.place.RightPx() <= a.place.left_px ||
            a.place.BottomPx() <= b.place.top_px || b.place.BottomPx() <= a.place.top_px;
        EXPECT_TRUE(apart) << name << ": control " << i << " (" << TextOf(a) << ") lies over " << j
                           << " (" << TextOf(b) << ")";
      }
    }
  }

  static std::string TextOf(const Placement& placement) {
    const auto said = SaidBy(placement);
    return said ? said->text : "no text";
  }

  static inline int met = 0;
};

TEST_F(GuiFits, EveryTextAtEachScaleAndWithALargerFont) {
  Program& p = StartAndBringUp();
  LoadEveryWindow(p);
  const auto expect_fit = [&](const Eyes& eyes) {
    ASSERT_EQ(QFontInfo(QFont(eyes.typeface)).family(), eyes.typeface);
    ExpectTextsFit(p.form, "main window", eyes);
    for (Window* window : OtherWindows(p)) ExpectTextsFit(*window, NameOf(*window), eyes);
  };
  for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
    expect_fit({scale, 0, "Open Sans"});
    expect_fit({scale, 1, "Open Sans"});
    // What a desktop has that lacks the program's own; it is wider.
    expect_fit({scale, 0, "DejaVu Sans"});
  }
  EXPECT_GT(met, 1200);
}

TEST_F(GuiFits, NothingLiesOverAnythingElse) {
  Program& p = StartAndBringUp();
  LoadEveryWindow(p);
  ExpectNothingOverlaps(p.form, "main window");
  for (Window* window : OtherWindows(p)) ExpectNothingOverlaps(*window, NameOf(*window));
}

TEST_F(GuiFits, EveryPictureIsThereAndFillsItsBox) {
  Program& p = StartAndBringUp();
  LoadEveryWindow(p);
  std::vector<Window*> windows = OtherWindows(p);
  windows.push_back(&p.Splash);
  int pictures = 0;
  for (Window* window : windows) {
    for (const Placement& placement : window->Placements()) {
      const auto* box = dynamic_cast<PictureBox*>(placement.control);
      if (box == nullptr || box->Picture.Get().empty()) continue;
      const QSize place(placement.place.width_px, placement.place.height_px);
      EXPECT_EQ(PictureNamed(box->Picture).actualSize(place), place) << box->Picture.Get();
      ++pictures;
    }
  }
  EXPECT_EQ(pictures, 11);
}

}  // namespace
}  // namespace tarnvale::testing
