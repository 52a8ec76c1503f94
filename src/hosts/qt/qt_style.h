// How Qt's own controls are drawn. Nothing comes from the desktop's theme.
#pragma once

#include <QProxyStyle>
#include <QStyleOption>

namespace tarnvale {

/// Draws what the program's windows use of Qt's controls: fields, lists, trees,
/// scroll bars, radio buttons, check boxes, combo boxes, and the buttons of
/// message boxes.
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
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                              const QStyleOption* option) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  /// No text is taken for rich text, by whomever the label was made: a name in it
  /// would be able to bring pictures, links and words of its own.
  void polish(QWidget* widget) override;
  using QProxyStyle::polish;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;

 private:
  void DrawComboBox(const QStyleOptionComboBox& option, QPainter& painter,
                    const QWidget* widget) const;
  void DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter,
                     const QWidget* widget) const;
};

}  // namespace tarnvale
