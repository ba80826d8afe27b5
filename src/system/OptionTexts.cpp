#include "system/OptionTexts.h"

#include "app/Product.h"

#include <QCoreApplication>

namespace quorvia::system {

namespace {

platform::MessageBox question(const QString& text)
{
    return {platform::BoxKind::Question, platform::BoxButtons::YesNoCancel, app::productTitle(), text};
}

} // namespace

QString statisticsText(const ThumbnailStatistics& statistics)
{
    constexpr int decimals = 2;
    return QStringLiteral("Current Number of Files: ") + QString::number(statistics.files) +
           QStringLiteral("\r\nDisk Space Used: ") + QString::number(statistics.megabytes, 'f', decimals) +
           QStringLiteral(" MB");
}

platform::MessageBox associateBox()
{
    return question(QStringLiteral("Are you sure you want to have ") + app::productTitle() +
                    QStringLiteral(" become the defualt viewer for all image formats?"));
}

platform::MessageBox clearThumbnailsBox()
{
    return question(QStringLiteral("This will delete all thumbnail files. Do you want to continue?"));
}

platform::FileChooser programChooser()
{
    constexpr int allFiles = 1; // programs have no ending here
    return {.title = QCoreApplication::translate("OptionTexts", "Select Program"),
            .filters = QStringLiteral("Application Files|*.exe;*.com;*.bat|") +
                       QCoreApplication::translate("OptionTexts", "All Files") + QStringLiteral("|*"),
            .start = QStringLiteral("/usr/bin"),
            .shownRow = allFiles};
}

} // namespace quorvia::system
