#include "system/OptionControls.h"

#include "app/Colors.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QScrollBar>

namespace quorvia::system {

void showValue(QWidget& control, OptionControl kind, int value)
{
    switch (kind) {
    case OptionControl::List:
        if (auto& list = static_cast<QComboBox&>(control); value >= 0 && value < list.count())
            list.setCurrentIndex(value);
        break;
    case OptionControl::Check:
        if (value == 0 || value == 1)
            static_cast<QCheckBox&>(control).setChecked(value == 1);
        break;
    case OptionControl::Color:
        showColor(control, app::fromColorNumber(value));
        break;
    case OptionControl::Slider: // the label follows
        static_cast<QScrollBar*>(static_cast<QLabel&>(control).buddy())->setValue(value);
        break;
    }
}

int shownValue(const QWidget& control, OptionControl kind)
{
    switch (kind) {
    case OptionControl::List:
        return static_cast<const QComboBox&>(control).currentIndex();
    case OptionControl::Check:
        return static_cast<const QCheckBox&>(control).isChecked() ? 1 : 0;
    case OptionControl::Color:
        return app::toColorNumber(app::paneColor(&control));
    case OptionControl::Slider:
        break;
    }
    return static_cast<const QLabel&>(control).text().trimmed().toInt();
}

void showColor(QWidget& patch, const QColor& color)
{
    app::setPaneColor(&patch, color);
    patch.setAccessibleDescription(color.name());
}

} // namespace quorvia::system
