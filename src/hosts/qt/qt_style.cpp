#include "hosts/qt/qt_style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QTreeView>

#include "hosts/qt/qt_look.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

constexpr int kMarkSize = 13;
constexpr int kMarkSpacing = 6;
constexpr int kArrowWidth = 17;
constexpr int kButtonWidth = 78;
constexpr int kButtonHeight = 25;

/// Keeps a painter's state for one drawing.
class Saved {
 public:
  explicit Saved(QPainter& painter) : painter_(painter) { painter_.save(); }
  ~Saved() { painter_.restore(); }
  Saved(const Saved&) = delete;
  Saved& operator=(const Saved&) = delete;

 private:
  QPainter& painter_;
};

bool Has(const QStyleOption& option, QStyle::StateFlag flag) {
  return option.state.testFlag(flag);
}

/// A frame one logical pixel wide, inside `rect`, crisp at whole scales.
void Frame(QPainter& painter, const QRect& rect, QRgb color) {
  const QColor c(color);
  painter.fillRect(rect.left(), rect.top(), rect.width(), 1, c);
  painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, c);
  painter.fillRect(rect.left(), rect.top() + 1, 1, rect.height() - 2, c);
  painter.fillRect(rect.right(), rect.top() + 1, 1, rect.height() - 2, c);
}

QRgb FieldFrame(const QStyleOption& option) {
  if (!Has(option, QStyle::State_Enabled)) return palette::kFieldFrameOff;
  return Has(option, QStyle::State_HasFocus) ? palette::kSelection : palette::kFieldFrame;
}

QRgb KnobColor(const QStyleOption& option, bool is_active) {
  if (!Has(option, QStyle::State_Enabled)) return palette::kGroove;
  if (is_active && Has(option, QStyle::State_Sunken)) return palette::kKnobDown;
  if (is_active && Has(option, QStyle::State_MouseOver)) return palette::kKnobOver;
  return palette::kKnob;
}

/// The blue block of scroll bars and drop-down arrows.
void DrawKnob(QPainter& painter, const QRect& rect, QRgb color, bool enabled) {
  const Saved saved(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient shade(rect.topLeft(), rect.bottomRight());
  shade.setColorAt(0, QColor(color).lighter(106));
  shade.setColorAt(1, QColor(color).darker(104));
  painter.setBrush(shade);
  painter.setPen(QPen(QColor(enabled ? palette::kKnobFrame : palette::kFieldFrameOff), 1));
  painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
}

void DrawArrow(QPainter& painter, const QRect& rect, Qt::ArrowType arrow, bool enabled) {
  const Saved saved(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect).center());
  switch (arrow) {
    case Qt::UpArrow:
      painter.rotate(180);
      break;
    case Qt::LeftArrow:
      painter.rotate(90);
      break;
    case Qt::RightArrow:
      painter.rotate(-90);
      break;
    default:
      break;
  }
  painter.setPen(QPen(QColor(enabled ? palette::kArrow : palette::kFieldFrameOff), 2, Qt::SolidLine,
                      Qt::FlatCap, Qt::MiterJoin));
  painter.drawPolyline(QPolygonF({{-3.5, -1.75}, {0, 1.75}, {3.5, -1.75}}));
}

/// The inside of check boxes and radio buttons.
QBrush MarkGround(const QStyleOption& option, const QRectF& rect) {
  if (!Has(option, QStyle::State_Enabled)) return QColor(palette::kMarkOff);
  if (Has(option, QStyle::State_Sunken)) return QColor(palette::kMarkDown);
  QLinearGradient shade(rect.topLeft(), rect.bottomRight());
  shade.setColorAt(0, QColor(palette::kMarkShade));
  shade.setColorAt(1, Qt::white);
  return shade;
}

QColor MarkFrame(const QStyleOption& option) {
  return Has(option, QStyle::State_Enabled) ? palette::kMark : palette::kFieldFrameOff;
}

QColor TickColor(const QStyleOption& option) {
  return Has(option, QStyle::State_Enabled) ? palette::kTick : palette::kFieldFrameOff;
}

bool IsOver(const QStyleOption& option) {
  return Has(option, QStyle::State_Enabled) && Has(option, QStyle::State_MouseOver) &&
         !Has(option, QStyle::State_Sunken);
}

void DrawCheckMark(const QStyleOption& option, QPainter& painter) {
  const Saved saved(painter);
  const QRect rect = option.rect;
  painter.fillRect(rect, MarkGround(option, rect));
  if (IsOver(option)) Frame(painter, rect.adjusted(1, 1, -1, -1), palette::kGlow);
  Frame(painter, rect, MarkFrame(option).rgb());
  if (!Has(option, QStyle::State_On)) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(TickColor(option), 2.2, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  painter.translate(rect.topLeft());
  painter.drawPolyline(QPolygonF({{2.9, 6.1}, {5.4, 8.8}, {10.2, 3.4}}));
}

void DrawRadioMark(const QStyleOption& option, QPainter& painter) {
  const Saved saved(painter);
  const QRectF circle = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(MarkGround(option, circle));
  painter.setPen(QPen(MarkFrame(option), 1));
  painter.drawEllipse(circle);
  if (IsOver(option)) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(palette::kGlow), 1));
    painter.drawEllipse(circle.adjusted(1, 1, -1, -1));
  }
  if (!Has(option, QStyle::State_On)) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(TickColor(option));
  painter.drawEllipse(circle.adjusted(3.5, 3.5, -3.5, -3.5));
}

/// The box with plus or minus that opens and closes a row of a tree.
void DrawBranch(const QStyleOption& option, QPainter& painter) {
  if (!Has(option, QStyle::State_Children)) return;
  const QPoint center = option.rect.center();
  const QRect box(center.x() - 4, center.y() - 4, 9, 9);
  QLinearGradient shade(box.topLeft(), box.bottomRight());
  shade.setColorAt(0, Qt::white);
  shade.setColorAt(1, QColor(palette::kBranchShade));
  painter.fillRect(box, shade);
  Frame(painter, box, palette::kFieldFrame);
  painter.fillRect(box.left() + 2, center.y(), 5, 1, QColor(palette::kText));
  if (!Has(option, QStyle::State_Open)) {
    painter.fillRect(center.x(), box.top() + 2, 1, 5, QColor(palette::kText));
  }
}

void DrawFocus(const QStyleOption& option, QPainter& painter) {
  const Saved saved(painter);
  QPen pen(QColor(palette::kFocus), 1);
  pen.setDashPattern({1, 1});
  painter.setPen(pen);
  painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

void DrawField(const QStyleOption& option, QPainter& painter) {
  const QRgb ground = Has(option, QStyle::State_Enabled) ? palette::kField : palette::kGround;
  painter.fillRect(option.rect.adjusted(1, 1, -1, -1), QColor(ground));
  Frame(painter, option.rect, FieldFrame(option));
}

/// The push button of message boxes, like the program's own buttons.
void DrawButton(const QStyleOption& option, QPainter& painter) {
  const Saved saved(painter);
  const QRect rect = option.rect;
  const bool is_down = Has(option, QStyle::State_Sunken);
  QLinearGradient shade(rect.topLeft(), rect.bottomLeft());
  shade.setColorAt(is_down ? 1 : 0, QColor(palette::kButtonTop));
  shade.setColorAt(is_down ? 0 : 1, QColor(palette::kButtonBottom));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(shade);
  painter.setPen(QPen(QColor(palette::kButtonFrame), 1));
  const QRectF outline = QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.drawRoundedRect(outline, 2.5, 2.5);
  const bool is_marked = IsOver(option) || Has(option, QStyle::State_HasFocus);
  if (is_down || !is_marked) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(IsOver(option) ? palette::kButtonGlow : palette::kButtonFocus), 2));
  painter.drawRoundedRect(outline.adjusted(1.5, 1.5, -1.5, -1.5), 1.5, 1.5);
}

void DrawMenuTitle(const QStyleOption& option, QPainter& painter) {
  const auto* title = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  if (title == nullptr) return;
  const bool is_open = Has(option, QStyle::State_Selected);
  painter.fillRect(option.rect, QColor(is_open ? palette::kSelection : palette::kGround));
  const Saved saved(painter);
  const QRgb usual = Has(option, QStyle::State_Enabled) ? palette::kText : palette::kTextOff;
  painter.setPen(QColor(is_open ? palette::kField : usual));
  painter.drawText(option.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                   title->text);
}

void DrawTip(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, QColor(palette::kTip));
  Frame(painter, option.rect, palette::kTipFrame);
}

QPalette ProgramPalette() {
  QPalette palette;
  const auto set = [&palette](QPalette::ColorRole role, QRgb color) {
    palette.setColor(role, QColor(color));
  };
  set(QPalette::Window, palette::kGround);
  set(QPalette::Button, palette::kGround);
  set(QPalette::Base, palette::kField);
  set(QPalette::AlternateBase, palette::kSecondRow);
  set(QPalette::WindowText, palette::kText);
  set(QPalette::ButtonText, palette::kText);
  set(QPalette::Text, palette::kText);
  set(QPalette::BrightText, palette::kField);
  set(QPalette::PlaceholderText, palette::kText);
  set(QPalette::Highlight, palette::kSelection);
  set(QPalette::HighlightedText, palette::kField);
  set(QPalette::Link, palette::kLink);
  set(QPalette::ToolTipBase, palette::kTip);
  set(QPalette::ToolTipText, palette::kText);
  set(QPalette::Light, palette::kEdgeBright);
  set(QPalette::Midlight, palette::kEdgeLight);
  set(QPalette::Mid, palette::kEdgeMiddle);
  set(QPalette::Dark, palette::kEdgeDark);
  set(QPalette::Shadow, palette::kEdgeShadow);
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(palette::kSelectionIdle));
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(palette::kText));
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::ButtonText, QPalette::Text, QPalette::PlaceholderText}) {
    palette.setColor(QPalette::Disabled, role, QColor(palette::kTextOff));
  }
  palette.setColor(QPalette::Disabled, QPalette::Base, QColor(palette::kGround));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(palette::kSelectionIdle));
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(palette::kTextOff));
  return palette;
}

Qt::ArrowType BackArrow(const QStyleOptionSlider& bar) {
  return bar.orientation == Qt::Horizontal ? Qt::LeftArrow : Qt::UpArrow;
}

Qt::ArrowType ForthArrow(const QStyleOptionSlider& bar) {
  return bar.orientation == Qt::Horizontal ? Qt::RightArrow : Qt::DownArrow;
}

/// The ridges in the middle of a scroll bar's knob.
void DrawGrip(QPainter& painter, const QRect& knob, Qt::Orientation orientation) {
  const QPoint center = knob.center();
  if ((orientation == Qt::Vertical ? knob.height() : knob.width()) < 20) return;
  for (const int step : {-3, -1, 1, 3}) {
    if (orientation == Qt::Vertical) {
      painter.fillRect(center.x() - 3, center.y() + step, 7, 1, QColor(palette::kKnobFrame));
    } else {
      painter.fillRect(center.x() + step, center.y() - 3, 1, 7, QColor(palette::kKnobFrame));
    }
  }
}

}  // namespace

QtStyle::QtStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void QtStyle::Install() {
  QApplication::setStyle(new QtStyle);
  QApplication::setPalette(ProgramPalette());
  QApplication::setFont(ProgramFont(9));
}

void QtStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  switch (element) {
    case PE_PanelLineEdit: {
      // The one inside a combo box is on the combo box's own field.
      const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame == nullptr || frame->lineWidth > 0) DrawField(*option, *painter);
      return;
    }
    case PE_FrameLineEdit:
      Frame(*painter, option->rect, FieldFrame(*option));
      return;
    case PE_Frame:
      if (qobject_cast<const QAbstractScrollArea*>(widget) == nullptr) break;
      Frame(*painter, option->rect, FieldFrame(*option));
      return;
    case PE_IndicatorCheckBox:
      DrawCheckMark(*option, *painter);
      return;
    case PE_IndicatorRadioButton:
      DrawRadioMark(*option, *painter);
      return;
    case PE_IndicatorBranch:
      DrawBranch(*option, *painter);
      return;
    case PE_FrameFocusRect:
      DrawFocus(*option, *painter);
      return;
    case PE_PanelTipLabel:
      DrawTip(*option, *painter);
      return;
    // A tree's selection is its text alone.
    case PE_PanelItemViewRow:
      if (qobject_cast<const QTreeView*>(widget) != nullptr) return;
      break;
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void QtStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  switch (element) {
    case CE_PushButtonBevel:
      DrawButton(*option, *painter);
      return;
    case CE_MenuBarItem:
      DrawMenuTitle(*option, *painter);
      return;
    case CE_MenuBarEmptyArea:
      painter->fillRect(option->rect, QColor(palette::kGround));
      return;
    default:
      QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void QtStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                 QPainter* painter, const QWidget* widget) const {
  if (control == CC_ComboBox) {
    if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
      DrawComboBox(*combo, *painter, widget);
      return;
    }
  }
  if (control == CC_ScrollBar) {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
      DrawScrollBar(*bar, *painter, widget);
      return;
    }
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void QtStyle::DrawComboBox(const QStyleOptionComboBox& option, QPainter& painter,
                           const QWidget* widget) const {
  DrawField(option, painter);
  const QRect arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
  const bool enabled = Has(option, State_Enabled);
  const bool is_active = option.activeSubControls.testFlag(SC_ComboBoxArrow) || !option.editable;
  DrawKnob(painter, arrow, KnobColor(option, is_active), enabled);
  DrawArrow(painter, arrow, Qt::DownArrow, enabled);
  if (option.editable || !Has(option, State_HasFocus)) return;
  QStyleOption focus = option;
  focus.rect = QRect(option.rect.topLeft(), QPoint(arrow.left() - 1, option.rect.bottom()));
  focus.rect.adjust(2, 2, -1, -2);
  DrawFocus(focus, painter);
}

void QtStyle::DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter,
                            const QWidget* widget) const {
  painter.fillRect(option.rect, QColor(palette::kGroove));
  const bool enabled = Has(option, State_Enabled) && option.minimum < option.maximum;
  const auto knob = [&](SubControl sub) {
    const QRect rect = subControlRect(CC_ScrollBar, &option, sub, widget).adjusted(1, 1, -1, -1);
    const bool is_active = option.activeSubControls.testFlag(sub);
    DrawKnob(painter, rect, enabled ? KnobColor(option, is_active) : palette::kGroove, enabled);
    return rect;
  };
  DrawArrow(painter, knob(SC_ScrollBarSubLine), BackArrow(option), enabled);
  DrawArrow(painter, knob(SC_ScrollBarAddLine), ForthArrow(option), enabled);
  if (enabled) DrawGrip(painter, knob(SC_ScrollBarSlider), option.orientation);
}

QRect QtStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                              SubControl sub, const QWidget* widget) const {
  if (control == CC_ComboBox) {
    const QRect inside = option->rect.adjusted(1, 1, -1, -1);
    const int edge = inside.right() - kArrowWidth;
    if (sub == SC_ComboBoxArrow) {
      return QRect(edge + 1, inside.top(), kArrowWidth, inside.height()).adjusted(0, 1, -1, -1);
    }
    if (sub == SC_ComboBoxEditField) {
      return QRect(QPoint(inside.left() + 2, inside.top()), QPoint(edge, inside.bottom()));
    }
  }
  return QProxyStyle::subControlRect(control, option, sub, widget);
}

QSize QtStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                const QWidget* widget) const {
  const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
  switch (type) {
    case CT_PushButton:
      return wanted.expandedTo(QSize(kButtonWidth, kButtonHeight));
    case CT_ItemViewItem:
      return wanted.expandedTo(QSize(0, 18));
    case CT_MenuItem: {
      const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      const bool is_row = item != nullptr && item->menuItemType != QStyleOptionMenuItem::Separator;
      return is_row ? wanted.expandedTo(QSize(0, 23)) : wanted;
    }
    default:
      return wanted;
  }
}

QPixmap QtStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                     const QStyleOption* option) const {
  // A selected row shows by its text.
  if (mode == QIcon::Selected) return pixmap;
  return QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}

int QtStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                         const QWidget* widget) const {
  switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return kMarkSize;
    // The captions of both kinds begin at one edge: the base counts from a tick's
    // last pixel, but from the one behind a radio button.
    case PM_CheckBoxLabelSpacing:
      return kMarkSpacing;
    case PM_RadioButtonLabelSpacing:
      return kMarkSpacing - 1;
    case PM_ScrollBarExtent:
      return 17;
    case PM_ScrollBarSliderMin:
      return 20;
    case PM_DefaultFrameWidth:
      return 1;
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
      return 16;
    case PM_TreeViewIndentation:
      return 18;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    case PM_ScrollView_ScrollBarSpacing:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

void QtStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  auto* label = qobject_cast<QLabel*>(widget);
  if (label == nullptr || label->textFormat() != Qt::AutoText) return;
  label->setTextFormat(Qt::PlainText);
  const QString shown = WithoutControls(label->text());
  if (shown != label->text()) label->setText(shown);
}

int QtStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                       QStyleHintReturn* data) const {
  switch (hint) {
    case SH_ItemView_ShowDecorationSelected:
      return qobject_cast<const QTreeView*>(widget) == nullptr;
    case SH_LineEdit_PasswordCharacter:
      return '*';
    case SH_MessageBox_CenterButtons:
    case SH_UnderlineShortcut:
      return 1;
    case SH_DialogButtonLayout:  // Yes, No; OK, Cancel
    case SH_ComboBox_Popup:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, data);
  }
}

}  // namespace tarnvale
