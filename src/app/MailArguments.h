// How the tool that sends mail is told what to send.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::app {

struct Mail
{
    QString subject;
    QString hiddenBody = {}; ///< "<BRX>" breaks the line
    QString attachments;     ///< full paths, apart by ";"
};

/// The tool's arguments for `mail`. Joined by blanks they are the line that it reads: subject, hidden body
/// and attachments follow their switches without quotes.
QStringList mailArguments(const Mail& mail);

} // namespace quorvia::app
