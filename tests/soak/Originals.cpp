#include "Originals.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <functional>

namespace quorvia::test {

namespace {

void eachFileBelow(const QString& folder, const std::function<void(const QString&)>& visit)
{
    QDirIterator each(folder, QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (each.hasNext())
        visit(each.next());
}

} // namespace

QByteArray fingerprintOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
}

QByteArray fingerprint(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return fingerprintOf(file.readAll());
}

void Originals::add(const QString& folder)
{
    eachFileBelow(folder, [this](const QString& path) {
        if (const QByteArray print = fingerprint(path); !print.isEmpty() && !m_names.contains(print))
            m_names.insert(print, path);
    });
}

bool Originals::save(const QString& path) const
{
    QByteArray text;
    for (auto each = m_names.begin(); each != m_names.end(); ++each)
        text += each.key() + ' ' + each.value().toUtf8() + '\n';
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

Originals Originals::load(const QString& path)
{
    Originals all;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return all;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (const qsizetype end = line.indexOf(' '); end > 0)
            all.m_names.insert(line.left(end), QString::fromUtf8(line.mid(end + 1)));
    }
    return all;
}

QStringList Originals::lost(const QStringList& folders) const
{
    QMap<QByteArray, QString> left = m_names;
    for (const QString& folder : folders)
        eachFileBelow(folder, [&left](const QString& path) { left.remove(fingerprint(path)); });
    QStringList names = left.values();
    names.sort();
    return names;
}

} // namespace quorvia::test
