#include "viewer/ImageStatus.h"

#include "app/MainWindow.h"
#include "engine/ImageEngine.h"
#include "output/frmImageEXIF.h"
#include "platform/Band.h"
#include "viewer/InformationPanel.h"
#include "viewer/Panes.h"
#include "viewer/ShellVerb.h"

namespace quorvia::viewer {

ImageStatus::ImageStatus(Parts parts)
    : QObject(parts.panes), m_parts(std::move(parts)), m_tab(m_parts.panes->gTab(), m_parts.ix1)
{
    connect(m_parts.panes->bInfo(), &platform::Band::visibilityChanged, this, &ImageStatus::attachBar);
}

/// Hangs the window of the side bar into its band, unless it hangs there.
void ImageStatus::attachBar()
{
    if (m_bar)
        return;
    m_bar = new output::frmImageEXIF(*m_parts.main, {questions(), m_parts.focusImage});
    m_bar->InitBar(m_parts.main->currentFile());
    m_parts.panes->bInfo()->setClient(m_bar);
}

void ImageStatus::UpdateStatus()
{
    m_tab.update();
    if (m_bar)
        m_bar->InitBar(m_parts.main->currentFile());
    if (!m_panel && m_parts.panes->isInformationShown())
        m_panel = makePanel();
    if (m_panel)
        m_panel->showCurrent();
}

bool ImageStatus::isDescriptionUnsaved() const
{
    return m_panel && m_panel->isDescriptionUnsaved();
}

void ImageStatus::saveDescriptionNow()
{
    if (m_panel)
        m_panel->saveDescriptionNow();
}

InformationPanel* ImageStatus::makePanel()
{
    auto* const panel = new InformationPanel(
        {.pShowInfo = m_parts.panes->pShowInfo(),
         .isShown = [this] { return m_parts.panes->isInformationShown(); },
         .fileName = [this] { return m_parts.main->currentFile(); },
         .image = questions(),
         .openFolder = [](const QString& directory) { runShellVerb(directory, "open"); }});
    panel->show();
    return panel;
}

app::ImageQuestions ImageStatus::questions() const
{
    engine::ImageEngine* const ix1 = m_parts.ix1;
    return {.facts = [ix1]() -> app::ImageFacts {
                return {QSize(ix1->ImagePixelWidth(), ix1->ImagePixelHeight()), ix1->BitsPerPixel()};
            },
            .uniqueColors = [ix1] { return ix1->UniqueColors(); }};
}

} // namespace quorvia::viewer
