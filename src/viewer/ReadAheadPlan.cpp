#include "viewer/ReadAheadPlan.h"

#include "collections/Navigation.h"
#include "collections/PictureList.h"
#include "engine/ImageEngine.h"
#include "viewer/Viewport.h"

#include <algorithm>
#include <utility>

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

int HurriedWalk::step(int index, int count, int step, qint64 sincePainted)
{
    constexpr qint64 hurried = 250; // milliseconds
    const int before = std::exchange(m_hurriedStep, sincePainted <= hurried ? step : 0);
    if (m_hurriedStep == 0 || m_hurriedStep != before)
        return -1;
    const int next = step > 0 ? after(index, count) : collections::previousIndex(index, count);
    return next == index ? -1 : next;
}

ReadAheadPlan::ReadAheadPlan(std::shared_ptr<engine::ImageLoader> loader, engine::ImageEngine* ix1,
                             collections::PictureList* list, Viewport* viewport, QObject* parent)
    : QObject(parent), m_loader(std::move(loader)), m_ix1(ix1), m_list(list), m_viewport(viewport)
{
    m_tSettled.setSingleShot(true);
    m_tSettled.setInterval(settleDelay);
    connect(&m_tSettled, &QTimer::timeout, this, &ReadAheadPlan::tell);
    connect(ix1, &engine::ImageEngine::LoadBegun, this, &ReadAheadPlan::noteLoad);
    connect(ix1, &engine::ImageEngine::FirstPainted, this, &ReadAheadPlan::notePainted);
    const auto tellSoon = [this] {
        if (m_painted)
            m_tSettled.start();
    };
    connect(list, &collections::PictureList::ListChanged, this, tellSoon);
    connect(viewport, &Viewport::laidOut, this, tellSoon);
}

void ReadAheadPlan::noteLoad(const QString& path)
{
    const int before = std::exchange(m_loading, m_list->ListIndex());
    const bool listed = m_list->ListFile(m_loading) == path;
    const int step = listed ? stepBetween(before, m_loading, m_list->ListCount()) : 0;
    const qint64 sincePainted = m_sincePainted.isValid() ? m_sincePainted.elapsed() : -1;
    m_sincePainted.invalidate();
    const int next = m_walk.step(m_loading, m_list->ListCount(), step, sincePainted);
    m_loader->expect(m_list->ListFile(next), m_viewport->loadBox());
}

void ReadAheadPlan::notePainted()
{
    m_painted = true;
    m_sincePainted.start();
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
