// What the mail tool is asked to send, as its command line says it. In bytes, as names of files are: they
// need not be text in any encoding.
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <functional>

namespace quorvia::postrel {

struct MailRequest
{
    QByteArray subject;
    QByteArray body;            ///< line ends as "\n"
    QByteArrayList attachments; ///< paths
};

/// Reads `arguments`, of the forms "/subject:...", "/hiddenbody:..." and "/attachments:...": a text goes on
/// over the arguments behind it that are none of these, joined by blanks, so that the line may come split at
/// its blanks. "<BRX>" in the body breaks the line. Attachments are full paths, apart by ";"; a name that
/// holds one itself is taken whole, unless "/" follows in it and `exists` does not know it. Other arguments
/// in front are left out.
MailRequest mailRequest(const QByteArrayList& arguments,
                        const std::function<bool(const QByteArray&)>& exists);

/// The arguments of xdg-email for `request`. Options are never taken from it: a path that begins with "-" is
/// led by "./".
QByteArrayList composerArguments(const MailRequest& request);

} // namespace quorvia::postrel
