#include "system/Publishing.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "app/WebPages.h"

namespace quorvia::system {

namespace {

QString storedHomePage()
{
    return app::readOfTool(app::common::WebSites, app::productTitle());
}

void publish(const app::CommonSubkey& subkey, const QString& value)
{
    app::saveOfTool(subkey, app::productTitle(), value);
}

QString runTogether(QString text)
{
    return text.remove(u'.').remove(u' ');
}

} // namespace

void PublishProgram(bool isComponent)
{
    const QString program = app::programPath();
    publish(app::common::ProgramFileSupport, QLatin1String(app::ImageExtensionList));
    publish(app::common::ProgramAssoPaths, program);

    publish(app::common::WebSites, GetHomeUrl());
    const QString home = storedHomePage();
    if (!home.contains(QLatin1String("app=")) && home != app::webAddress(app::WebPage::Front))
        publish(app::common::WebSites, GetHomeUrl() + BuildAppQuery());
    app::save(app::common::MenuShellReg, app::webAddress(app::WebPage::ShellMenu));

    if (isComponent) {
        publish(app::common::ComponentPaths, program);
    } else {
        publish(app::common::ProgramShortPaths, app::GetShortPath(program));
        publish(app::common::ProgramPaths, program);
    }
}

QString GetHomeUrl()
{
    QString home = storedHomePage();
    if (home.isEmpty())
        home = builtInHomeUrl(app::productTitle());
    return home.trimmed().isEmpty() ? app::webAddress(app::WebPage::Front) : home;
}

QString builtInHomeUrl(const QString& title)
{
    if (title == app::productTitle())
        return app::webAddress(app::WebPage::Product);
    if (title == QLatin1String("Morphane"))
        return app::webAddress(app::WebPage::ProductMorphane);
    return app::readOfTool(app::common::WebSites, QString());
}

QString appQuery(const QString& title, const app::Version& version)
{
    return QStringLiteral("?app=") + runTogether(title) + app::versionText(version, QString());
}

QString toolQuery(const QString& title, const app::Version& version, const QString& tag)
{
    return QStringLiteral("programname=") + QString(title).remove(u'.') + QStringLiteral("&version=") +
           app::versionText(version, QStringLiteral(".")) + QStringLiteral("&app=") +
           runTogether(title + app::versionText(version, QString()) + tag) + QStringLiteral("&check=1");
}

QString BuildAppQuery()
{
    return appQuery(app::productTitle(), app::productVersion());
}

QString BuildToolQuery(const QString& tag)
{
    return toolQuery(app::productTitle(), app::productVersion(), tag);
}

} // namespace quorvia::system
