#include "collections/ButtonRow.h"

#include "collections/PlaylistLayout.h"
#include "platform/Icons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace quorvia::collections {

namespace {

constexpr int gap = 2; // pixels between the parts
constexpr int air = 2; // above and below the row

QAbstractButton* makeButton(const ButtonParts& parts, QWidget* parent)
{
    if (*parts.text != '\0')
        return new QPushButton(QString::fromLatin1(parts.text), parent);
    return new QToolButton(parent);
}

/// A label that clicks a button when it is clicked.
class ButtonLabel : public QLabel
{
  public:
    ButtonLabel(const QString& text, QAbstractButton* button, QWidget* parent)
        : QLabel(text, parent), m_button(button)
    {
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        m_pressed = event->button() == Qt::LeftButton;
        m_button->setDown(m_pressed);
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        m_button->setDown(false);
        if (std::exchange(m_pressed, false) && rect().contains(event->position().toPoint()))
            m_button->click();
    }

  private:
    QAbstractButton* m_button;
    bool m_pressed = false; ///< a click has begun here
};

} // namespace

ButtonRow::ButtonRow(const QString& name, QWidget* parent) : QWidget(parent)
{
    setObjectName(name);
}

QAbstractButton* ButtonRow::addButton(const ButtonParts& parts)
{
    QAbstractButton* const button = makeButton(parts, this);
    button->setObjectName(QString::fromLatin1(parts.name));
    button->setIcon(platform::icon(QString::fromLatin1(parts.icon)));
    button->setIconSize({16, 16});
    button->setToolTip(parts.toolTip);
    const QLatin1String text(*parts.label != '\0' ? parts.label : parts.text);
    button->setAccessibleName(text.isEmpty() ? parts.toolTip : QString(text).trimmed());
    button->setFocusPolicy(Qt::TabFocus);
    if (!parts.command.isEmpty())
        connect(button, &QAbstractButton::clicked, this,
                [this, button, command = parts.command] { Q_EMIT wanted(command, button); });
    m_buttons.append(button);
    m_parts.append(*parts.label != '\0' ? labelled(button, parts) : button);
    return button;
}

QWidget* ButtonRow::labelled(QAbstractButton* button, const ButtonParts& parts)
{
    auto* const both = new QWidget(this);
    auto* const label = new ButtonLabel(QString::fromLatin1(parts.label), button, both);
    label->setObjectName(QString::fromLatin1(parts.labelName));
    label->setToolTip(parts.toolTip);
    auto* const layout = new QHBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2 * gap);
    layout->addWidget(button);
    layout->addWidget(label);
    return both;
}

QList<QRect> ButtonRow::places(int width) const
{
    QList<QSize> sizes;
    int widest = 0; // of the buttons with a text, which have one width
    for (const QWidget* const part : m_parts) {
        sizes.append(part->sizeHint());
        if (qobject_cast<const QPushButton*>(part))
            widest = std::max(widest, sizes.last().width());
    }
    for (qsizetype i = 0; i < sizes.size(); ++i) {
        if (qobject_cast<const QPushButton*>(m_parts.at(i)))
            sizes[i].setWidth(widest);
    }
    return placeInRows(width, gap, sizes);
}

int ButtonRow::heightFor(int width) const
{
    int bottom = 0;
    for (const QRect& place : places(width))
        bottom = std::max(bottom, place.bottom() + 1);
    return bottom + 2 * air;
}

void ButtonRow::resizeEvent(QResizeEvent*)
{
    const QList<QRect> where = places(width());
    for (qsizetype i = 0; i < m_parts.size(); ++i)
        m_parts.at(i)->setGeometry(where.at(i).translated(0, air));
}

} // namespace quorvia::collections
