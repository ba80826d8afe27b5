#include "platform/BandDock.h"

#include "platform/Band.h"
#include "platform/BandTitleBar.h"

#include <QCloseEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace quorvia::platform {

namespace {

/// Holds the client, and wishes for the band the size that it had last: what the toolkit goes by where it
/// makes room for a band that is dragged over a side.
class ClientHolder : public QWidget
{
  public:
    ClientHolder(Band* band, BandDock* dock) : QWidget(dock), m_band(band), m_dock(dock)
    {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
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

  private:
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
    setTitleBarWidget(m_titleBar);
    auto* holder = new ClientHolder(band, this);
    holder->setObjectName(band->toolName());
    setWidget(holder);
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

bool BandDock::event(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress)
        Q_EMIT pressed();
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
