// The program's typefaces, as the system's fonts.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "hosts/windows/system_headers.h"
#include "ui/look.h"
#include "ui/raster.h"

namespace tarnvale {

/// Makes each font once, for a display of `dpi` pixels to the inch.
class Fonts {
 public:
  explicit Fonts(int dpi) : dpi_(dpi) {}
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;
  ~Fonts();

  /// Without a family it is the typeface of the system's own messages.
  HFONT Of(const Font& font);
  HFONT OfRole(TextRole role, bool underline = false);
  /// Every character is equally wide.
  HFONT FixedWidth(double size_pt = 9);

 private:
  using Key = std::tuple<std::string, double, bool, bool, bool>;

  int dpi_;
  std::map<Key, HFONT> fonts_;
};

}  // namespace tarnvale
