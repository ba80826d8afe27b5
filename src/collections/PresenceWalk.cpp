#include "collections/PresenceWalk.h"

#include "platform/FileStatus.h"

#include <QElapsedTimer>

namespace quorvia::collections {

namespace {

constexpr int sliceTime = 5; // milliseconds, some thousand files on a disk of this machine

} // namespace

PresenceWalk::PresenceWalk(QObject* parent) : QObject(parent)
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &PresenceWalk::walkOn);
}

void PresenceWalk::begin(const QStringList& files, Visitor visitor)
{
    m_files = files;
    m_visitor = std::move(visitor);
    m_index = 0;
    walkOn();
}

void PresenceWalk::stop()
{
    m_next.stop();
    m_files.clear();
}

void PresenceWalk::walkOn()
{
    QElapsedTimer time;
    time.start();
    m_next.start(0); // before the visitor, who may stop the walk
    while (m_index < int(m_files.size()) && time.elapsed() < sliceTime) {
        const int index = m_index++;
        if (!m_visitor(index, platform::isFile(m_files.at(index)))) {
            stop();
            return;
        }
    }
    if (m_index >= int(m_files.size()))
        stop();
}

} // namespace quorvia::collections
