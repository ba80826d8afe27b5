#include "viewer/ReadAheadPlan.h"

#include "collections/FolderList.h"
#include "collections/Navigation.h"
#include "engine/ImageEngine.h"
#include "viewer/Viewport.h"

#include <algorithm>

namespace quorvia::viewer {

namespace {

constexpr int settleDelay = 200; // milliseconds

int after(int index, int count)
{
    return collections::nextIndex(index, count, [](int) { return true; });
}

} // namespace

int stepBetween(int from, int to, int count)
{
    if (from < 0 || to < 0 || from == to)
        return 0;
    if (to == after(from, count))
        return 1;
    return to == collections::previousIndex(from, count) ? -1 : 0;
}

std::vector<int> neighboursOf(int count, int index, int lastStep)
{
    const auto stepped = [count, lastStep](int from, bool along) {
        return along == (lastStep >= 0) ? after(from, count) : collections::previousIndex(from, count);
    };
    const int along = stepped(index, true);
    std::vector<int> neighbours;
    for (const int entry : {along, stepped(index, false), stepped(along, true)}) {
        const bool known = std::find(neighbours.begin(), neighbours.end(), entry) != neighbours.end();
        if (entry >= 0 && entry < count && entry != index && !known)
            neighbours.push_back(entry);
    }
    return neighbours;
}

ReadAheadPlan::ReadAheadPlan(std::shared_ptr<engine::ImageLoader> loader, engine::ImageEngine* ix1,
                             collections::FolderList* list, Viewport* viewport, QObject* parent)
    : QObject(parent), m_loader(std::move(loader)), m_ix1(ix1), m_list(list), m_viewport(viewport)
{
    m_tSettled.setSingleShot(true);
    m_tSettled.setInterval(settleDelay);
    connect(&m_tSettled, &QTimer::timeout, this, &ReadAheadPlan::tell);
    connect(ix1, &engine::ImageEngine::FirstPainted, this, &ReadAheadPlan::notePainted);
    const auto tellSoon = [this] {
        if (m_painted)
            m_tSettled.start();
    };
    connect(list, &collections::FolderList::ListChanged, this, tellSoon);
    connect(viewport, &Viewport::laidOut, this, tellSoon);
}

void ReadAheadPlan::notePainted()
{
    m_painted = true;
    const int index = m_list->ListIndex();
    if (const int step = stepBetween(m_index, index, m_list->ListCount()); step != 0)
        m_lastStep = step;
    m_index = index;
    m_tSettled.stop();
    tell();
}

void ReadAheadPlan::tell()
{
    QStringList paths;
    for (const int entry : neighboursOf(m_list->ListCount(), m_list->ListIndex(), m_lastStep))
        paths.append(m_list->ListFile(entry));
    paths.removeAll(m_ix1->FileName()); // it may be on show without being the current entry
    m_loader->setNeighbours(paths, m_viewport->loadBox());
}

} // namespace quorvia::viewer
