#include "platform/OneLine.h"

#include <algorithm>

namespace quorvia::platform {

QString oneLine(const QString& text)
{
    QString result = text;
    const auto breaks = [](QChar character) {
        const QChar::Category category = character.category();
        return category == QChar::Other_Control || category == QChar::Separator_Line ||
               category == QChar::Separator_Paragraph;
    };
    std::replace_if(result.begin(), result.end(), breaks, QChar(u' '));
    return result;
}

QString plainToolTip(const QString& text)
{
    return QStringLiteral("<span>%1</span>").arg(oneLine(text).toHtmlEscaped());
}

} // namespace quorvia::platform
