#include "system/Acquisition.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "engine/ImageEngine.h"
#include "platform/Dialogs.h"
#include "platform/Scanner.h"

namespace quorvia::system {

namespace {

/// What was on show before.
struct Before
{
    QString file;   ///< empty: none that exists
    QImage picture; ///< one that is in no file, so that nothing else has it
};

Before whatIsOnShow(const engine::ImageEngine& ix1)
{
    const QString file = ix1.FileName();
    if (app::FileExists(file))
        return {file, {}};
    return {{}, ix1.Picture()};
}

void tellOfMissingDrivers(QWidget* owner)
{
    platform::showMessage(
        owner, {platform::BoxKind::Critical, platform::BoxButtons::Ok, QStringLiteral("TWAIN Error"),
                app::productTitle() +
                    QStringLiteral(
                        " has detected that TWAIN drivers are not installed on your computer.  TWAIN is the "
                        "software that interfaces to the scanner or camera hardware.  In order to use this "
                        "feature, you must have a digital camera, scanner, or other input device connected "
                        "to your computer.  You must also install the TWAIN software drivers that come with "
                        "the hardware.")});
}

/// True when more than a blank page was acquired.
bool acquire(const AcquisitionSinks& sinks)
{
    sinks.ix1->SetFileName(QString());
    sinks.place();
    sinks.setCaption(QStringLiteral("TWAIN Select | ") + app::productTitle());
    sinks.ix1->TwainSelectSource();
    if (!sinks.isEnding())
        sinks.ix1->TwainAcquire();
    if (sinks.isEnding())
        return false;
    sinks.restoreCaption();
    return sinks.ix1->UniqueColors() >= 2;
}

/// Nothing came: what was on show comes back.
void goBack(const AcquisitionSinks& sinks, const Before& before)
{
    sinks.ix1->SetPicture(before.picture); // a blank page goes
    sinks.place();
    platform::showMessage(sinks.owner,
                          {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(),
                           QStringLiteral("Either 'cancel' was selected or an error was encountered. TWAIN "
                                          "Acquire cannot continue.")});
    if (!sinks.isEnding() && app::FileExists(before.file))
        sinks.openX(before.file);
}

/// Shows what came, as its save and its opening may take a moment.
void show(const AcquisitionSinks& sinks)
{
    const QImage picture = sinks.ix1->Picture();
    sinks.ix1->SetAutoAcquireView(true);
    sinks.place();
    sinks.ix1->Refresh();
    app::letPendingEventsRunButInput(); // a key could open another image
    if (!sinks.ix1->FileName().isEmpty() || sinks.ix1->ImagePixelWidth() == 0)
        sinks.ix1->SetPicture(picture); // something else did
}

} // namespace

bool TwainPresent()
{
    return platform::scannerPresent(platform::scanHelperPath(app::companionDirectories()));
}

QString acquiredName(const QDateTime& time)
{
    return QStringLiteral("Image ") + app::AcquiredDate(time) + u'-' + app::AcquiredTime(time) +
           QStringLiteral(".jpg");
}

QString acquiredFolder()
{
    return app::InstallPath() + QStringLiteral("Acquired Images/");
}

void miScan(const AcquisitionSinks& sinks)
{
    if (!sinks.driversPresent()) {
        tellOfMissingDrivers(sinks.owner);
        return;
    }
    const Before before = whatIsOnShow(*sinks.ix1);
    const QString folder = acquiredFolder();
    app::MakePath(folder);
    const bool isAcquired = acquire(sinks);
    if (sinks.isEnding())
        return;
    if (!isAcquired) {
        goBack(sinks, before);
        return;
    }
    const QString path = folder + acquiredName(sinks.now());
    show(sinks);
    if (sinks.isEnding())
        return;
    sinks.saveImage(path, true);
    if (app::FileExists(path))
        sinks.openX(path);
    else
        app::WriteLog(QStringLiteral("The acquired image is in no file yet: ") + path);
}

} // namespace quorvia::system
