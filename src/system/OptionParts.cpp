#include "system/OptionParts.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionFocusRect>

namespace quorvia::system {

namespace {

constexpr int mostQuality = 255;
constexpr int largeChange = 5;
constexpr int aroundText = 8; // pixels, as the next
constexpr QSize patchSize(48, 24);

} // namespace

QualityBar::QualityBar(const char* name, const QString& accessible, QWidget* parent)
    : QScrollBar(Qt::Horizontal, parent)
{
    setObjectName(QLatin1String(name));
    setAccessibleName(accessible);
    setRange(0, mostQuality);
    setPageStep(largeChange);
    setInvertedControls(false); // else the right arrow takes it to the left
    setFocusPolicy(Qt::StrongFocus);
}

void QualityBar::paintEvent(QPaintEvent* event)
{
    QScrollBar::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

OptionList::OptionList(const char* name, const QString& accessible, const QStringList& lines, QWidget* parent)
    : QComboBox(parent)
{
    setObjectName(QLatin1String(name));
    setAccessibleName(accessible);
    addItems(lines);
}

void OptionList::keyPressEvent(QKeyEvent* event)
{
    if (event->modifiers().testFlag(Qt::ControlModifier))
        event->ignore();
    else
        QComboBox::keyPressEvent(event);
}

QFrame* makePage(const char* name, const QString& accessible, QWidget* parent)
{
    auto* const page = new QFrame(parent);
    page->setObjectName(QLatin1String(name));
    page->setAccessibleName(accessible);
    return page;
}

QGroupBox* makeGroup(const QString& heading, QWidget* parent)
{
    auto* const group = new QGroupBox(heading, parent);
    group->setAccessibleName(heading);
    return group;
}

QCheckBox* makeCheck(const char* name, const QString& text, QWidget* parent)
{
    auto* const check = new QCheckBox(text, parent);
    check->setObjectName(QLatin1String(name));
    check->setAccessibleName(text);
    return check;
}

QPushButton* makeButton(const char* name, const QString& text, QWidget* parent)
{
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    button->setMinimumWidth(button->sizeHint().width() + 2 * aroundText);
    button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    return button;
}

QLabel* makeNote(const QString& text, QWidget* parent)
{
    auto* const note = new QLabel(text, parent);
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    return note;
}

void addColor(QBoxLayout& rows, const char* patch, const char* button, QWidget* parent)
{
    const QString caption = QStringLiteral("Background Color");
    auto* const color = new QFrame(parent);
    color->setObjectName(QLatin1String(patch));
    color->setAccessibleName(caption);
    color->setFrameShape(QFrame::Box);
    color->setAutoFillBackground(true);
    color->setFixedSize(patchSize);
    auto* const row = new QHBoxLayout;
    row->addWidget(color);
    row->addWidget(makeButton(button, caption, parent));
    row->addStretch();
    rows.addLayout(row);
}

void addSlider(QFormLayout& rows, const QString& caption, const char* slider, const char* number,
               QWidget* parent)
{
    const QString name = caption.chopped(1); // a colon
    auto* const bar = new QualityBar(slider, name, parent);
    auto* const shown = new QLabel(QString::number(bar->value()), parent);
    shown->setObjectName(QLatin1String(number));
    shown->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    shown->setMinimumWidth(shown->fontMetrics().horizontalAdvance(QString::number(mostQuality)));
    shown->setBuddy(bar);
    for (const auto change : {&QScrollBar::valueChanged, &QScrollBar::sliderMoved})
        QObject::connect(bar, change, shown, qOverload<int>(&QLabel::setNum));
    auto* const row = new QHBoxLayout;
    row->addWidget(bar, 1);
    row->addWidget(shown);
    rows.addRow(caption, row);
    static_cast<QLabel*>(rows.labelForField(row))->setBuddy(bar);
}

} // namespace quorvia::system
