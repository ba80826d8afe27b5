#include "collections/EntryText.h"

#include "app/mFile.h"

namespace quorvia::collections {

namespace {

const QLatin1String missingPrefix("File Not Found: ");

} // namespace

QString displayName(const QString& path)
{
    return QStringLiteral("%1 (%2)").arg(app::GetBaseName(path, false), app::GetExtension(path).toUpper());
}

QString entryText(int number, const QString& path)
{
    return QStringLiteral("%1. %2").arg(QString::number(number), displayName(path));
}

QString missingText(const QString& text)
{
    return missingPrefix + text;
}

int numberOf(const QString& text)
{
    const bool missing = text.startsWith(missingPrefix);
    return text.mid(missing ? missingPrefix.size() : 0).section(QLatin1String(". "), 0, 0).toInt();
}

QString pressedText(const QString& text)
{
    constexpr int most = 4;
    const QLatin1String star(" * ");
    QString result = text;
    qsizetype from = 0;
    for (int done = 0; done < most; ++done) {
        const qsizetype at = result.indexOf(star, from);
        if (at < 0)
            break;
        result[at + 1] = u'-';
        from = at + star.size();
    }
    return result;
}

QString countText(int count)
{
    return app::GroupDigits(count) + QStringLiteral(" Images");
}

} // namespace quorvia::collections
