#include <HeadlessBackend/HeadlessControlLook.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat buttonMarginX = 10;
constexpr CGFloat buttonMarginY = 4;
constexpr CGFloat smallestButtonWidth = 60;
constexpr CGFloat toolButtonMarginX = 6;
constexpr CGFloat indicatorSide = 14;
constexpr CGFloat indicatorGap = 4;
constexpr CGFloat barHeight = 12;
constexpr CGFloat fieldMarginX = 6;
constexpr CGFloat fieldMarginY = 4;

constexpr CGColor black{0, 0, 0, 1};
constexpr CGColor white{1, 1, 1, 1};
constexpr CGColor gray{0.5, 0.5, 0.5, 1};

bool hasIndicator(const ControlDescription& control)
{
    return control.kind == ControlKind::checkBox || control.kind == ControlKind::radioButton;
}

bool isButton(const ControlDescription& control)
{
    return control.kind == ControlKind::pushButton || control.kind == ControlKind::toolButton;
}

CGFloat marginX(const ControlDescription& control)
{
    return control.kind == ControlKind::toolButton ? toolButtonMarginX : buttonMarginX;
}

} // namespace

CGSize HeadlessControlLook::sizeForContent(const ControlDescription& control, CGSize content)
{
    CGSize size{std::ceil(content.width), std::ceil(content.height)};
    if (isButton(control)) {
        size = {size.width + 2 * marginX(control), size.height + 2 * buttonMarginY};
        if (control.hasText && control.kind == ControlKind::pushButton)
            size.width = std::max(size.width, smallestButtonWidth);
    } else if (hasIndicator(control)) {
        const CGFloat gap = content.width > 0 ? indicatorGap : 0;
        size = {indicatorSide + gap + size.width, std::max(indicatorSide, size.height)};
    } else if (control.kind == ControlKind::progressBar) {
        size = {0, barHeight};
    } else if (control.kind == ControlKind::textField) {
        size = {size.width + 2 * fieldMarginX, size.height + 2 * fieldMarginY};
    }
    return size;
}

CGRect HeadlessControlLook::contentRect(const ControlDescription& control, CGSize size)
{
    if (isButton(control))
        return {marginX(control), buttonMarginY, std::max(0.0, size.width - 2 * marginX(control)),
                std::max(0.0, size.height - 2 * buttonMarginY)};
    if (control.kind == ControlKind::textField)
        return {fieldMarginX, fieldMarginY, std::max(0.0, size.width - 2 * fieldMarginX),
                std::max(0.0, size.height - 2 * fieldMarginY)};
    if (hasIndicator(control))
        return {indicatorSide + indicatorGap, 0, std::max(0.0, size.width - indicatorSide - indicatorGap),
                size.height};
    return {};
}

CGColor HeadlessControlLook::contentColor(const ControlDescription& control)
{
    return control.isEnabled ? textColor(control.appearance) : gray;
}

CGColor HeadlessControlLook::windowColor(Appearance appearance)
{
    return appearance == Appearance::light ? white : black;
}

CGColor HeadlessControlLook::textColor(Appearance appearance)
{
    return appearance == Appearance::light ? black : white;
}

CGColor HeadlessControlLook::accentColor(Appearance)
{
    return {0, 0, 1, 1};
}

} // namespace RVCore
