#include "collections/DefinePage.h"

#include "app/Twips.h"
#include "collections/EditorLayout.h"
#include "collections/RowDelegate.h"
#include "platform/OneLine.h"

#include <QEvent>
#include <QFrame>
#include <QListWidget>
#include <QPushButton>

namespace quorvia::collections {

DefinePage::DefinePage(QWidget* parent)
    : QWidget(parent), m_pDefine(new QFrame(this)), m_lPlaylistNames(new QListWidget(m_pDefine)),
      m_cmdCreate(makeButton("cmdCreate", QStringLiteral("Create New"))),
      m_cmdRename(makeButton("cmdRename", QStringLiteral("Rename"))),
      m_cmdDelete(makeButton("cmdDelete", QStringLiteral("Delete"))),
      m_cmdClose(makeButton("cmdClose", QStringLiteral("Finished")))
{
    setObjectName(QStringLiteral("pDefinePlaylist"));
    setAccessibleName(tr("Define playlists"));
    setAutoFillBackground(true);
    m_pDefine->setObjectName(QStringLiteral("pDefine"));
    m_pDefine->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Plain));
    m_lPlaylistNames->setObjectName(QStringLiteral("lPlaylistNames"));
    m_lPlaylistNames->setAccessibleName(tr("Playlists"));
    m_lPlaylistNames->setUniformItemSizes(true);
    m_lPlaylistNames->setItemDelegate(new RowDelegate(m_lPlaylistNames));
    m_lPlaylistNames->setTextElideMode(Qt::ElideMiddle);
    m_lPlaylistNames->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_cmdCreate, &QPushButton::clicked, this, &DefinePage::createWanted);
    connect(m_cmdClose, &QPushButton::clicked, this, &DefinePage::finished);
    connect(m_cmdRename, &QPushButton::clicked, this, [this] {
        if (const QString name = selected(); !name.isEmpty())
            Q_EMIT renameWanted(name);
    });
    connect(m_cmdDelete, &QPushButton::clicked, this, [this] {
        if (const QString name = selected(); !name.isEmpty())
            Q_EMIT deleteWanted(name);
    });
}

QPushButton* DefinePage::makeButton(const char* name, const QString& caption)
{
    auto* const button = new QPushButton(caption, m_pDefine);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(caption);
    button->setAutoDefault(true); // Enter presses the one that has the keys
    return button;
}

void DefinePage::showNames(const QStringList& names)
{
    const int row = m_lPlaylistNames->currentRow();
    m_lPlaylistNames->clear();
    for (const QString& name : names) {
        auto* const item = new QListWidgetItem(platform::oneLine(name), m_lPlaylistNames);
        item->setData(Qt::UserRole, name);
    }
    // The keys stay at their place; nothing there is chosen until the user says so.
    m_lPlaylistNames->setCurrentRow(std::min(row, m_lPlaylistNames->count() - 1),
                                    QItemSelectionModel::NoUpdate);
}

QString DefinePage::selected() const
{
    const QList<QListWidgetItem*> items = m_lPlaylistNames->selectedItems();
    return items.isEmpty() ? QString() : items.constFirst()->data(Qt::UserRole).toString();
}

void DefinePage::resizeEvent(QResizeEvent*)
{
    layOut();
}

void DefinePage::showEvent(QShowEvent*)
{
    m_lPlaylistNames->setFocus(Qt::OtherFocusReason);
}

void DefinePage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOut();
}

void DefinePage::layOut()
{
    QSize button;
    for (const QPushButton* each : {m_cmdCreate, m_cmdRename, m_cmdDelete, m_cmdClose})
        button = button.expandedTo(each->sizeHint());
    const DefinePlaces places = layoutDefine(app::inTwips(size()), app::inTwips(button));
    m_pDefine->setGeometry(app::toPixels(places.pDefine));
    m_lPlaylistNames->setGeometry(app::toPixels(places.lPlaylistNames));
    m_cmdCreate->setGeometry(app::toPixels(places.cmdCreate));
    m_cmdRename->setGeometry(app::toPixels(places.cmdRename));
    m_cmdDelete->setGeometry(app::toPixels(places.cmdDelete));
    m_cmdClose->setGeometry(app::toPixels(places.cmdClose));
}

} // namespace quorvia::collections
