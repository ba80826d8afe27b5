#include "output/PageTexts.h"

#include "app/mFile.h"
#include "output/PageLayout.h"
#include "output/SlideDelay.h"

namespace quorvia::output {

std::optional<QString> footerText(bool withName, bool withDirectory, const QString& path)
{
    if (!withName && !withDirectory)
        return {};
    return (withDirectory ? app::SplitPathName(path, 1) : QString()) +
           (withName ? app::SplitPathName(path, 2) : QString());
}

QString captionText(const QString& path)
{
    return QStringLiteral("Print Image: ") + app::SplitPathName(path, 2);
}

QString pageText(QSize page, QSizeF twipsPerPixel)
{
    return QStringLiteral("Page Dimensions: %1x%2")
        .arg(qRound(page.width() / twipsPerPixel.width()))
        .arg(qRound(page.height() / twipsPerPixel.height()));
}

PageBoxes withDefaults(PageBoxes boxes, QSize image, QSizeF twipsPerPixel)
{
    if (boxes.width.isEmpty())
        boxes.width = QString::number(qRound(image.width() / twipsPerPixel.width()));
    if (boxes.height.isEmpty())
        boxes.height = QString::number(qRound(image.height() / twipsPerPixel.height()));
    if (boxes.left.isEmpty())
        boxes.left = QStringLiteral("0");
    if (boxes.top.isEmpty())
        boxes.top = QStringLiteral("0");
    return boxes;
}

QRectF boxesRect(const PageBoxes& boxes)
{
    const auto value = [](const QString& text) { return withinPage(leadingNumber(text)); };
    return {value(boxes.left), value(boxes.top), value(boxes.width), value(boxes.height)};
}

bool composesWith(const QString& text)
{
    return !text.isEmpty() && leadingNumber(text) > -1000;
}

QString plainDecimal(double number)
{
    QString text = QString::number(withinPage(number), 'f', 4);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

} // namespace quorvia::output
