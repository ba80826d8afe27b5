#include "collections/PanelMenus.h"

#include "app/MainWindow.h"
#include "app/mFile.h"
#include "app/RecentBand.h"
#include "collections/PictureList.h"
#include "collections/RowRanges.h"
#include "platform/ToolMenu.h"

#include <QWidget>

namespace quorvia::collections {

PanelMenus::PanelMenus(const PictureList* list, app::MainWindow& main, QWidget* owner)
    : QObject(owner), m_list(list), m_main(main), m_menu(new platform::ToolMenu(&m_abm, owner))
{
    m_abm.setObjectName(QStringLiteral("abm"));
    addPanelBands(m_abm);
    connect(&m_abm, &platform::ToolModel::ToolClick, this, &PanelMenus::choose);
    connect(&m_abm, &platform::ToolModel::BandOpen, this, [this](const platform::ToolBand* band) {
        if (band->name() == QLatin1String(app::recentDirectoriesBand))
            app::fillRecentDirectories(m_abm, m_main.recentDirectories(), &app::FolderExists,
                                       QStringLiteral("tClearI"));
    });
}

void PanelMenus::GenPopupMenu()
{
    collections::GenPopupMenu(m_abm, {.foldersInFront = m_list->FolderMode(),
                                      .listCount = m_list->ListCount(),
                                      .selCount = rowCount(m_list->selection()),
                                      .canEmail = m_canEmail});
}

void PanelMenus::popUp(const char* band, const QPoint& at)
{
    if (at.isNull())
        m_menu->popUpAtMouse(QLatin1String(band));
    else
        m_menu->popUp(QLatin1String(band), at);
}

void PanelMenus::popUpBeside(const char* band, const QRect& box)
{
    m_menu->popUpBeside(QLatin1String(band), box);
}

void PanelMenus::close()
{
    m_menu->close();
}

void PanelMenus::choose(const QString& tool)
{
    const PanelCommand command = panelCommand(tool);
    switch (command.action) {
    case PanelAction::Panel:
        Q_EMIT commandChosen(command.argument);
        break;
    case PanelAction::Convert:
        Q_EMIT conversionChosen(command.argument);
        break;
    case PanelAction::RecentDirectory:
        m_main.OpenDirX(recentDirectory(m_abm, command.argument));
        break;
    case PanelAction::Main:
        m_main.RunTool(command.argument);
        break;
    }
}

} // namespace quorvia::collections
