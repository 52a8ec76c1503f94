// How texts look, by their role.
#pragma once

#include "ui/controls.h"
#include "ui/palette.h"

namespace tarnvale {

/// In points of 1/72 inch at 96 dpi.
struct RoleFont {
  double size_pt = 9;
  bool bold = false;
};

constexpr RoleFont FontOfRole(TextRole role) {
  switch (role) {
    case TextRole::kTitle:
      return {.size_pt = 27, .bold = true};
    case TextRole::kStrong:
      return {.bold = true};
    case TextRole::kHeading:
      return {.size_pt = 9.75, .bold = true};
    case TextRole::kNote:
      return {.size_pt = 8.25};
    case TextRole::kBody:
    case TextRole::kLink:
    case TextRole::kValue:
      break;
  }
  return {};
}

constexpr palette::Rgb ColorOfRole(TextRole role, bool enabled) {
  if (!enabled) return palette::kTextOff;
  switch (role) {
    case TextRole::kTitle:
    case TextRole::kHeading:
      return palette::kHeading;
    case TextRole::kNote:
      return palette::kNote;
    case TextRole::kLink:
      return palette::kLink;
    case TextRole::kBody:
    case TextRole::kStrong:
    case TextRole::kValue:
      break;
  }
  return palette::kText;
}

}  // namespace tarnvale
