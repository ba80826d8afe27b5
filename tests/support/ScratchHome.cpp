#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtGlobal>

namespace quorvia::test {

ScratchHome::ScratchHome()
{
    Q_ASSERT(m_directory.isValid());
    set("HOME", m_directory.path());
    set("XDG_CONFIG_HOME", path(QStringLiteral(".config")));
    set("XDG_DATA_HOME", path(QStringLiteral(".local/share")));
    set("XDG_STATE_HOME", path(QStringLiteral(".local/state")));
    set("XDG_CACHE_HOME", path(QStringLiteral(".cache")));
    set("XDG_RUNTIME_DIR", path(QStringLiteral("run")));
    set("QUORVIA_ROOT", path(QStringLiteral("root")));
    set("HALVEXA_MACHINE_STORE", path(QStringLiteral("machine/machine.db")));
    QDir().mkpath(path(QStringLiteral("run")));
    QFile::setPermissions(path(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

ScratchHome::~ScratchHome()
{
    for (auto it = m_before.rbegin(); it != m_before.rend(); ++it) {
        if (it->second.isNull())
            qunsetenv(it->first.constData());
        else
            qputenv(it->first.constData(), it->second);
    }
}

QString ScratchHome::path(const QString& name) const
{
    return m_directory.filePath(name);
}

QString ScratchHome::write(const QString& name, const QByteArray& bytes) const
{
    const QString full = path(name);
    QDir().mkpath(QFileInfo(full).path());
    QFile file(full);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    Q_ASSERT(written);
    Q_UNUSED(written);
    return full;
}

void ScratchHome::set(const char* variable, const QString& value)
{
    m_before.emplace_back(variable, qEnvironmentVariableIsSet(variable) ? qgetenv(variable) : QByteArray());
    qputenv(variable, value.toLocal8Bit());
}

} // namespace quorvia::test
