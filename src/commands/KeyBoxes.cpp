#include "commands/KeyBoxes.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Product.h"

#include <QCoreApplication>
#include <QStringList>

namespace quorvia::commands {

namespace {

using platform::BoxButtons;
using platform::BoxKind;
using platform::MessageBox;

MessageBox helpQuestion(const QString& page)
{
    return {BoxKind::Question, BoxButtons::YesNoCancel, app::productTitle(),
            QStringLiteral("You have requested to view the ") + app::productTitle() +
                QStringLiteral(" '%1'. Do you wish to continue?").arg(page)};
}

QString engineVersion()
{
    return QStringLiteral("Image Engine: 4.0.004");
}

/// The types of the list of wildcards as a reader wants them: "BMP, DIB, GIF".
QString imageTypes()
{
    return QString::fromLatin1(app::ImageExtensionList)
        .remove(QLatin1String("*."))
        .replace(u';', QLatin1String(", "))
        .toUpper();
}

} // namespace

MessageBox helpBox()
{
    return helpQuestion(QStringLiteral("Help Documentation"));
}

MessageBox shortcutHelpBox()
{
    return helpQuestion(QStringLiteral("Shortcut Key Documentation"));
}

MessageBox informationBox(const ProgramFacts& facts)
{
    const QStringList lines = {
        facts.name,
        QStringLiteral("Version: ") + facts.version,
        engineVersion(),
        QStringLiteral("Interface Versions: ") + facts.interfaceVersions,
        QStringLiteral("Images Opened: ") + QString::number(facts.imagesOpened),
        QStringLiteral("File: ") + facts.file,
    };
    return {BoxKind::Information, BoxButtons::Ok, facts.name, lines.join(u'\n')};
}

MessageBox engineBox()
{
    return {BoxKind::Information, BoxButtons::Ok, QCoreApplication::translate("KeyBoxes", "Image Engine"),
            engineVersion() + QStringLiteral("\n\n") +
                QCoreApplication::translate("KeyBoxes", "Opens images of the types %1.").arg(imageTypes())};
}

QString fileData(const QString& path)
{
    constexpr int inKilobytes = 1;
    const QString data = path + QStringLiteral(", ") + app::FormatFileSize(path, inKilobytes, true);
    const QDateTime written = app::GetFileModified(path);
    return written.isValid() ? data + QStringLiteral(", ") + app::DisplayDate(written) : data;
}

} // namespace quorvia::commands
