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
        home = app::webAddress(app::WebPage::Product);
    return home.trimmed().isEmpty() ? app::webAddress(app::WebPage::Front) : home;
}

QString BuildAppQuery()
{
    QString title = app::productTitle();
    title.remove(QLatin1Char('.')).remove(QLatin1Char(' '));
    return QStringLiteral("?app=") + title + app::versionText(app::productVersion(), QString());
}

} // namespace quorvia::system
