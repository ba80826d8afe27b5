#include "viewer/ScanCommand.h"

#include "app/Log.h"
#include "app/Resources.h"
#include "app/Settings.h"
#include "platform/Scanner.h"
#include "system/Acquisition.h"
#include "viewer/frmImageView.h"

#include <QPointer>

#include <utility>

namespace quorvia::viewer {

namespace {

platform::Scanner scanner()
{
    return platform::Scanner(platform::scanHelperPath(app::companionDirectories()));
}

platform::ScanChoice lastChoice()
{
    return {.device = app::read(app::setting::Scanner),
            .mode = app::read(app::setting::ScannerGray) == 1 ? platform::ScanMode::Gray
                                                              : platform::ScanMode::Color,
            .resolution = app::read(app::setting::ScannerResolution)};
}

void keep(const platform::ScanChoice& choice)
{
    app::save(app::setting::Scanner, choice.device);
    app::save(app::setting::ScannerGray, choice.mode == platform::ScanMode::Gray ? 1 : 0);
    app::save(app::setting::ScannerResolution, choice.resolution);
}

void logFailure(const char* step, const QString& why)
{
    if (!why.isEmpty())
        app::WriteLog(QStringLiteral("%1: %2").arg(QLatin1String(step), why));
}

} // namespace

void ScanCommand::run()
{
    if (std::exchange(m_isBusy, true))
        return;
    const QPointer<frmImageView> alive = &m_window;
    m_window.ix1()->SetAcquisitionSource(
        {.select = [this] { select(); }, .acquire = [this] { return acquire(); }});
    m_caption = m_window.windowTitle();
    system::miScan(sinks());
    if (!alive)
        return;
    m_isBusy = false;
    m_window.UpdateToolbar();
}

void ScanCommand::select()
{
    m_choice = {};
    const QPointer<frmImageView> alive = &m_window;
    QString why;
    const auto devices = scanner().list(&m_window, &why);
    logFailure("The scanners could not be listed", why);
    if (!alive || m_window.isUnloaded() || (!devices && why.isEmpty()))
        return;
    const auto chosen = platform::askScanSource(
        &m_window, {.devices = devices.value_or(QList<platform::ScanDevice>()), .start = lastChoice()});
    if (!alive || !chosen)
        return;
    m_choice = *chosen;
    keep(m_choice);
}

QImage ScanCommand::acquire()
{
    if (m_choice.device.isEmpty())
        return {};
    QString why;
    QImage picture = scanner().acquire(&m_window, m_choice, &why);
    logFailure(picture.isNull() ? "Nothing was acquired" : "The image was acquired, and then it failed", why);
    return picture;
}

system::AcquisitionSinks ScanCommand::sinks()
{
    frmImageView* const w = &m_window;
    const QPointer<frmImageView> alive = w;
    return {.owner = w,
            .ix1 = w->ix1(),
            .driversPresent = &system::TwainPresent,
            .now = [] { return QDateTime::currentDateTime(); },
            .setCaption = [w](const QString& caption) { w->setWindowTitle(caption); },
            .restoreCaption = [this] { m_window.setWindowTitle(m_caption); },
            .place =
                [w] {
                    w->opening()->CheckTiff();
                    w->UpdateStatus();
                    w->viewport()->layout();
                },
            .saveImage = [w](const QString& path, bool force) { w->images().saver().SaveImage(path, force); },
            .saveElsewhere = [w] { w->images().saver().saveAs(); },
            .openX = [w](const QString& path) { w->OpenX(path); },
            .editIsBack = [w] { w->images().edits().EnableEditing(); },
            .isEnding =
                [alive] {
                    const frmImageView* const window = alive.data();
                    return window ? window->isUnloaded() : true;
                },
            .isGone = [alive] { return alive.isNull(); }};
}

} // namespace quorvia::viewer
