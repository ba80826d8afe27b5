#include "ScratchDesktop.h"

#include <QFile>

namespace quorvia::test {

namespace {

QString recordName(const QString& name)
{
    return QStringLiteral("records/") + name;
}

} // namespace

void leaveDesktop(const ScratchHome& home)
{
    qputenv("XDG_DATA_DIRS", home.path(QStringLiteral("share")).toLocal8Bit());
    qputenv("XDG_CONFIG_DIRS", home.path(QStringLiteral("etc")).toLocal8Bit());
    qunsetenv("XDG_CURRENT_DESKTOP");
}

ScratchDesktop::ScratchDesktop(const ScratchHome& home) : m_home(home)
{
    leaveDesktop(home);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // no session bus to announce a start on
    home.write(recordName(QStringLiteral(".keep")), "");
}

QString ScratchDesktop::makeProgram(const QString& name) const
{
    const QString record = m_home.path(recordName(name));
    const QString script =
        QStringLiteral("#!/bin/sh\n"
                       "{ pwd -P; for argument in \"$@\"; do printf '%s\\n' \"$argument\"; done; } "
                       "> '%1.part' && mv '%1.part' '%1'\n")
            .arg(record);
    const QString file = m_home.write(QStringLiteral("bin/") + name, script.toLocal8Bit());
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file;
}

QStringList ScratchDesktop::record(const QString& name) const
{
    QFile file(m_home.path(recordName(name)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromLocal8Bit(file.readAll()).split(u'\n');
    lines.removeLast(); // what follows the last line end
    return lines;
}

void ScratchDesktop::forget(const QString& name) const
{
    QFile::remove(m_home.path(recordName(name)));
}

void ScratchDesktop::addType(const QString& type, const QString& pattern)
{
    m_globs += "50:" + type.toUtf8() + ':' + pattern.toUtf8() + '\n';
    m_home.write(QStringLiteral(".local/share/mime/globs2"), m_globs);
}

void ScratchDesktop::addApplication(const QString& name, const QStringList& types, const QString& categories,
                                    const QString& argument)
{
    const QString entry =
        QStringLiteral("[Desktop Entry]\nType=Application\nName=%1\nExec=%2 %3\nMimeType=%4;\n"
                       "Categories=%5\n")
            .arg(name, makeProgram(name), argument, types.join(u';'), categories);
    m_home.write(QStringLiteral(".local/share/applications/%1.desktop").arg(name), entry.toUtf8());
    for (const QString& type : types)
        m_associations[type].append(name + QStringLiteral(".desktop"));
    QByteArray cache = "[MIME Cache]\n";
    for (const auto& [type, ids] : m_associations)
        cache += type.toUtf8() + '=' + ids.join(u';').toUtf8() + ";\n";
    m_home.write(QStringLiteral(".local/share/applications/mimeinfo.cache"), cache);
}

void ScratchDesktop::setDefault(const QString& type, const QString& name)
{
    m_defaults += type.toUtf8() + '=' + name.toUtf8() + ".desktop\n";
    m_home.write(QStringLiteral(".config/mimeapps.list"), m_defaults);
}

} // namespace quorvia::test
