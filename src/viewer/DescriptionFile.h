// The sidecar file with the user's description of an image, one an image, outside of the image's folder. A
// save waits for the disk, so that nothing that was saved is lost with the power.
#pragma once

#include <QByteArray>
#include <QString>

namespace quorvia::viewer {

struct Description
{
    enum class State {
        None,      ///< there is no sidecar
        Read,      ///< `text` is what it holds
        Unreadable ///< there is one that could not be read; a save would replace what nobody saw
    };
    State state = State::None;
    QString text = {};
};

/// The sidecar of the image at `image`: `InstallPath`, "Description/", the image's key and ".txt". Another
/// one when the image is changed, touched or moved.
QString descriptionPath(const QString& image);

/// What a sidecar of `bytes` says: UTF-8, or Latin-1 when it cannot be that, without the line end that a save
/// puts at its end. Lines end in "\n".
QString descriptionText(const QByteArray& bytes);
/// The content of a sidecar for `text`: UTF-8, one line end added.
QByteArray descriptionBytes(const QString& text);

/// The description in `sidecar`. One that cannot be read, is no regular file or is larger than 64 MiB is
/// Unreadable, with a line in the log.
Description readDescription(const QString& sidecar);
/// Writes `text` to `sidecar`, through a file of another name beside it: at no time is there half a sidecar.
/// Makes the directory when it has gone. False, with the old sidecar untouched and a line in the log, when it
/// cannot be written.
bool writeDescription(const QString& sidecar, const QString& text);

} // namespace quorvia::viewer
