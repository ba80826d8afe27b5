#include "platform/ToolControl.h"

#include "platform/SpokenWidget.h"
#include "platform/ToolCombo.h"
#include "platform/ToolLook.h"
#include "platform/ToolMenu.h"
#include "platform/Twips.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr int rowHeight = 40;
constexpr int separatorWidth = 9;
constexpr int separatorInset = 8;
constexpr int plateCorner = 8; // where the ground of the row shows a piece of what is behind it

/// The control's own menu for arranging itself. There is nothing in it: a listener of BandOpen shows another
/// menu in its place.
constexpr QLatin1String customizeBand("SysCustomize");

/// The first visible band of the toolbar kind, else the first hidden one, or null.
ToolBand* toolbarOf(const ToolModel& model)
{
    ToolBand* hidden = nullptr;
    for (int index = 0; index < model.bandCount(); ++index) {
        ToolBand* const band = model.bandAt(index);
        if (band->kind() != BandKind::Toolbar)
            continue;
        if (band->visible())
            return band;
        if (!hidden)
            hidden = band;
    }
    return hidden;
}

/// What shows of a tool; null when it has ended.
const ToolValues* valuesOf(const Tool* tool)
{
    return tool ? &tool->values() : nullptr;
}

bool isEnabled(const Tool* tool)
{
    const ToolValues* const values = valuesOf(tool);
    return values && values->enabled && values->visible;
}

} // namespace

ToolControl::ToolControl(QWidget* parent)
    : QWidget(parent), m_model(std::make_unique<ToolModel>()),
      m_menus(std::make_unique<ToolMenu>(m_model.get(), this)), m_extension(new ToolButton(this))
{
    speakAs(this, QAccessible::ToolBar);
    setAccessibleName(tr("Toolbar"));
    m_catchUp.setSingleShot(true);
    connect(&m_catchUp, &QTimer::timeout, this, &ToolControl::catchUp);
    ToolValues more;
    more.caption = tr("More tools");
    m_extension->setObjectName(QStringLiteral("extension"));
    m_extension->showTool(more, ToolButton::Opens::Whole);
    m_extension->hide();
    connect(m_extension, &ToolButton::openRequested, this, &ToolControl::openRest);
}

ToolControl::~ToolControl() = default;

QString ToolControl::version()
{
    return QStringLiteral("1.0.000");
}

int ToolControl::usualHeight()
{
    return rowHeight;
}

void ToolControl::setWidthInTwips(int twips)
{
    m_wantedWidth = toPixels(std::max(0, twips));
    resize(m_wantedWidth, height());
}

void ToolControl::setHeightInTwips(int twips)
{
    resize(width(), toPixels(std::max(0, twips)));
}

void ToolControl::fitInto(int pixels)
{
    resize(std::min(m_wantedWidth, std::max(0, pixels)), height());
}

void ToolControl::recalculateLayout()
{
    ToolBand* const band = toolbarOf(*m_model);
    if (band != m_band) {
        if (m_band)
            disconnect(m_band, nullptr, this, nullptr);
        m_band = band;
        if (m_band)
            connect(m_band, &ToolBand::changed, this, [this] {
                m_rebuilds = true; // the tools may end with this change
                changeLater();
            });
    }
    m_rebuilds = true;
    catchUp();
}

bool ToolControl::popUp(const QString& bandName)
{
    return m_menus->popUpAtMouse(bandName);
}

void ToolControl::changeLater()
{
    if (!m_catchUp.isActive())
        m_catchUp.start(0);
}

void ToolControl::catchUp()
{
    m_catchUp.stop();
    if (std::exchange(m_rebuilds, false) || isOutdated())
        rebuild();
    showTools();
    layOut();
}

/// True when a tool has become one of a kind that another widget shows.
bool ToolControl::isOutdated() const
{
    const auto shownAs = [](ToolKind kind) { return kind == ToolKind::DropDown ? ToolKind::Plain : kind; };
    return std::any_of(m_items.begin(), m_items.end(), [&shownAs](const Item& item) {
        const ToolValues* const values = valuesOf(item.tool);
        return values && shownAs(values->kind) != shownAs(item.kind);
    });
}

void ToolControl::rebuild()
{
    for (const Item& item : m_items) {
        if (item.tool)
            disconnect(item.tool, nullptr, this, nullptr);
        if (item.widget) {
            item.widget->hide();
            item.widget->deleteLater(); // it may be the one whose click led here
        }
    }
    m_items.clear();
    m_row.clear();
    const ToolBand* const band = m_band;
    const int count = band && band->visible() ? band->toolCount() : 0;
    for (int index = 0; index < count; ++index) {
        if (Tool* const tool = band->toolAt(index)) {
            m_items.push_back({tool, tool->values().kind, makeWidget(tool)});
            connect(tool, &Tool::changed, this, &ToolControl::changeLater);
        }
    }
}

QWidget* ToolControl::makeWidget(Tool* tool)
{
    switch (tool->values().kind) {
    case ToolKind::Separator:
        return nullptr; // a line that the control paints
    case ToolKind::Combo:
        return new ToolCombo(m_model.get(), tool, this);
    default:
        return makeButton(tool);
    }
}

ToolButton* ToolControl::makeButton(Tool* tool)
{
    auto* const button = new ToolButton(this);
    button->setObjectName(tool->name());
    const QPointer<Tool> kept(tool);
    connect(button, &QAbstractButton::clicked, this, [this, kept] {
        const Tool* const clicked = kept;
        if (clicked && platform::isEnabled(clicked))
            Q_EMIT m_model->ToolClick(clicked->name());
    });
    connect(button, &ToolButton::openRequested, this, [this, button, kept](bool byKey) {
        if (const ToolValues* const values = valuesOf(kept); values && values->enabled)
            openBand(button, values->subBand, byKey);
    });
    return button;
}

void ToolControl::showTools()
{
    keepFocus();
    for (const Item& item : m_items)
        showTool(item);
}

void ToolControl::showTool(const Item& item)
{
    auto* const button = qobject_cast<ToolButton*>(item.widget);
    if (const ToolValues* const values = valuesOf(item.tool); button && values)
        button->showTool(*values, opensOf(*values));
}

ToolButton::Opens ToolControl::opensOf(const ToolValues& values) const
{
    const bool opens = values.kind == ToolKind::DropDown && m_model->band(values.subBand);
    return opens ? ToolButton::Opens::AtEnd : ToolButton::Opens::Nothing;
}

void ToolControl::layOut()
{
    std::vector<RowItem> row;
    for (const Item& item : m_items) {
        const bool separator = !item.widget;
        const int width = separator ? separatorWidth : item.widget->sizeHint().width();
        const ToolValues* const values = valuesOf(item.tool);
        row.push_back({values && values->visible ? width : 0, separator});
    }
    if (ToolBand* const band = m_band)
        band->setSize({toTwips(neededWidth(row)), toTwips(rowHeight)});
    if (std::exchange(m_row, row) != row)
        placeItems();
    lendTab(reachableNear(m_tabStop));
}

void ToolControl::placeItems()
{
    m_plan = planRow(m_row, width());
    for (std::size_t index = 0; index < m_items.size(); ++index)
        placeWidget(m_items[index].widget, m_plan.places[index]);
    placeWidget(m_extension, {m_plan.extension, m_plan.extension < 0 ? 0 : extensionWidth});
    update();
}

void ToolControl::placeWidget(QWidget* widget, const RowPlace& place)
{
    if (!widget)
        return;
    const int high = std::min(widget->sizeHint().height(), height());
    const QRect box(place.left, (height() - high) / 2, place.width, high);
    widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
    widget->setVisible(place.width > 0);
}

void ToolControl::openBand(ToolButton* button, const QString& bandName, bool byKey)
{
    if (m_menus->popUpBeside(bandName, onScreen(button)))
        followMenu(button, byKey);
}

void ToolControl::openRest(bool byKey)
{
    if (!m_band)
        return;
    m_menus->popUpRest(m_band, m_plan.shown, onScreen(m_extension));
    followMenu(m_extension, byKey);
}

void ToolControl::followMenu(ToolButton* button, bool byKey)
{
    button->setOpen(true);
    connect(
        m_menus.get(), &ToolMenu::closed, button, [button] { button->setOpen(false); },
        Qt::SingleShotConnection);
    if (byKey)
        m_menus->chooseFirst();
}

QRect ToolControl::onScreen(const QWidget* widget) const
{
    return {widget->mapToGlobal(QPoint()), widget->size()};
}

/// The buttons that show, from left to right.
std::vector<ToolButton*> ToolControl::buttons() const
{
    std::vector<ToolButton*> shown;
    for (const Item& item : m_items) {
        if (auto* const button = qobject_cast<ToolButton*>(item.widget); button && !button->isHidden())
            shown.push_back(button);
    }
    if (!m_extension->isHidden())
        shown.push_back(m_extension);
    return shown;
}

/// `widget` itself when keys can reach it, else the next button behind or before it that they can; or null.
ToolButton* ToolControl::reachableNear(const QWidget* widget) const
{
    const std::vector<ToolButton*> shown = buttons();
    const auto isReachable = [this](const ToolButton* button) {
        const auto item = std::find_if(m_items.begin(), m_items.end(),
                                       [button](const Item& each) { return each.widget == button; });
        return item == m_items.end() || platform::isEnabled(item->tool);
    };
    const auto from = std::find(shown.begin(), shown.end(), widget);
    const auto middle = from == shown.end() ? shown.begin() : from;
    if (const auto next = std::find_if(middle, shown.end(), isReachable); next != shown.end())
        return *next;
    const auto before = std::find_if(std::make_reverse_iterator(middle), shown.rend(), isReachable);
    return before == shown.rend() ? nullptr : *before;
}

/// Moves the focus on from a button that is about to be disabled or to go: the toolkit would move it
/// anywhere.
void ToolControl::keepFocus()
{
    for (const Item& item : m_items) {
        if (!item.widget || !item.widget->hasFocus() || platform::isEnabled(item.tool))
            continue;
        ToolButton* const next = reachableNear(item.widget);
        if (!next)
            return;
        next->setEnabled(true);
        lendTab(next);
        next->setFocus(Qt::TabFocusReason);
        return;
    }
}

void ToolControl::lendTab(ToolButton* button)
{
    if (m_tabStop == button)
        return;
    if (m_tabStop)
        m_tabStop->setFocusPolicy(Qt::NoFocus);
    m_tabStop = button;
    if (m_tabStop)
        m_tabStop->setFocusPolicy(Qt::TabFocus);
}

void ToolControl::moveFocus(int key)
{
    std::vector<ToolButton*> row = buttons();
    row.erase(
        std::remove_if(row.begin(), row.end(), [](const ToolButton* each) { return !each->isEnabled(); }),
        row.end());
    const auto at = std::find(row.begin(), row.end(), m_tabStop);
    if (at == row.end())
        return;
    const int last = int(row.size()) - 1;
    const bool mirrored = isRightToLeft();
    int index = int(at - row.begin());
    if (key == Qt::Key_Home || key == Qt::Key_End)
        index = key == Qt::Key_Home ? 0 : last;
    else
        index = std::clamp(index + ((key == Qt::Key_Right) != mirrored ? 1 : -1), 0, last);
    lendTab(row[std::size_t(index)]);
    m_tabStop->setFocus(Qt::TabFocusReason);
}

void ToolControl::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(rect(), plateCorner, plateCorner);
    const QColor line = toolLook(palette()).line;
    for (std::size_t index = 0; index < m_plan.places.size(); ++index) {
        const RowPlace& place = m_plan.places[index];
        if (m_items[index].widget || place.width <= 0)
            continue;
        const QRect box(place.left + place.width / 2, separatorInset, 1, height() - 2 * separatorInset);
        painter.fillRect(QStyle::visualRect(layoutDirection(), rect(), box), line);
    }
}

void ToolControl::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_row.size() == m_items.size())
        placeItems();
    lendTab(reachableNear(m_tabStop));
}

void ToolControl::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    const QEvent::Type type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange)
        changeLater(); // captions and boxes have another width now
    else if (type == QEvent::LayoutDirectionChange)
        placeItems();
}

void ToolControl::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    const bool moves =
        key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Home || key == Qt::Key_End;
    if (moves && m_tabStop && m_tabStop->hasFocus() && event->modifiers() == Qt::NoModifier)
        moveFocus(key);
    else
        event->ignore();
}

void ToolControl::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_model->band(customizeBand))
        popUp(customizeBand);
    else
        event->ignore();
}

} // namespace quorvia::platform
