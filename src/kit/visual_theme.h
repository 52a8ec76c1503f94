// Given, unused: what a host with a visual theme may offer to the controls.
#pragma once

#include <string>

#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// An opened theme of one class of controls; 0 is one that failed to open, with
/// which every drawing call does nothing.
using ThemeHandle = int;

class VisualTheme {
 public:
  virtual ~VisualTheme() = default;

  struct SystemVersion {
    int major = 0;
    int minor = 0;
  };
  virtual SystemVersion Version() = 0;
  virtual bool IsAppThemed() = 0;
  /// Major version of the library of common controls.
  virtual int CommonControlsMajor() = 0;

  virtual ThemeHandle OpenThemeData(const std::string& class_name) = 0;
  virtual void DrawThemeBackground(ThemeHandle theme, Canvas& canvas, int part, int state,
                                   Rect area) = 0;
  /// True when the underlines of access keys are to be shown.
  virtual bool KeyboardCues() = 0;
  struct TextFlags {
    int first = 0;   ///< 0x100000 hides the access key's underline
    int second = 0;  ///< 32 for text that is out of use
  };
  virtual void DrawThemeText(ThemeHandle theme, Canvas& canvas, TextPainter& painter, int part,
                             int state, const std::string& text, TextFlags flags, Rect area,
                             const Font& font) = 0;
  virtual void CloseThemeData(ThemeHandle theme) = 0;
};

/// True when controls are to follow the theme: the system's version is at least
/// 5.1, the application is themed, and the common controls are of version 6 or
/// later. What the theme raises goes through.
bool IsThemed(VisualTheme& theme);

}  // namespace tarnvale
