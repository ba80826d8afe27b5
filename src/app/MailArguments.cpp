#include "app/MailArguments.h"

namespace quorvia::app {

QStringList mailArguments(const Mail& mail)
{
    return {QLatin1String("/subject:") + mail.subject, QLatin1String("/hiddenbody:") + mail.hiddenBody,
            QLatin1String("/attachments:") + mail.attachments};
}

} // namespace quorvia::app
