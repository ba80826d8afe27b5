// Which images are read ahead: the neighbours of the one on show in the list. The arithmetic is plain
// functions; the class tells the loader.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

namespace quorvia::engine {
class ImageEngine;
class ImageLoader;
} // namespace quorvia::engine
namespace quorvia::collections {
class PictureList;
}

namespace quorvia::viewer {

class Viewport;

/// The way from entry `from` to entry `to` (0-based, -1 for none) of a list of `count`: 1 forwards, -1
/// backwards, 0 when there is none or it is none of a neighbour's. From the last to the first goes forwards,
/// from the first to the last backwards.
int stepBetween(int from, int to, int count);

/// The entries worth reading ahead at entry `index` of a list of `count`, nearest first: the next in the
/// direction of `lastStep` (below 0: backwards), the next against it, the second in it. Each once, without
/// `index` itself.
std::vector<int> neighboursOf(int count, int index, int lastStep);

/// Tells from the steps of a walk what comes next.
class HurriedWalk
{
  public:
    /// A step to entry `index` of a list of `count`, `step` (see stepBetween) from the one before, which was
    /// seen `sincePainted` milliseconds ago (below 0: not yet). Returns the entry that is all but sure to
    /// follow, -1 for none: at the second step in the same direction that follows closely on the picture
    /// before, as a held key takes them.
    int step(int index, int count, int step, qint64 sincePainted);

  private:
    int m_hurriedStep = 0; ///< the last step when it was a hurried one, else 0
};

class ReadAheadPlan : public QObject
{
    Q_OBJECT

  public:
    /// Tells `loader` the neighbours in `list` whenever `ix1` has painted another image, and when the list or
    /// the size that images are shown at in `viewport` changes; and in a hurried walk, while an image is
    /// being loaded, its successor. All of them outlive the plan.
    ReadAheadPlan(std::shared_ptr<engine::ImageLoader> loader, engine::ImageEngine* ix1,
                  collections::PictureList* list, Viewport* viewport, QObject* parent = nullptr);

  private:
    void noteLoad(const QString& path);
    void notePainted();
    void tell();

    std::shared_ptr<engine::ImageLoader> m_loader;
    engine::ImageEngine* m_ix1;
    collections::PictureList* m_list;
    Viewport* m_viewport;
    QTimer m_tSettled; ///< from the last change of list or size until the neighbours are told anew
    HurriedWalk m_walk;
    QElapsedTimer m_sincePainted; ///< invalid while the newest image has not been painted
    int m_index = -1;             ///< of the image painted last
    int m_loading = -1;           ///< of the image loaded last
    int m_lastStep = 1;
    bool m_painted = false;
};

} // namespace quorvia::viewer
