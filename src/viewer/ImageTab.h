// What the first tab says of the current image: its name, and in its tool tip size and colours. The tip is
// put together when it is about to show, since counting colours is dear.
#pragma once

#include <QObject>
#include <QSize>
#include <QString>

namespace quorvia::controls {
class gnTab;
}
namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::viewer {

/// `name` as it goes on a tab: over 20 characters its first 15, "..." and what follows its last point;
/// "Unknown" for none.
QString tabCaption(const QString& name);

/// The tool tip for an image of `pixels`, with so many different colours, in a file of the size `fileSize`.
QString tabTip(QSize pixels, int colors, const QString& fileSize);

class ImageTab : public QObject
{
    Q_OBJECT

  public:
    /// Keeps the tab "Image" of `gTab`; both outlive this.
    ImageTab(controls::gnTab* gTab, engine::ImageEngine* ix1);

    /// Shows the name of the image that is current now.
    void update();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    controls::gnTab* m_gTab;
    engine::ImageEngine* m_ix1;
};

} // namespace quorvia::viewer
