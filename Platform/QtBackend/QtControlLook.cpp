#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QtBackend/QtControlLook.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtImage.h>
#include <QtBackend/QtPixelGrid.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr int standardDotsPerInch = 96; // at one pixel to a point
constexpr int smallestToolButtonMargin = 16;
constexpr CGFloat largestArea = 1 << 25; // pixels; no style draws anything larger, nor does a screen show it

constexpr CGColor fromQColor(QRgb color)
{
    return {qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0, qAlpha(color) / 255.0};
}

QStyle& style()
{
    return *QApplication::style();
}

Appearance appearanceOf(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness()
               ? Appearance::dark
               : Appearance::light;
}

QPalette makeDarkPalette()
{
    QPalette palette(QColor(72, 72, 76), QColor(47, 47, 51)); // works the shades out
    palette.setColor(QPalette::Base, QColor(22, 22, 25));
    palette.setColor(QPalette::Highlight, QColor(58, 130, 220));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(role, QColor(232, 232, 235));
        palette.setColor(QPalette::Disabled, role, QColor(134, 134, 139));
    }
    return palette;
}

// The desktop's own where it looks like that. The others are made once: styles keep pictures of controls by palette.
const QPalette& paletteOf(Appearance appearance)
{
    static QPalette desktop;
    static const QPalette dark = makeDarkPalette();
    static QPalette light;
    if (desktop.cacheKey() != QApplication::palette().cacheKey()) {
        desktop = QApplication::palette();
        light = style().standardPalette();
    }
    if (appearanceOf(desktop) == appearance)
        return desktop;
    return appearance == Appearance::dark ? dark : light;
}

QPalette::ColorGroup groupOf(const ControlDescription& control)
{
    if (!control.isEnabled)
        return QPalette::Disabled;
    return control.isWindowActive ? QPalette::Active : QPalette::Inactive;
}

QStyle::State stateOf(const ControlDescription& control)
{
    QStyle::State state;
    state.setFlag(QStyle::State_Enabled, control.isEnabled);
    state.setFlag(QStyle::State_Active, control.isWindowActive);
    state.setFlag(QStyle::State_Sunken, control.isPressed);
    state.setFlag(QStyle::State_Raised, !control.isPressed && control.value == ControlValue::off);
    state.setFlag(QStyle::State_MouseOver, control.isHovered && control.isEnabled);
    state.setFlag(QStyle::State_On, control.value == ControlValue::on);
    state.setFlag(QStyle::State_Off, control.value == ControlValue::off);
    state.setFlag(QStyle::State_NoChange, control.value == ControlValue::mixed);
    // Styles that show focus only once a key has been pressed are told that one has.
    state.setFlag(QStyle::State_HasFocus, control.hasFocus);
    state.setFlag(QStyle::State_KeyboardFocusChange, control.hasFocus);
    return state;
}

// The device gives the font, and with it everything that the style makes out of its resolution, its dots per inch.
void fillOption(QStyleOption& option, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    option.rect = rect;
    option.state = stateOf(control);
    option.direction = Qt::LeftToRight;
    option.palette = paletteOf(control.appearance);
    option.palette.setCurrentColorGroup(groupOf(control));
    option.fontMetrics = QFontMetrics(QApplication::font(), &device);
}

QStyleOptionButton buttonOption(const ControlDescription& control, const QRect& rect, const QImage& device)
{
    QStyleOptionButton option;
    fillOption(option, control, rect, device);
    option.features.setFlag(QStyleOptionButton::DefaultButton, control.isDefault);
    if (control.hasText)
        option.text = QStringLiteral("x"); // whether there is any is all that matters
    return option;
}

QStyleOptionToolButton toolButtonOption(const ControlDescription& control, const QRect& rect, const QImage& device)
{
    QStyleOptionToolButton option;
    fillOption(option, control, rect, device);
    option.state |= QStyle::State_AutoRaise;
    option.subControls = QStyle::SC_ToolButton;
    option.activeSubControls = control.isPressed ? QStyle::SC_ToolButton : QStyle::SC_None;
    return option;
}

QStyleOptionFrame fieldOption(const ControlDescription& control, const QRect& rect, const QImage& device)
{
    QStyleOptionFrame option;
    fillOption(option, control, rect, device);
    option.lineWidth = style().pixelMetric(QStyle::PM_DefaultFrameWidth, &option);
    option.state |= QStyle::State_Sunken;
    // Styles leave it to the field to look as if it had the keyboard only where it does.
    option.state.setFlag(QStyle::State_HasFocus, control.hasFocus && control.isWindowActive);
    return option;
}

QImage makeDevice(const QSize& size, CGFloat dotsPerInch)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.setDotsPerMeterX(qRound(dotsPerInch / 0.0254));
    image.setDotsPerMeterY(qRound(dotsPerInch / 0.0254));
    image.fill(Qt::transparent);
    return image;
}

// For measuring.
const QImage& standardDevice()
{
    static const QImage device = makeDevice({1, 1}, standardDotsPerInch);
    return device;
}

// What the style puts around the content of a tool button, on both sides together. That is meant for rows of
// pictures; words need air on their left and right.
QSize toolButtonMargins()
{
    const QStyleOptionToolButton option = toolButtonOption({}, {}, standardDevice());
    const QSize margins = style().sizeFromContents(QStyle::CT_ToolButton, &option, {0, 0}, nullptr);
    return margins.expandedTo({smallestToolButtonMargin, 0});
}

// What the style puts around the text of a field, on both sides together, and the air that its text keeps from that.
QSize fieldMargins()
{
    const QStyleOptionFrame option = fieldOption({}, {}, standardDevice());
    return style().sizeFromContents(QStyle::CT_LineEdit, &option, {2 * 4, 2 * 1}, nullptr);
}

QRect without(const QSize& margins, const QRect& rect)
{
    const QPoint topLeft(margins.width() / 2, margins.height() / 2);
    return {rect.topLeft() + topLeft, rect.size() - margins};
}

QSize wholeSize(CGSize size)
{
    constexpr CGFloat largest = 1 << 24;
    return {static_cast<int>(std::ceil(std::clamp(size.width, 0.0, largest))),
            static_cast<int>(std::ceil(std::clamp(size.height, 0.0, largest)))};
}

void drawPushButton(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    const QStyleOptionButton option = buttonOption(control, rect, device);
    style().drawControl(QStyle::CE_PushButtonBevel, &option, &painter);
    if (!control.hasFocus)
        return;
    QStyleOptionFocusRect ring;
    fillOption(ring, control, style().subElementRect(QStyle::SE_PushButtonFocusRect, &option), device);
    style().drawPrimitive(QStyle::PE_FrameFocusRect, &ring, &painter);
}

void drawIndicator(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    const bool isCheckBox = control.kind == ControlKind::checkBox;
    QStyleOptionButton option = buttonOption(control, rect, device);
    option.rect =
        style().subElementRect(isCheckBox ? QStyle::SE_CheckBoxIndicator : QStyle::SE_RadioButtonIndicator, &option);
    style().drawPrimitive(isCheckBox ? QStyle::PE_IndicatorCheckBox : QStyle::PE_IndicatorRadioButton, &option,
                          &painter);
}

// The part of the bar's inside that a sign moving to and fro takes while nobody knows how long it will be.
QRect movingPart(const QRect& inside, double position)
{
    constexpr double share = 0.3;
    const double phase = position - std::floor(position);
    const double place = phase < 0.5 ? 2 * phase : 2 - 2 * phase;
    const int width = qRound(inside.width() * share);
    return {inside.left() + qRound((inside.width() - width) * place), inside.top(), width, inside.height()};
}

void drawProgressBar(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    constexpr int steps = 10000;
    QStyleOptionProgressBar option;
    fillOption(option, control, rect, device);
    option.state |= QStyle::State_Horizontal;
    option.maximum = steps;
    option.progress = control.isIndeterminate ? steps : qRound(std::clamp(control.progress, 0.0, 1.0) * steps);
    QStyleOptionProgressBar part = option;
    part.rect = style().subElementRect(QStyle::SE_ProgressBarGroove, &option);
    style().drawControl(QStyle::CE_ProgressBarGroove, &part, &painter);
    part.rect = style().subElementRect(QStyle::SE_ProgressBarContents, &option);
    if (control.isIndeterminate) // the style would run a clock of its own
        part.rect = movingPart(part.rect, control.progress);
    style().drawControl(QStyle::CE_ProgressBarContents, &part, &painter);
}

void drawFocusRing(QPainter& painter, ControlDescription control, const QRect& rect, const QImage& device)
{
    control.hasFocus = true;
    QStyleOptionFocusRect option;
    fillOption(option, control, rect, device);
    style().drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter);
}

// Styles set a toolbar off by light lines along its upper and lower edge. These are left outside: above is the title
// bar, of which it is to look a part.
void drawToolbar(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    QStyleOptionToolBar option;
    fillOption(option, control, rect.adjusted(0, -1, 0, 1), device);
    option.state |= QStyle::State_Horizontal;
    option.positionOfLine = option.positionWithinLine = QStyleOptionToolBar::OnlyOne;
    option.toolBarArea = Qt::TopToolBarArea;
    style().drawControl(QStyle::CE_ToolBar, &option, &painter);
}

void drawToolButton(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    const QStyleOptionToolButton option = toolButtonOption(control, rect, device);
    style().drawComplexControl(QStyle::CC_ToolButton, &option, &painter);
}

// What fills it is the field's own.
void drawField(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    const QStyleOptionFrame option = fieldOption(control, rect, device);
    style().drawPrimitive(QStyle::PE_FrameLineEdit, &option, &painter);
}

void drawWithStyle(QPainter& painter, const ControlDescription& control, const QRect& rect, const QImage& device)
{
    switch (control.kind) {
    case ControlKind::pushButton:
        return drawPushButton(painter, control, rect, device);
    case ControlKind::checkBox:
    case ControlKind::radioButton:
        return drawIndicator(painter, control, rect, device);
    case ControlKind::progressBar:
        return drawProgressBar(painter, control, rect, device);
    case ControlKind::textField:
        return drawField(painter, control, rect, device);
    case ControlKind::focusRing:
        return drawFocusRing(painter, control, rect, device);
    case ControlKind::toolbar:
        return drawToolbar(painter, control, rect, device);
    case ControlKind::toolButton:
        return drawToolButton(painter, control, rect, device);
    }
}

// The control in so many pixels. Styles draw lines that are one unit wide, so a unit is a whole number of pixels, and
// what is left of the scale goes into the resolution, by which styles make everything else larger.
QImage controlImage(const ControlDescription& control, const QSize& pixels, CGFloat scale)
{
    const int unit = std::max(1, static_cast<int>(std::floor(scale + 1e-6)));
    QImage image = makeDevice(pixels, standardDotsPerInch * scale / unit);
    image.setDevicePixelRatio(unit);
    const QSize units(std::max(1, pixels.width() / unit), std::max(1, pixels.height() / unit));
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, false); // the style's own choice, as in a widget
        painter.scale(static_cast<qreal>(pixels.width()) / (units.width() * unit),
                      static_cast<qreal>(pixels.height()) / (units.height() * unit));
        drawWithStyle(painter, control, QRect({0, 0}, units), image);
    }
    image.setDevicePixelRatio(1);
    return image;
}

} // namespace

CGSize QtControlLook::sizeForContent(const ControlDescription& control, CGSize content)
{
    const QSize inside = wholeSize(content);
    QStyleOptionButton option = buttonOption(control, QRect({0, 0}, inside), standardDevice());
    if (!inside.isEmpty() && option.text.isEmpty() && control.kind != ControlKind::pushButton)
        option.text = QStringLiteral("x"); // a picture wants the same gap before it
    const auto sizeOf = [&](QStyle::ContentsType type) {
        return fromQSize(style().sizeFromContents(type, &option, inside, nullptr).expandedTo(inside));
    };
    switch (control.kind) {
    case ControlKind::pushButton:
        return sizeOf(QStyle::CT_PushButton);
    case ControlKind::checkBox:
        return sizeOf(QStyle::CT_CheckBox);
    case ControlKind::radioButton:
        return sizeOf(QStyle::CT_RadioButton);
    case ControlKind::progressBar:
        return {0, static_cast<CGFloat>(style().pixelMetric(QStyle::PM_IndicatorHeight, &option))};
    case ControlKind::textField:
        return fromQSize(inside + fieldMargins());
    case ControlKind::toolButton:
        return fromQSize(inside + toolButtonMargins());
    case ControlKind::focusRing:
    case ControlKind::toolbar:
        break;
    }
    return fromQSize(inside);
}

CGRect QtControlLook::contentRect(const ControlDescription& control, CGSize size)
{
    const QRect rect({0, 0}, wholeSize(size));
    const QStyleOptionButton option = buttonOption(control, rect, standardDevice());
    QRect inside;
    switch (control.kind) {
    case ControlKind::pushButton: {
        // Of its margin the style leaves the content only the frame.
        const int margin = style().pixelMetric(QStyle::PM_ButtonMargin, &option) / 2;
        inside = style().subElementRect(QStyle::SE_PushButtonContents, &option).adjusted(margin, 0, -margin, 0);
        break;
    }
    case ControlKind::checkBox:
        inside = style().subElementRect(QStyle::SE_CheckBoxContents, &option);
        break;
    case ControlKind::radioButton:
        inside = style().subElementRect(QStyle::SE_RadioButtonContents, &option);
        break;
    case ControlKind::textField:
        inside = without(fieldMargins(), rect);
        break;
    case ControlKind::toolButton:
        inside = without(toolButtonMargins(), rect);
        break;
    case ControlKind::progressBar:
    case ControlKind::focusRing:
    case ControlKind::toolbar:
        return {};
    }
    return {static_cast<CGFloat>(inside.x()), static_cast<CGFloat>(inside.y()),
            std::max(0.0, static_cast<CGFloat>(inside.width())),
            std::max(0.0, static_cast<CGFloat>(inside.height()))};
}

CGColor QtControlLook::contentColor(const ControlDescription& control)
{
    const QPalette::ColorRole role =
        control.kind == ControlKind::pushButton || control.kind == ControlKind::toolButton ? QPalette::ButtonText
                                                                                           : QPalette::WindowText;
    return fromQColor(paletteOf(control.appearance).color(groupOf(control), role).rgba());
}

Appearance QtControlLook::desktopAppearance()
{
    return appearanceOf(QApplication::palette());
}

CGColor QtControlLook::windowColor(Appearance appearance)
{
    return fromQColor(paletteOf(appearance).color(QPalette::Active, QPalette::Window).rgba());
}

CGColor QtControlLook::textColor(Appearance appearance)
{
    return fromQColor(paletteOf(appearance).color(QPalette::Active, QPalette::WindowText).rgba());
}

CGColor QtControlLook::accentColor(Appearance appearance)
{
    return fromQColor(paletteOf(appearance).color(QPalette::Active, QPalette::Highlight).rgba());
}

void drawControl(QPainter& painter, const ControlDescription& control, const CGRect& rect)
{
    const QTransform toDevice = painter.deviceTransform();
    const CGFloat scale = std::sqrt(std::abs(toDevice.determinant()));
    const auto pixels = snappedToDevice(toDevice, rect);
    const QSize size = pixels ? pixels->size()
                              : QSize(qRound(std::min(rect.size.width * scale, largestArea)),
                                      qRound(std::min(rect.size.height * scale, largestArea)));
    if (size.isEmpty() || 1.0 * size.width() * size.height() > largestArea)
        return;
    drawPixels(painter, controlImage(control, size, scale), rect);
}

} // namespace RVCore
