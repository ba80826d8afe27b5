// All that describes the current image: the texts of the first tab, the information panel and the side bar.
#pragma once

#include "app/ImageFacts.h"
#include "viewer/ImageTab.h"

#include <QObject>

#include <functional>

namespace quorvia::app {
class MainWindow;
}
namespace quorvia::engine {
class ImageEngine;
}
namespace quorvia::output {
class frmImageEXIF;
}

namespace quorvia::viewer {

class InformationPanel;
class Panes;

class ImageStatus : public QObject
{
    Q_OBJECT

  public:
    struct Parts
    {
        app::MainWindow* main;
        Panes* panes;
        engine::ImageEngine* ix1;
        std::function<void()> focusImage; ///< gives the keys back to the image
    };

    explicit ImageStatus(Parts parts);

    /// Shows the image that is current now. The panel, which asks the disk, only when it can be seen.
    void UpdateStatus();
    /// True while a changed description waits to be saved.
    bool isDescriptionUnsaved() const;
    /// Saves the description that waits, if one does.
    void saveDescriptionNow();

  private:
    void attachBar();
    InformationPanel* makePanel();
    app::ImageQuestions questions() const;

    Parts m_parts;
    ImageTab m_tab;
    InformationPanel* m_panel = nullptr;   ///< made when it is first seen
    output::frmImageEXIF* m_bar = nullptr; ///< likewise
};

} // namespace quorvia::viewer
