#include "system/UpdateCheck.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "platform/Dialogs.h"

namespace quorvia::system {

namespace {

constexpr int daysOfWeek = 7;

QString versionNumbers()
{
    return app::versionText(app::productVersion(), QStringLiteral("."));
}

} // namespace

QString weekOfYear(QDate day)
{
    // 0 for a year that begins on a Sunday.
    const int before = QDate(day.year(), 1, 1).dayOfWeek() % daysOfWeek;
    const int week = (day.dayOfYear() - 1 + before) / daysOfWeek + 1;
    return QString::number(week) + QString::number(day.year());
}

QStringList updaterArguments(bool report, bool forced)
{
    QStringList arguments;
    if (forced && !report)
        arguments.append(QStringLiteral("/showdialog"));
    const QString form = report ? QStringLiteral("/loginstall:(") : QStringLiteral("/versionupdate:(");
    arguments.append(form + app::makerName() + u';' + versionNumbers() + u';' + app::productTitle() +
                     QStringLiteral(";)"));
    arguments.append(QStringLiteral("/exit"));
    return arguments;
}

void CheckForUpdate(bool report, bool forced, const UpdateSinks& sinks)
{
    if (app::read(app::setting::AutoUpdate) != 1 && !forced)
        return;
    const QString week = weekOfYear(sinks.today());
    if (app::read(app::setting::LastCheck) == week && !forced)
        return;
    const QString updater = app::read(app::common::AutoUpdate);
    if (!app::FileExists(updater) || !sinks.isConnected())
        return; // the check stays due
    app::save(app::setting::LastCheck, week);
    const platform::ShellCode code = sinks.start(updater, updaterArguments(report, forced));
    if (code != platform::ShellCode::Ok)
        app::WriteLog(QStringLiteral("Not started: %1: %2").arg(updater, app::ShellMessage(int(code))));
}

void askAndCheckForUpdate(QWidget* owner, const UpdateSinks& sinks)
{
    const platform::BoxAnswer answer = platform::showMessage(
        owner, {platform::BoxKind::Information, platform::BoxButtons::OkCancel, app::productTitle(),
                QStringLiteral(
                    "This application will know check for an updated version: Please make sure you are "
                    "currently connected to the internet before continuing.\n\n"
                    "Note: AutoUpdate may not work on all computers. You can check for an updated version "
                    "manually by visiting the application homepage.\n\n"
                    "Click 'Ok' to proceed to check for updates.")});
    if (answer == platform::BoxAnswer::Ok)
        CheckForUpdate(false, true, sinks);
}

bool isFirstStartOfVersion()
{
    const QString version = versionNumbers();
    if (app::read(app::setting::StartedVersion) == version)
        return false;
    app::save(app::setting::StartedVersion, version);
    return true;
}

} // namespace quorvia::system
