#include "platform/ToolMenu.h"

#include "platform/BandMenu.h"
#include "platform/ToolModel.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>

namespace quorvia::platform {

namespace {

/// Where a menu of `size` stands beside `box` on `screen`: below it where there is room, else above.
QPoint placeBeside(const QRect& box, QSize size, const QRect& screen)
{
    const bool below = box.bottom() + size.height() <= screen.bottom();
    const bool above = box.top() - size.height() >= screen.top();
    const int left = QGuiApplication::isRightToLeft() ? box.right() + 1 - size.width() : box.left();
    return {left, below || !above ? box.bottom() + 1 : box.top() - size.height()};
}

} // namespace

ToolMenu::ToolMenu(ToolModel* model, QWidget* owner) : QObject(owner), m_model(model), m_owner(owner) {}

ToolMenu::~ToolMenu()
{
    delete m_menu;
}

bool ToolMenu::popUp(const QString& bandName, QPoint at)
{
    BandMenu* const menu = prepared(bandName);
    if (menu)
        show(menu, at);
    return menu;
}

bool ToolMenu::popUpAtMouse(const QString& bandName)
{
    return popUp(bandName, QCursor::pos());
}

bool ToolMenu::popUpBeside(const QString& bandName, const QRect& box)
{
    BandMenu* const menu = prepared(bandName);
    if (menu)
        showBeside(menu, box);
    return menu;
}

void ToolMenu::popUpRest(ToolBand* band, int first, const QRect& box)
{
    close();
    auto* const menu = new BandMenu(m_model, band, m_owner);
    menu->preparePart(first, band->toolCount());
    showBeside(menu, box);
}

void ToolMenu::close()
{
    if (BandMenu* const menu = m_menu)
        menu->closeSafely();
}

QMenu* ToolMenu::menu() const
{
    return m_menu;
}

void ToolMenu::chooseFirst()
{
    if (!m_menu)
        return;
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QCoreApplication::sendEvent(m_menu, &down);
}

BandMenu* ToolMenu::prepared(const QString& bandName)
{
    ToolBand* const band = m_model->band(bandName);
    if (!band)
        return nullptr;
    close();
    const QPointer<BandMenu> menu(new BandMenu(m_model, band, m_owner));
    const bool opens = menu->prepare();
    if (opens)
        close(); // what a listener may have opened meanwhile
    else if (menu)
        menu->deleteLater();
    return opens ? menu.data() : nullptr;
}

void ToolMenu::show(BandMenu* menu, QPoint at)
{
    m_menu = menu;
    connect(menu, &QMenu::aboutToHide, this, [this, menu] {
        if (m_menu == menu)
            m_menu.clear();
        menu->retire(); // not at once: the chosen row is still to be told of
        Q_EMIT closed();
    });
    menu->popup(at);
}

void ToolMenu::showBeside(BandMenu* menu, const QRect& box)
{
    const QScreen* const there = QGuiApplication::screenAt(box.center());
    const QScreen* const screen = there ? there : QGuiApplication::primaryScreen();
    menu->setAnchor(box);
    menu->ensurePolished();
    show(menu, placeBeside(box, menu->sizeHint(), screen->availableGeometry()));
}

} // namespace quorvia::platform
