#include "platform/MimeTypes.h"

#include "platform/GioParts.h"

namespace quorvia::platform {

QString mimeTypeOf(const QString& extension)
{
    const QString point = extension.startsWith(u'.') ? QString() : QStringLiteral(".");
    gboolean uncertain = FALSE;
    const gio::Text type(g_content_type_guess(QFile::encodeName(u'x' + point + extension).constData(),
                                              nullptr, 0, &uncertain));
    return uncertain || !type || g_content_type_is_unknown(type.get()) ? QString()
                                                                       : QString::fromUtf8(type.get());
}

} // namespace quorvia::platform
