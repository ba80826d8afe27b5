#include "platform/BandMenu.h"

#include "platform/Icons.h"
#include "platform/MenuCombo.h"
#include "platform/RowGroups.h"
#include "platform/ToolLook.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr char tipMark[] = "tip";
constexpr int widestGroupEnd = 160;

} // namespace

BandMenu::BandMenu(ToolModel* model, ToolBand* band, QWidget* parent)
    : QMenu(parent), m_model(model), m_band(band)
{
    setObjectName(band->name());
    setAccessibleName(band->caption().isEmpty() ? tr("Menu") : band->caption());
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToHide, this, &BandMenu::closeBand);
    if (parentMenu())
        connect(this, &QMenu::aboutToShow, this, &BandMenu::openAsSubMenu);
    connect(band, &ToolBand::changed, this, &BandMenu::followBand);
}

BandMenu::~BandMenu()
{
    closeBand();
}

bool BandMenu::prepare()
{
    if (!m_model || !m_band)
        return false;
    const QPointer<BandMenu> self(this);
    bool cancel = false;
    Q_EMIT m_model->BandOpen(m_band, cancel);
    if (!self)
        return false;
    m_state = cancel || !m_band ? State::Cancelled : State::Open;
    if (m_state != State::Open)
        return false;
    fill();
    return true;
}

void BandMenu::preparePart(int first, int count)
{
    m_state = State::Part;
    m_first = first;
    m_count = count;
    fill();
}

void BandMenu::openAsSubMenu()
{
    closeBand();
    if (m_group) {
        preparePart(m_first, m_count);
        return;
    }
    BandMenu* const root = rootMenu();
    const QPointer<BandMenu> kept(root);
    root->m_openingBelow = true;
    prepare();
    if (kept)
        root->m_openingBelow = false;
}

void BandMenu::closeSafely()
{
    if (!m_openingBelow) {
        close();
        return;
    }
    closeBand();
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

void BandMenu::setVisible(bool visible)
{
    if (visible && m_state == State::Cancelled)
        return;
    QMenu::setVisible(visible);
}

void BandMenu::closeBand()
{
    const State was = std::exchange(m_state, State::Closed);
    if (was != State::Open && was != State::Part)
        return;
    const QList<BandMenu*> below = findChildren<BandMenu*>(QString(), Qt::FindDirectChildrenOnly);
    for (BandMenu* const menu : below)
        menu->closeBand(); // the inner ones close first
    if (was == State::Open && m_model && m_band)
        Q_EMIT m_model->BandClose(m_band);
}

void BandMenu::followBand()
{
    if ((m_state != State::Open && m_state != State::Part) || std::exchange(m_refillQueued, true))
        return;
    // The tools end with this change, and the menu may stand in the middle of an event.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_refillQueued = false;
            if (m_state == State::Open || m_state == State::Part)
                fill();
        },
        Qt::QueuedConnection);
}

void BandMenu::fill()
{
    const QList<QAction*> old = actions();
    for (QAction* const row : old) {
        removeAction(row);
        if (QMenu* const menu = row->menu()) {
            menu->hide();
            menu->deleteLater();
        }
        row->deleteLater();
    }
    const ToolBand* const band = m_band;
    const int all = band ? band->toolCount() : 0;
    const int rows = std::clamp(all - m_first, 0, m_count);
    const int size = groupSize(rows);
    for (int index = m_first; index < m_first + rows; index += size) {
        if (size > 1)
            addGroup(index, std::min(size, m_first + rows - index));
        else if (Tool* const tool = band->toolAt(index))
            addRow(tool);
    }
    if (actions().isEmpty())
        addAction(tr("(none)"))->setEnabled(false);
}

/// A sub-menu with a part of the band, named after its first and its last tool.
void BandMenu::addGroup(int first, int count)
{
    const ToolBand* const band = m_band;
    const Tool* const from = band ? band->toolAt(first) : nullptr;
    const Tool* const to = band ? band->toolAt(first + count - 1) : nullptr;
    if (!from || !to)
        return;
    const auto shortened = [this](const Tool* tool) {
        return fontMetrics().elidedText(plainCaption(tool->values().caption), Qt::ElideMiddle,
                                        widestGroupEnd);
    };
    const QString caption = tr("%1 to %2").arg(shortened(from), shortened(to));
    auto* const menu = new BandMenu(m_model, m_band, this);
    menu->m_group = true;
    menu->setAccessibleName(caption);
    menu->m_first = first;
    menu->m_count = count;
    auto* const row = new QAction(QString(caption).replace(QLatin1Char('&'), QLatin1String("&&")), this);
    row->setMenu(menu);
    addAction(row);
}

void BandMenu::addRow(Tool* tool)
{
    const ToolValues& values = tool->values();
    if (values.kind == ToolKind::Combo) {
        addComboRow(tool);
        return;
    }
    auto* const row = new QAction(this);
    row->setObjectName(tool->name());
    row->setSeparator(values.kind == ToolKind::Separator);
    row->setMenu(subMenuFor(values));
    follow(tool, row);
    connect(row, &QAction::triggered, this, [this, name = tool->name()] {
        if (m_model)
            Q_EMIT m_model->ToolClick(name);
    });
    addAction(row);
}

void BandMenu::addComboRow(Tool* tool)
{
    auto* const row = new MenuCombo(m_model, tool, this);
    row->setObjectName(tool->name());
    follow(tool, row);
    connect(row, &MenuCombo::entered, this, [this] { rootMenu()->close(); });
    addAction(row);
}

void BandMenu::follow(Tool* tool, QAction* row)
{
    showTool(tool->values(), row);
    connect(tool, &Tool::changed, row,
            [this, tool, row, kind = tool->values().kind, subBand = tool->values().subBand] {
                if (tool->values().kind != kind || tool->values().subBand != subBand)
                    followBand();
                showTool(tool->values(), row);
            });
}

void BandMenu::showTool(const ToolValues& values, QAction* row)
{
    row->setVisible(values.visible);
    if (row->isSeparator())
        return;
    if (row->menu())
        row->menu()->setAccessibleName(plainCaption(values));
    row->setText(markedCaption(values));
    row->setEnabled(values.enabled);
    if (values.kind == ToolKind::Combo)
        return;
    row->setIcon(platform::icon(values.pictures[0], values.pictures[2]));
    row->setCheckable(values.checked); // no empty box at the others
    row->setChecked(values.checked);
    row->setProperty(tipMark, tipOf(values) == plainCaption(values) ? QString() : tipOf(values));
}

QMenu* BandMenu::subMenuFor(const ToolValues& values)
{
    const ToolBand* const own = m_band;
    if (!m_model || !own || values.subBand.isEmpty())
        return nullptr;
    ToolBand* const band = m_model->band(values.subBand);
    const bool opens = values.kind == ToolKind::DropDown ||
                       (values.kind == ToolKind::Plain && own->kind() == BandKind::PopUp);
    return band && opens && !isOpenAbove(band) ? new BandMenu(m_model, band, this) : nullptr;
}

bool BandMenu::isOpenAbove(const ToolBand* band) const
{
    for (const BandMenu* menu = this; menu; menu = menu->parentMenu()) {
        if (menu->m_band == band)
            return true;
    }
    return false;
}

BandMenu* BandMenu::parentMenu() const
{
    return qobject_cast<BandMenu*>(parentWidget());
}

BandMenu* BandMenu::rootMenu()
{
    BandMenu* const above = parentMenu();
    return above ? above->rootMenu() : this;
}

void BandMenu::retire()
{
    m_retired = true;
    if (m_eventDepth == 0)
        deleteLater();
}

bool BandMenu::event(QEvent* event)
{
    BandMenu* const root = rootMenu();
    const QPointer<BandMenu> kept(root);
    ++root->m_eventDepth;
    const bool taken =
        event->type() == QEvent::ToolTip ? showTip(static_cast<QHelpEvent*>(event)) : QMenu::event(event);
    if (kept && --root->m_eventDepth == 0 && root->m_retired)
        root->deleteLater();
    return taken;
}

bool BandMenu::showTip(const QHelpEvent* help)
{
    const QAction* const row = actionAt(help->pos());
    const QString tip = row ? row->property(tipMark).toString() : QString();
    QToolTip::showText(help->globalPos(), tip, this,
                       row ? actionGeometry(const_cast<QAction*>(row)) : QRect());
    return true;
}

void BandMenu::keyPressEvent(QKeyEvent* event)
{
    if (MenuCombo* const combo = comboForKeys(); combo && combo->takeKey(event))
        return;
    QMenu::keyPressEvent(event);
}

/// The combo that what is typed goes to: the chosen row, or the only one of the menu.
MenuCombo* BandMenu::comboForKeys() const
{
    QAction* row = activeAction();
    if (!row && actions().size() == 1)
        row = actions().constFirst();
    return qobject_cast<MenuCombo*>(row);
}

void BandMenu::mousePressEvent(QMouseEvent* event)
{
    if (rootMenu()->m_anchor.contains(event->globalPosition().toPoint())) {
        setAttribute(Qt::WA_NoMouseReplay);
        rootMenu()->setAttribute(Qt::WA_NoMouseReplay);
    }
    QMenu::mousePressEvent(event);
}

} // namespace quorvia::platform
