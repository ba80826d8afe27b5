#include "platform/BandDock.h"

#include "platform/Band.h"
#include "platform/BandTitleBar.h"
#include "platform/MenuKeys.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace quorvia::platform {

namespace {

constexpr int floatingRim = 3;    // where a floating band is taken to be resized
constexpr int floatingCorner = 8; // both ways

/// Holds the client, and wishes for the band the size that it had last: what the toolkit goes by where it
/// makes room for a band that is dragged over a side.
class ClientHolder : public QWidget
{
  public:
    ClientHolder(Band* band, BandDock* dock) : QWidget(dock), m_band(band), m_dock(dock)
    {
        new QVBoxLayout(this);
        setFloating(false);
        setMouseTracking(true);
    }

    void setFloating(bool floating)
    {
        const int rim = floating ? floatingRim : 0;
        layout()->setContentsMargins(rim, 0, rim, rim);
    }

    QSize sizeHint() const override
    {
        const BandState& wanted = m_band->wantedState();
        return QSize(wanted.width, wanted.height - titleHeight()).expandedTo(minimumSizeHint());
    }

    QSize minimumSizeHint() const override
    {
        return QWidget::minimumSizeHint().expandedTo({smallestBand, smallestBand - titleHeight()});
    }

  protected:
    /// The pointer is on the rim: what a drag does here. The drag itself is the dock widget's.
    void mouseMoveEvent(QMouseEvent* event) override
    {
        event->ignore();
        if (event->buttons() == Qt::NoButton && m_dock->isFloating())
            setCursor(rimCursor(event->position().toPoint()));
    }

    void paintEvent(QPaintEvent*) override
    {
        if (m_dock->isFloating())
            QPainter(this).fillRect(rect(), BandTitleBar::faceColor(palette()));
    }

  private:
    Qt::CursorShape rimCursor(QPoint pos) const
    {
        const bool left = pos.x() < floatingCorner;
        const bool right = pos.x() >= width() - floatingCorner;
        if (pos.y() < height() - floatingCorner)
            return Qt::SizeHorCursor;
        if (left || right)
            return left ? Qt::SizeBDiagCursor : Qt::SizeFDiagCursor;
        return Qt::SizeVerCursor;
    }

    int titleHeight() const { return m_dock->titleBar()->sizeHint().height(); }

    Band* m_band;
    BandDock* m_dock;
};

} // namespace

BandDock::BandDock(Band* band, QWidget* parent)
    : QDockWidget(band->caption(), parent), m_titleBar(new BandTitleBar(band->caption(), this))
{
    setObjectName(band->name());
    setAccessibleName(band->caption());
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating); // the keys stay with the window that has them
    setTitleBarWidget(m_titleBar);
    connect(m_titleBar, &BandTitleBar::keyPressed, this, &BandDock::passKeyOn);
    auto* holder = new ClientHolder(band, this);
    holder->setObjectName(band->toolName());
    setWidget(holder);
    connect(this, &QDockWidget::topLevelChanged, this, [this, holder](bool floating) {
        m_titleBar->setFloating(floating);
        holder->setFloating(floating);
    });
}

void BandDock::setClient(QWidget* client)
{
    QLayout* box = widget()->layout();
    while (QLayoutItem* item = box->takeAt(0)) {
        if (QWidget* former = item->widget()) {
            former->hide();
            former->setParent(nullptr);
        }
        delete item;
    }
    if (!client)
        return;
    box->addWidget(client);
    client->show();
}

void BandDock::floatAt(const QRect& rect)
{
    if (!isFloating()) {
        hide(); // else it comes up elsewhere first
        setFloating(true);
    }
    // A window that is moved just before it is shown can end elsewhere than the toolkit believes: its request
    // crosses the window manager's. So it is made anew, in its place from the start.
    if (!isVisible() && geometry() != rect)
        destroy();
    setGeometry(rect);
    show();
}

QWidget* BandDock::client() const
{
    const QLayoutItem* const item = widget()->layout()->itemAt(0);
    return item ? item->widget() : nullptr;
}

/// Else the toolkit gives the keys of a floating band to the first button of its title bar.
void BandDock::focusClient()
{
    if (QWidget* const shown = client())
        shown->setFocus(Qt::ActiveWindowFocusReason);
}

/// The main window's keys work on the title bar too. From a docked band they reach it by themselves; from a
/// floating one the client hands them on.
void BandDock::passKeyOn(QKeyEvent* event)
{
    if (QWidget* const shown = client(); shown && isFloating())
        QCoreApplication::sendEvent(shown, event);
}

bool BandDock::event(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress)
        Q_EMIT pressed();
    else if (event->type() == QEvent::WindowActivate && isFloating() && !focusWidget())
        focusClient();
    if (isFloating() && asksForMenu(*event)) // nobody within has one of his own; the window may
        return QCoreApplication::sendEvent(parentWidget()->window(), event);
    const bool handled = QDockWidget::event(event);
    if (event->type() == QEvent::Resize || (event->type() == QEvent::Move && isFloating()))
        Q_EMIT geometryChanged();
    return handled;
}

void BandDock::closeEvent(QCloseEvent* event)
{
    event->accept();
    Q_EMIT windowClosed();
}

} // namespace quorvia::platform
