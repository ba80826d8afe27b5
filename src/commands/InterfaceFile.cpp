#include "commands/InterfaceFile.h"

#include "app/Log.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "app/Settings.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"

#include <QFile>

namespace quorvia::commands {

namespace {

constexpr qint64 mostBytes = 1024 * 1024; // no menu that a person reads comes near it

/// The whole text of the file, or nothing when it cannot be read or is too large.
std::optional<QString> wholeText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > mostBytes)
        return std::nullopt;
    return QString::fromUtf8(file.read(mostBytes));
}

} // namespace

std::optional<QString> definitionSection(const QString& definition, const QString& name)
{
    const QString dashes = QStringLiteral("----- ");
    const QString marker = u'\n' + dashes + QStringLiteral("StrData:") + name;
    QString text = definition;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")); // many editors end lines with LF alone
    const qsizetype at = text.indexOf(marker, 0, Qt::CaseInsensitive);
    if (at < 0)
        return std::nullopt;
    QString section = text.mid(at + marker.size());
    if (const qsizetype end = section.indexOf(dashes); end >= 0)
        section.truncate(end);
    return section.remove(u'\n');
}

InterfaceFile::InterfaceFile(QWidget* owner)
    : InterfaceFile(owner, app::resourcePath(QStringLiteral("interface.dat")))
{
}

QString InterfaceFile::MenuString() const
{
    return section(QStringLiteral("Menu"));
}

QString InterfaceFile::ToolbarString() const
{
    return section(QStringLiteral("Toolbar"));
}

bool InterfaceFile::SetMenuString(const QString& text)
{
    return app::save(app::setting::Menu, text);
}

bool InterfaceFile::SetToolbarString(const QString& text)
{
    return app::save(app::setting::Toolbar, text);
}

QString InterfaceFile::section(const QString& name) const
{
    if (!platform::isRegularFile(m_path)) {
        platform::showMessage(m_owner, {.title = app::productTitle(),
                                        .text = QStringLiteral(
                                            "Error: Could not locate 'interface.dat' file. Please re-install "
                                            "software.")});
        return QString();
    }
    const std::optional<QString> text = wholeText(m_path);
    if (!text) {
        app::WriteLog(m_path + QStringLiteral(" cannot be read or is too large"));
        return QString();
    }
    const std::optional<QString> found = definitionSection(*text, name);
    if (!found)
        app::WriteLog(m_path + QStringLiteral(" has no section ") + name);
    return found.value_or(QString());
}

} // namespace quorvia::commands
