// Scanners, through a helper process: whatever a driver does there, crash, hang or write rubbish, ends in "no
// picture" here. Each call starts the helper anew; listing may search the network for some seconds.
#pragma once

#include "platform/ScanSource.h"

#include <QImage>
#include <QString>
#include <QStringList>

namespace quorvia::platform {

/// The path of the helper: `$QUORVIA_SCAN_HELPER`, else the first of `directories`, each ending in "/", that
/// has it. Empty when there is none.
QString scanHelperPath(const QStringList& directories);
/// The directories of the scanner drivers' configuration, in order, for what `$SANE_CONFIG_DIR` says: paths
/// apart by ":", with one at the end the usual one as well; empty: the usual one alone.
QStringList scanConfigDirectories(const QString& variable);
/// True when one of `directories` names a driver. Reads some small files.
bool namesScanDriver(const QStringList& directories);
/// True when the helper stands at `helper` and a driver is installed. Asks no device.
bool scannerPresent(const QString& helper);

/// The picture in the file `path`, which the helper wrote: a portable map in its binary forms with 8 bits a
/// sample and nothing behind it. Null when it is anything else, one that ends early too; `why` tells.
QImage readScannedPicture(const QString& path, QString* why);

/// How long the helper may be silent, in milliseconds, until it counts as hanging.
struct ScanPatience
{
    int listing = 60'000;
    int acquiring = 180'000; ///< lamps warm up, carriages come home
    int ending = 5'000;      ///< after it was told to end, until it is killed
};

class Scanner
{
  public:
    /// `helper`: the path of its program.
    explicit Scanner(QString helper, ScanPatience patience = {})
        : m_helper(std::move(helper)), m_patience(patience)
    {
    }

    /// The devices that there are. While it waits the windows of `owner` (may be null) stay painted; after a
    /// second there is a box with Cancel. Nothing when that was pressed or the helper failed; `why` tells of
    /// a failure.
    std::optional<QList<ScanDevice>> list(QWidget* owner, QString* why) const;
    /// One picture, by what was chosen. Waits in the same way. Null when it was cancelled or failed; `why`
    /// tells of a failure, and of one that came behind a picture.
    QImage acquire(QWidget* owner, const ScanChoice& choice, QString* why) const;

  private:
    QString m_helper;
    ScanPatience m_patience;
};

} // namespace quorvia::platform
