#include "hosts/qt/qt_look.h"

#include <QFontDatabase>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace tarnvale {
namespace {

QString FirstInstalled(std::initializer_list<const char*> families, const char* fallback) {
  const QStringList installed = QFontDatabase::families();
  for (const char* family : families) {
    if (installed.contains(QLatin1String(family))) return QLatin1String(family);
  }
  return QLatin1String(fallback);
}

QFont MakeFont(const QString& family, double size_pt, bool bold) {
  QFont font(family);
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size_pt * 96 / 72))));
  font.setBold(bold);
  font.setStyleStrategy(
      static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
  font.setHintingPreference(QFont::PreferVerticalHinting);
  return font;
}

}  // namespace

QFont ProgramFont(double size_pt, bool bold) {
  static const QString kFamily =
      FirstInstalled({"Open Sans", "Noto Sans", "DejaVu Sans"}, "Sans Serif");
  return MakeFont(kFamily, size_pt, bold);
}

QFont FixedWidthFont(double size_pt) {
  static const QString kFamily = FirstInstalled(
      {"Courier", "DejaVu Sans Mono", "Noto Sans Mono", "Liberation Mono"}, "Monospace");
  return MakeFont(kFamily, size_pt, false);
}

QFont FontOf(TextRole role) {
  const RoleFont font = FontOfRole(role);
  return ProgramFont(font.size_pt, font.bold);
}

QColor ColorOf(TextRole role, bool enabled) {
  return ColorOfRole(role, enabled);
}

}  // namespace tarnvale
