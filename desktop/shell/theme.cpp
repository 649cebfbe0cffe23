#include "desktop/shell/theme.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionComplex>

#include "desktop/controls/button_view.h"
#include "desktop/controls/text_box_view.h"
#include "desktop/form_scale.h"
#include "desktop/shell/theme_drawing.h"
#include "desktop/shell/theme_icons.h"

namespace kelvaron {
namespace {

using namespace theme;

void drawButton(QPainter& painter, const QStyleOption& option, const QWidget* widget) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool isMain =
      (button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton)) ||
      (widget != nullptr && widget->property(kMainButton).toBool());
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  QColor fill = option.palette.color(QPalette::Button);
  if (enabled && isMain) fill = kSelection;
  if (option.state.testAnyFlags(QStyle::State_Sunken | QStyle::State_On)) {
    fill = fill.darker(125);
  } else if (enabled && option.state.testFlag(QStyle::State_MouseOver)) {
    fill = fill.lighter(120);
  }
  const bool focus = option.state.testFlag(QStyle::State_HasFocus);
  drawPanel(painter, option.rect, fill, focus ? kAccent : kLine, focus ? 2 : 1);
}

// The entry under the pointer stands out, the open one and that of the keyboard more.
void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& item) {
  const bool selected = item.state.testFlag(QStyle::State_Selected);
  const bool open = item.state.testFlag(QStyle::State_Sunken);
  painter.fillRect(item.rect, item.palette.color(QPalette::Window));
  if (selected) {
    const bool keyboard = item.state.testFlag(QStyle::State_HasFocus);
    drawPanel(painter, item.rect, open || keyboard ? kSelection : kButton,
              open || keyboard ? kAccent : kLine);
  }
  painter.setPen(item.palette.color(
      item.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled,
      QPalette::WindowText));
  painter.drawText(item.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                   item.text);
}

void drawTick(QPainter& painter, const QStyleOption& option) {
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool over = option.state.testFlag(QStyle::State_MouseOver);
  const QColor line = over && enabled ? kAccent : enabled ? kHandleHeld : kLine;
  drawPanel(painter, option.rect, option.palette.color(QPalette::Base), line);
  if (!option.state.testFlag(QStyle::State_On)) return;
  const QRectF box = option.rect;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(enabled ? kAccent : kDisabledText, box.width() / 7, Qt::SolidLine,
                      Qt::RoundCap, Qt::RoundJoin));
  const auto at = [&](qreal x, qreal y) {
    return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
  };
  painter.drawPolyline(QPolygonF{{at(0.24, 0.54), at(0.43, 0.72), at(0.76, 0.3)}});
  painter.restore();
}

void drawScrollBar(const QStyle& style, const QStyleOptionSlider& bar, QPainter& painter,
                   const QWidget* widget) {
  painter.fillRect(bar.rect, bar.palette.color(QPalette::Base));
  // Without anything to scroll there is no groove either.
  if (bar.maximum <= bar.minimum) return;
  QRect handle =
      style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget);
  handle = bar.orientation == Qt::Vertical ? handle.adjusted(3, 1, -3, -1)
                                           : handle.adjusted(1, 3, -1, -3);
  const bool held = bar.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                    bar.state.testAnyFlags(QStyle::State_Sunken | QStyle::State_MouseOver);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(held ? kHandleHeld : kHandle);
  painter.drawRoundedRect(handle, kRounding, kRounding);
  painter.restore();
}

// A frame with its caption in a gap of the upper line.
void drawGroupBox(const QStyleOptionGroupBox& box, QPainter& painter) {
  constexpr int kIndent = 10;
  constexpr int kCaptionGap = 5;
  const QRect caption(kIndent + kCaptionGap, 0, box.fontMetrics.horizontalAdvance(box.text),
                      box.fontMetrics.height());
  painter.save();
  if (!box.text.isEmpty()) {
    painter.setClipRegion(QRegion(box.rect) - caption.adjusted(-kCaptionGap, 0, kCaptionGap, 0));
  }
  drawPanel(painter, box.rect.adjusted(0, caption.height() / 2, 0, 0), Qt::NoBrush, kLine);
  painter.restore();
  painter.setPen(box.palette.color(QPalette::WindowText));
  painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter, box.text);
}

}  // namespace

QPalette darkPalette() {
  QPalette palette(kButton, kWindow);
  palette.setColor(QPalette::WindowText, kText);
  palette.setColor(QPalette::Text, kText);
  palette.setColor(QPalette::ButtonText, kText);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Base, kField);
  palette.setColor(QPalette::AlternateBase, kWindow);
  palette.setColor(QPalette::ToolTipBase, kButton);
  palette.setColor(QPalette::ToolTipText, kText);
  palette.setColor(QPalette::PlaceholderText, kDisabledText);
  palette.setColor(QPalette::Highlight, kSelection);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, kAccent);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, kDisabledText);
  }
  palette.setColor(QPalette::Disabled, QPalette::Button, kButton.darker(130));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, kButton);
  return palette;
}

Theme::Theme() : QProxyStyle(QStringLiteral("Fusion")) {}

int Theme::pixelMetric(PixelMetric metric, const QStyleOption* option,
                       const QWidget* widget) const {
  switch (metric) {
    case PM_MenuBarHMargin:
      return 6;
    case PM_MenuBarVMargin:
    case PM_MenuVMargin:
      return 3;
    case PM_MenuBarItemSpacing:
      return 10;
    case PM_ScrollBarExtent:
      return qRound(14 * formScale());
    case PM_MenuPanelWidth:
      return 1;
    case PM_FocusFrameHMargin:
      return 6;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight: {
      // As large as the text beside it, which a small screen makes smaller.
      const qreal share =
          widget == nullptr ? 1 : widget->font().pointSizeF() / QApplication::font().pointSizeF();
      return qRound(16 * formScale() * share);
    }
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

QSize Theme::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
  constexpr int kAirOfEntry = 4;
  QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
  if (type == CT_ItemViewItem) result.rheight() += kAirOfEntry;
  if (type == CT_ComboBox) result.rwidth() += comboArrowWidth(result.height());
  // As high as on forms, where their places say how high.
  constexpr qreal kHeightOfButton = 30;
  constexpr qreal kBesideCaption = 6;
  if (type == CT_PushButton) {
    result.rwidth() += 2 * qRound(kBesideCaption * formScale());
    result.setHeight(std::max(result.height(), qRound(kHeightOfButton * formScale())));
  }
  return result;
}

QRect Theme::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                            SubControl part, const QWidget* widget) const {
  const QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
  if (control != CC_ComboBox || (part != SC_ComboBoxArrow && part != SC_ComboBoxEditField)) {
    return rect;
  }
  return comboPart(*option, part, rect);
}

int Theme::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
  switch (hint) {
    case SH_LineEdit_PasswordCharacter:
      if (widget != nullptr && widget->property(kPasswordCharacter).isValid()) {
        return widget->property(kPasswordCharacter).toInt();
      }
      break;
    case SH_ItemView_ShowDecorationSelected:
      return 1;
    case SH_DialogButtonBox_ButtonsHaveIcons:
      return 0;
    case SH_Slider_AbsoluteSetButtons:
      return Qt::LeftButton;
    default:
      break;
  }
  return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QIcon Theme::standardIcon(StandardPixmap picture, const QStyleOption* option,
                          const QWidget* widget) const {
  switch (picture) {
    case SP_MessageBoxInformation:
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
      return boxIcon(picture);
    default:
      if (QIcon sign = fileSign(picture); !sign.isNull()) return sign;
      return QProxyStyle::standardIcon(picture, option, widget);
  }
}

void Theme::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  switch (element) {
    case PE_PanelLineEdit: {
      // The field in a combo box has none: the box draws it.
      const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame != nullptr && frame->lineWidth <= 0) break;
      drawPanel(*painter, option->rect, option->palette.color(QPalette::Base), lineOf(*option));
      break;
    }
    case PE_FrameLineEdit:
    case PE_Frame:
      drawPanel(*painter, option->rect, Qt::NoBrush, lineOf(*option));
      break;
    case PE_FrameGroupBox:
      drawPanel(*painter, option->rect, Qt::NoBrush, kLine);
      break;
    case PE_PanelMenu:
    case PE_FrameMenu:
      painter->fillRect(option->rect, kLine);
      painter->fillRect(option->rect.adjusted(1, 1, -1, -1), kMenu);
      break;
    case PE_PanelButtonCommand:
      drawButton(*painter, *option, widget);
      break;
    case PE_IndicatorCheckBox:
      drawTick(*painter, *option);
      break;
    case PE_FrameFocusRect:
      // A button shows its focus by its border.
      if (dynamic_cast<const QPushButton*>(widget) == nullptr) {
        drawPanel(*painter, option->rect, Qt::NoBrush, kAccent);
      }
      break;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void Theme::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
  if (element == CE_ProgressBar && bar != nullptr) {
    drawProgress(*bar, *painter);
  } else if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
             element == CE_MenuBarItem && item != nullptr) {
    drawMenuBarItem(*painter, *item);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void Theme::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                               QPainter* painter, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar != nullptr) {
    drawScrollBar(*this, *bar, *painter, widget);
  } else if (const auto* box = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
             control == CC_GroupBox && box != nullptr) {
    drawGroupBox(*box, *painter);
  } else if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
             control == CC_ComboBox && combo != nullptr) {
    drawComboBox(*this, *combo, *painter, widget);
  } else if (control == CC_Slider && bar != nullptr && bar->orientation == Qt::Horizontal) {
    drawSlider(*this, *bar, *painter, widget);
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

void applyTheme(QApplication& application) {
  QApplication::setStyle(new Theme);
  QApplication::setPalette(darkPalette());
  application.setEffectEnabled(Qt::UI_AnimateMenu, false);
}

}  // namespace kelvaron
