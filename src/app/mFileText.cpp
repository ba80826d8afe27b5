// Sizes, truth values and dates as text.
#include "app/mFile.h"
#include "platform/FileStatus.h"

#include <QLocale>

#include <sys/stat.h>

#include <algorithm>

namespace quorvia::app {

namespace {

/// `bytes` over `divisor` with groups and `decimals` (0 or 2) decimals, rounded half away from zero. In whole
/// numbers, so that no size is too large to come out right.
QString roundedQuotient(qint64 bytes, qint64 divisor, int decimals)
{
    const qint64 scale = decimals == 2 ? 100 : 1;
    qint64 whole = bytes / divisor;
    qint64 fraction = (bytes % divisor * scale + divisor / 2) / divisor;
    if (fraction == scale) {
        ++whole;
        fraction = 0;
    }
    if (decimals == 0)
        return GroupDigits(whole);
    return GroupDigits(whole) + u'.' + QString::number(fraction).rightJustified(2, u'0');
}

QString formatted(const QDateTime& time, QStringView format)
{
    return QLocale::c().toString(time, format);
}

} // namespace

QString GroupDigits(qint64 number)
{
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::DefaultNumberOptions);
    return locale.toString(number);
}

QString FormatSize(qint64 bytes, int level, bool separators)
{
    static constexpr const char* units[] = {" Bytes", " KB", " MB", " GB", " TB"};
    const int step = std::clamp(level, 0, 4);
    const QLatin1String unit(units[step]);
    const qint64 size = std::max<qint64>(bytes, 0);
    const qint64 divisor = qint64(1) << (10 * step);
    if (separators)
        return roundedQuotient(size, divisor, step < 2 ? 0 : 2) + unit;
    if (step == 0)
        return QString::number(size) + unit;
    return QString::number(static_cast<double>(size) / static_cast<double>(divisor), 'G', 15) + unit;
}

QString FormatFileSize(const QString& path, int level, bool separators)
{
    struct stat status = {};
    const bool isFile = platform::fileStatus(path, status) == 0 && !S_ISDIR(status.st_mode);
    return FormatSize(isFile ? status.st_size : 0, level, separators);
}

QString BoolText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

void TextBool(const QString& text, bool& value)
{
    value = text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
}

QString KeyDate(const QDateTime& time)
{
    return formatted(time, u"MMddyyyyHHmmss");
}

QString LogDate(const QDateTime& time)
{
    return formatted(time, u"MM-dd-yyyy");
}

QString LogTime(const QDateTime& time)
{
    return formatted(time, u"HH:mm:ss");
}

QString AcquiredDate(const QDateTime& time)
{
    return formatted(time, u"MMddyyyy");
}

QString AcquiredTime(const QDateTime& time)
{
    return formatted(time, u"HHmmss");
}

QString DisplayDate(const QDateTime& time)
{
    return formatted(time, u"MMMM dd, yyyy");
}

} // namespace quorvia::app
