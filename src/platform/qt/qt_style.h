// The program's look in Qt: typeface, colours, and how the plain controls are
// drawn. Nothing of it comes from the desktop's theme.
#pragma once

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QProxyStyle>

#include "platform/controls.h"
#include "platform/message_boxes.h"

namespace tarnvale {

namespace look {
inline constexpr QRgb kGround = 0xFFECE9D8;
inline constexpr QRgb kField = 0xFFFFFFFF;
inline constexpr QRgb kFieldFrame = 0xFF7F9DB9;
inline constexpr QRgb kFieldFrameOff = 0xFFC9C7BA;
inline constexpr QRgb kText = 0xFF1B1B1B;
inline constexpr QRgb kTextOff = 0xFF9A978A;
inline constexpr QRgb kNote = 0xFF5E5B50;
inline constexpr QRgb kSelection = 0xFF316AC5;
inline constexpr QRgb kSelectionIdle = 0xFFD3DCEB;
inline constexpr QRgb kLink = 0xFF1A4FA3;
inline constexpr QRgb kLinkOver = 0xFF2F7BE6;
inline constexpr QRgb kHeading = 0xFF16387C;
inline constexpr QRgb kPanelTop = 0xFFDDE7F8;
inline constexpr QRgb kPanelBottom = 0xFFBFD0EE;
inline constexpr QRgb kPanelEdge = 0xFF9DB2D8;
}  // namespace look

/// The program's one typeface at a size; greyscale, hinted the same everywhere.
QFont ProgramFont(double size_pt, bool bold = false);
/// As ProgramFont with every character equally wide.
QFont FixedWidthFont(double size_pt);
QFont FontOf(TextRole role);
QColor ColorOf(TextRole role, bool enabled);

/// The picture beside a message's text, 32 logical pixels wide.
QPixmap BoxPicture(BoxIcon icon, qreal pixel_ratio);
/// The little pictures in lists and trees, 16 logical pixels wide.
QIcon FileIcon();
QIcon FolderIcon();
QIcon ComputerIcon();

/// Draws what the program's windows use of Qt's own controls.
class QtStyle final : public QProxyStyle {
 public:
  QtStyle();

  /// Gives the application this style, its palette and its font.
  static void Install();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl sub,
                       const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
};

}  // namespace tarnvale
