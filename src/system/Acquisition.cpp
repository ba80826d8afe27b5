#include "system/Acquisition.h"

#include "app/JpegSaves.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "engine/ImageEngine.h"
#include "platform/Dialogs.h"
#include "platform/Scanner.h"
#include "platform/WaitCursor.h"

#include <optional>

namespace quorvia::system {

namespace {

/// What was on show before.
struct Before
{
    QString file = {};   ///< empty: none that exists
    QImage picture = {}; ///< one that is in no file, so that nothing else has it
    QImage edited = {};  ///< the pixels of `file` with edits that were not saved; null: there are none
    int page = 1;        ///< of `file`
};

Before whatIsOnShow(const engine::ImageEngine& ix1)
{
    const QString file = ix1.FileName();
    if (app::FileExists(file))
        return {.file = file, .edited = ix1.EditedPicture(), .page = ix1.PageNumber()};
    return {.picture = ix1.Picture()};
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

void tellOfFailedSave(QWidget* owner, const QString& path)
{
    platform::showMessage(owner,
                          {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(),
                           QObject::tr("The scanned image could not be saved as:\n%1\n\nPlease save it in "
                                       "another place now.")
                               .arg(path)});
}

/// True when more than a blank page was acquired. `waiting` begins when it has come, as it may be large.
bool acquire(const AcquisitionSinks& sinks, std::optional<platform::WaitCursor>& waiting)
{
    sinks.ix1->SetFileName(QString());
    sinks.place();
    sinks.setCaption(QStringLiteral("TWAIN Select | ") + app::productTitle());
    sinks.ix1->TwainSelectSource();
    if (!sinks.isEnding())
        sinks.ix1->TwainAcquire();
    if (sinks.isGone())
        return false;
    waiting.emplace();
    if (!sinks.isEnding())
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
    if (sinks.isEnding() || !app::FileExists(before.file))
        return;
    sinks.openX(before.file);
    const bool isSame = !sinks.isEnding() && sinks.ix1->FileName() == before.file;
    if (before.edited.isNull() || !isSame || sinks.ix1->PageNumber() != before.page)
        return;
    sinks.ix1->RestoreEdit(before.edited);
    sinks.place();
    sinks.editIsBack();
}

/// Shows what came, as its save and its opening may take a moment.
void show(const AcquisitionSinks& sinks, const QImage& picture)
{
    sinks.ix1->SetAutoAcquireView(true);
    sinks.place();
    sinks.ix1->Refresh();
    app::letPendingEventsRunButInput(); // a key could open another image
    if (sinks.isEnding())
        return;
    if (!sinks.ix1->FileName().isEmpty() || sinks.ix1->ImagePixelWidth() == 0)
        sinks.ix1->SetPicture(picture); // something else did
}

/// For the end of the program: the picture into its file and no more.
void saveAlone(engine::ImageEngine& ix1, const QImage& picture, const QString& path)
{
    ix1.SetPicture(picture); // the end may have taken it away
    ix1.SetSaveFileName(path);
    app::takeJpegSettings(ix1);
    if (!ix1.SaveFile())
        app::WriteLog(QStringLiteral("The acquired image is lost: %1: %2").arg(path, ix1.LastError()));
}

/// The picture could not be saved where it belongs: the user is told, and asked for another place.
void saveElsewhere(const AcquisitionSinks& sinks, const QString& path)
{
    app::WriteLog(QStringLiteral("The acquired image is in no file yet: ") + path);
    tellOfFailedSave(sinks.owner, path);
    const bool isHeld = !sinks.isEnding() && sinks.ix1->FileName().isEmpty();
    if (isHeld && sinks.ix1->ImagePixelWidth() > 0)
        sinks.saveElsewhere();
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
    std::optional<platform::WaitCursor> waiting;
    const bool isAcquired = acquire(sinks, waiting);
    if (sinks.isGone())
        return;
    if (!isAcquired) {
        waiting.reset(); // a box comes
        if (!sinks.isEnding())
            goBack(sinks, before);
        return;
    }
    const QString path = folder + acquiredName(sinks.now());
    const QImage picture = sinks.ix1->Picture();
    if (!sinks.isEnding())
        show(sinks, picture);
    if (sinks.isGone())
        return;
    if (sinks.isEnding()) {
        saveAlone(*sinks.ix1, picture, path);
        return;
    }
    sinks.saveImage(path, true);
    waiting.reset();
    if (sinks.isEnding())
        return;
    if (app::FileExists(path))
        sinks.openX(path);
    else
        saveElsewhere(sinks, path);
}

} // namespace quorvia::system
