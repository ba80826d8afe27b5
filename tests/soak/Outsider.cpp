#include "Outsider.h"

#include "support/FileContent.h"

#include <QDir>
#include <QFile>

#include <utility>

namespace quorvia::test {

namespace {

constexpr int fewFiles = 60; ///< below that some are fetched from the trash

} // namespace

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
}

Outsider::Outsider(QString folder, QString templates, QString trash, Originals originals)
    : m_folder(std::move(folder)), m_templates(std::move(templates)), m_trash(std::move(trash)),
      m_originals(std::move(originals))
{
}

QString Outsider::act(StepRandom& random, int step) const
{
    if (filesIn(m_folder).size() < fewFiles)
        return fetch(random);
    switch (random.below(4)) {
    case 0:
        return add(random, step);
    case 1:
        return change(random);
    case 2:
        return remove(random);
    default:
        return moveOriginal(random, step);
    }
}

QString Outsider::add(StepRandom& random, int step) const
{
    const QStringList names = filesIn(m_templates);
    if (names.isEmpty())
        return QStringLiteral("adds nothing");
    const QString& name = random.oneOf(names);
    const QString path = QStringLiteral("%1/other-%2-%3").arg(m_folder).arg(step).arg(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        file.write(contentOf(m_templates + u'/' + name) + QByteArray::number(step));
    return QStringLiteral("adds ") + path;
}

/// One of his own files; empty when there is none.
QString Outsider::ownFile(StepRandom& random) const
{
    const QStringList names = filesIn(m_folder).filter(QStringLiteral("other-"));
    if (names.isEmpty())
        return {};
    QString path = m_folder + u'/' + random.oneOf(names);
    return m_originals.contains(fingerprint(path)) ? QString() : path;
}

QString Outsider::change(StepRandom& random) const
{
    const QString path = ownFile(random);
    QFile file(path);
    if (!path.isEmpty() && file.open(QIODevice::ReadWrite)) {
        if (random.oneIn(3))
            file.resize(file.size() / 2);
        file.seek(random.below(int(file.size()) + 1));
        file.write("somebody else's");
    }
    return QStringLiteral("changes ") + path;
}

QString Outsider::remove(StepRandom& random) const
{
    const QString path = ownFile(random);
    if (!path.isEmpty())
        QFile::remove(path);
    return QStringLiteral("removes ") + path;
}

/// Renames one in the folder, or takes it to the folder below or back.
QString Outsider::moveOriginal(StepRandom& random, int step) const
{
    const QString below = m_folder + QStringLiteral("/below");
    const bool fetches = random.oneIn(3) && !filesIn(below).isEmpty();
    const QString& from = fetches ? below : m_folder;
    const QStringList names = filesIn(from);
    const QString& name = random.oneOf(names);
    const QString to = fetches || random.oneIn(2) ? m_folder : below;
    const QString path = QStringLiteral("%1/%2-%3").arg(to).arg(step).arg(name.section(u'-', -1));
    QDir().mkpath(below);
    QFile::rename(from + u'/' + name, path);
    return QStringLiteral("moves %1 to %2").arg(name, path);
}

QString Outsider::fetch(StepRandom& random) const
{
    QStringList fetched;
    for (int i = 0; i < 10; ++i) {
        const QStringList names = filesIn(m_trash);
        if (names.isEmpty())
            break;
        const QString& name = random.oneOf(names);
        if (!QFile::exists(m_folder + u'/' + name) &&
            QFile::rename(m_trash + u'/' + name, m_folder + u'/' + name))
            fetched.append(name);
    }
    return QStringLiteral("fetches from the trash: ") + fetched.join(QStringLiteral(", "));
}

} // namespace quorvia::test
