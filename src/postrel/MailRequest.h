// What the mail tool is asked to send, as its command line says it.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quorvia::postrel {

struct MailRequest
{
    QString subject;
    QString body;            ///< line ends as "\n"
    QStringList attachments; ///< paths
};

/// Reads `arguments`, of the forms "/subject:...", "/hiddenbody:..." and "/attachments:...": a text goes on
/// over the arguments behind it that are none of these, joined by blanks, so that the line may come split at
/// its blanks. "<BRX>" in the body breaks the line. Attachments stand apart by ";"; a name that holds one
/// itself is found by `exists`. Other arguments in front are left out.
MailRequest mailRequest(const QStringList& arguments, const std::function<bool(const QString&)>& exists);

/// The arguments of xdg-email for `request`. Options are never taken from it: a path that begins with "-" is
/// led by "./".
QStringList composerArguments(const MailRequest& request);

} // namespace quorvia::postrel
