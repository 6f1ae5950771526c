#include <Contacts/ColorPalette.h>
#include <Contacts/ColorText.h>

namespace Contacts {

using namespace RVCore;

namespace {

struct PaletteColor {
    const char* name; // for assistive technology
    const char* value;
};
constexpr PaletteColor rows[2][4] = {
    {{"Red", "#d64541"}, {"Orange", "#e08e2b"}, {"Yellow", "#e3c93c"}, {"Green", "#4aa564"}},
    {{"Blue", "#3b7dd8"}, {"Purple", "#8a5bc7"}, {"Brown", "#8f6a4a"}, {"Grey", "#8e8e93"}}};
constexpr CGFloat gap = 6;

} // namespace

Class& ColorPalette::staticClass()
{
    static Class& theClass =
        defineClass<ColorPalette>("Contacts.ColorPalette", RVGroupView::staticClass(),
                                  [](auto& publish) { publish.method("chosen:", &ColorPalette::chosen); });
    return theClass;
}

void ColorPalette::init()
{
    Views groups;
    for (const auto& row : rows) {
        Views buttons;
        for (const PaletteColor& color : row) {
            auto button = make<RVColorButton>(colorWithCGColor(colorFromText(color.value)));
            button->setAccessibilityLabel(color.name);
            button->setTarget(shared(*this));
            button->setAction("chosen:");
            buttons.push_back(button);
        }
        groups.push_back(makeGroupView(buttons, {.spacing = gap}));
    }
    init(groups, {.orientation = Orientation::vertical, .spacing = gap});
}

void ColorPalette::chosen(const ObjectRef& sender)
{
    // The choice may take the palette off the screen, and with it the closure.
    const auto onChoose = m_onChoose;
    if (onChoose)
        onChoose(std::static_pointer_cast<RVColorButton>(sender)->color());
}

} // namespace Contacts
