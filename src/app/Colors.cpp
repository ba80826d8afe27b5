#include "app/Colors.h"

#include "platform/Contrast.h"

#include <QGuiApplication>
#include <QPalette>
#include <QWidget>

#include <algorithm>

namespace quorvia::app {

namespace {

struct SystemColor
{
    int code;
    QPalette::ColorGroup group;
    QPalette::ColorRole role;
};

// The codes of the system colours, with what a palette has for them.
constexpr SystemColor systemColors[] = {
    {0, QPalette::Active, QPalette::Mid},                // scroll bar
    {1, QPalette::Active, QPalette::Dark},               // desktop
    {2, QPalette::Active, QPalette::Highlight},          // title of the active window
    {3, QPalette::Inactive, QPalette::Highlight},        // title of another window
    {4, QPalette::Active, QPalette::Button},             // menu
    {5, QPalette::Active, QPalette::Base},               // window
    {6, QPalette::Active, QPalette::WindowText},         // frame of a window
    {7, QPalette::Active, QPalette::ButtonText},         // text of a menu
    {8, QPalette::Active, QPalette::Text},               // text in a window
    {9, QPalette::Active, QPalette::HighlightedText},    // text of the active title
    {10, QPalette::Active, QPalette::Mid},               // border of the active window
    {11, QPalette::Inactive, QPalette::Mid},             // border of another window
    {12, QPalette::Active, QPalette::Mid},               // workspace of an application
    {13, QPalette::Active, QPalette::Highlight},         // chosen entry
    {14, QPalette::Active, QPalette::HighlightedText},   // text of a chosen entry
    {15, QPalette::Active, QPalette::Button},            // face of a button
    {16, QPalette::Active, QPalette::Dark},              // shadow of a button
    {17, QPalette::Disabled, QPalette::Text},            // grey text
    {18, QPalette::Active, QPalette::ButtonText},        // text of a button
    {19, QPalette::Inactive, QPalette::HighlightedText}, // text of another title
    {20, QPalette::Active, QPalette::Light},             // lit edge of a button
    {21, QPalette::Active, QPalette::Shadow},            // dark shadow
    {22, QPalette::Active, QPalette::Midlight},          // light within an edge
    {23, QPalette::Active, QPalette::ToolTipText},
    {24, QPalette::Active, QPalette::ToolTipBase},
};

/// The colours that were given to `widget` itself: with others it would not follow the desktop's.
QPalette ownPalette(const QWidget& widget)
{
    return widget.testAttribute(Qt::WA_SetPalette) ? widget.palette() : QPalette();
}

} // namespace

int toColorNumber(const QColor& color)
{
    return color.red() | color.green() << 8 | color.blue() << 16;
}

QColor fromColorNumber(int number)
{
    return {number & 0xff, number >> 8 & 0xff, number >> 16 & 0xff};
}

QColor propertyColor(quint32 number, const QPalette& palette)
{
    constexpr quint32 systemMark = 0x80;
    if (number >> 24 != systemMark)
        return fromColorNumber(static_cast<int>(number));
    const int code = static_cast<int>(number & 0xff);
    const auto* const found = std::find_if(std::begin(systemColors), std::end(systemColors),
                                           [code](const SystemColor& color) { return color.code == code; });
    return found == std::end(systemColors) ? QColor(Qt::black) : palette.color(found->group, found->role);
}

QColor paneColor(const QWidget* pane)
{
    return pane->palette().color(QPalette::Window);
}

void setPaneColor(QWidget* pane, const QColor& color)
{
    const QPalette before = pane->palette();
    QPalette palette = ownPalette(*pane);
    palette.setColor(QPalette::Window, color);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        palette.setColor(group, QPalette::WindowText,
                         platform::inkOn(color, before.color(group, QPalette::WindowText)));
    pane->setPalette(palette);
}

void setDesktopColors(QWidget* control)
{
    const QPalette desktop = QGuiApplication::palette();
    QPalette palette = ownPalette(*control);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const QPalette::ColorRole role : {QPalette::Window, QPalette::WindowText})
            palette.setColor(group, role, desktop.color(group, role));
    }
    control->setPalette(palette);
}

} // namespace quorvia::app
