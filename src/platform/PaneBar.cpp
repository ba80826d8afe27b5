#include "platform/PaneBar.h"

#include "platform/PaneParts.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace quorvia::platform {

namespace {

constexpr int rowGap = 2;  // pixels, as all below
constexpr int slimmer = 2; // than the gap, or half of it, are the margin and what is below a head

QString headName(const QString& key)
{
    return key + QStringLiteral("Head");
}

bool sameRows(const Pane& one, const Pane& other)
{
    return one.key == other.key && one.title == other.title &&
           std::equal(one.items.begin(), one.items.end(), other.items.begin(), other.items.end(),
                      [](const PaneItem& a, const PaneItem& b) {
                          return a.key == b.key && a.tag == b.tag && a.kind == b.kind && a.icon == b.icon;
                      });
}

} // namespace

PaneBar::PaneBar(QWidget* parent)
    : QScrollArea(parent), m_column(new QWidget), m_layout(new QVBoxLayout(m_column))
{
    setFrameStyle(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    verticalScrollBar()->setAccessibleName(tr("Vertical scroll bar"));
    setWidgetResizable(true);
    setWidget(m_column);
    setGaps();
    m_layout->addStretch();
    // The ground is that of whatever the bar stands on.
    m_column->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

void PaneBar::setPanes(const QList<Pane>& panes)
{
    if (panes == m_panes)
        return;
    const bool textsOnly = differsInTextsOnly(panes);
    m_panes = panes;
    if (textsOnly)
        showTexts();
    else
        makeAnew();
}

void PaneBar::setItemText(const QString& key, const QString& text)
{
    for (Pane& pane : m_panes) {
        for (PaneItem& item : pane.items) {
            if (item.key != key || item.text == text)
                continue;
            item.text = text;
            m_column->findChild<PaneRow*>(key)->showItem(item);
        }
    }
}

void PaneBar::setLook(const PaneLook& look)
{
    if (look == m_look)
        return;
    m_look = look;
    setGaps();
    makeAnew();
}

void PaneBar::setGaps()
{
    const int margin = m_look.gap - slimmer;
    m_layout->setContentsMargins(margin, margin, margin, margin);
    m_layout->setSpacing(m_look.gap);
}

void PaneBar::setFooter(QWidget* footer)
{
    m_footer = footer;
    m_layout->addWidget(footer, 0, Qt::AlignRight | Qt::AlignBottom);
}

bool PaneBar::differsInTextsOnly(const QList<Pane>& panes) const
{
    return std::equal(panes.begin(), panes.end(), m_panes.begin(), m_panes.end(), sameRows);
}

void PaneBar::showTexts()
{
    for (const Pane& pane : std::as_const(m_panes)) {
        for (const PaneItem& item : pane.items) {
            m_column->findChild<PaneRow*>(item.key)->showItem(item);
        }
    }
}

void PaneBar::makeAnew()
{
    const QString focused = focusedName();
    const QList<QWidget*> before = m_column->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* const pane : before) {
        if (pane == m_footer)
            continue;
        pane->hide();
        pane->setParent(nullptr); // out of every search at once; one of its rows may be amid a click
        pane->deleteLater();
    }
    int place = 0;
    for (const Pane& pane : std::as_const(m_panes))
        m_layout->insertWidget(place++, makePane(pane));
    if (!focused.isEmpty())
        focusOn(focused);
}

QWidget* PaneBar::makePane(const Pane& pane)
{
    auto* const box = new QWidget(m_column);
    box->setObjectName(pane.key);
    auto* const column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(m_look.gap / 2 - slimmer);
    auto* const head = new PaneHead(pane.title, m_look, box);
    head->setObjectName(headName(pane.key));
    column->addWidget(head);
    auto* const rows = new QWidget(box);
    auto* const rowColumn = new QVBoxLayout(rows);
    rowColumn->setContentsMargins(0, 0, 0, 0);
    rowColumn->setSpacing(rowGap);
    const bool icons = std::any_of(pane.items.begin(), pane.items.end(),
                                   [](const PaneItem& item) { return !item.icon.isEmpty(); });
    for (const PaneItem& item : pane.items)
        rowColumn->addWidget(makeRow(item, icons));
    column->addWidget(rows);
    head->setChecked(!isFolded(pane.key));
    rows->setVisible(head->isChecked());
    connect(head, &PaneHead::toggled, this, [this, key = pane.key, rows](bool open) {
        rows->setVisible(open);
        if (open)
            m_folded.remove(key);
        else
            m_folded.insert(key);
    });
    return box;
}

PaneRow* PaneBar::makeRow(const PaneItem& item, bool besideIcons)
{
    auto* const row = new PaneRow(item, m_look, besideIcons);
    row->setObjectName(item.key);
    connect(row, &PaneRow::clicked, this,
            [this, key = item.key, tag = item.tag] { Q_EMIT itemClicked(key, tag); });
    return row;
}

/// The name of the head or row with the focus; empty when none has it.
QString PaneBar::focusedName() const
{
    const QWidget* const focused = m_column->focusWidget();
    return focused && focused->hasFocus() ? focused->objectName() : QString();
}

/// Gives the focus to the head or row of that name, or to the first head when it has gone.
void PaneBar::focusOn(const QString& name)
{
    auto* target = m_column->findChild<QWidget*>(name);
    if (!target)
        target = m_column->findChild<PaneHead*>();
    if (target)
        target->setFocus(Qt::OtherFocusReason);
}

void PaneBar::keyPressEvent(QKeyEvent* event)
{
    event->ignore(); // no scrolling: the arrows are the viewer's
}

} // namespace quorvia::platform
