// The dialogs for files and folders of Dialogs.h.
#include "platform/Answerers.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QPointer>

namespace quorvia::platform {

template class Answerer<FolderBrowser, QString>;
template class Answerer<FileChooser, QString>;
template class Answerer<FileChooser, QStringList>;
template class Answerer<SaveChooser, QString>;

namespace {

/// The rows of FileChooser as the toolkit writes them.
QStringList nameFilters(const QString& filters)
{
    QStringList rows;
    const QStringList fields = filters.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2)
        rows.append(fields.at(i) + QStringLiteral(" (") +
                    QString(fields.at(i + 1)).replace(QLatin1Char(';'), QLatin1Char(' ')) + QLatin1Char(')'));
    return rows;
}

/// A dialog that is not yet shown. Without the folder `start` the toolkit would begin where the last dialog
/// of the session ended.
QFileDialog* dialogAt(const QString& start, QWidget* owner, const QString& title)
{
    auto* const dialog = new QFileDialog(owner, title, start.isEmpty() ? QDir::currentPath() : start);
    dialog->setAccessibleName(title);
    return dialog;
}

/// A dialog in which existing files are chosen.
QFileDialog* openDialog(QWidget* owner, const FileChooser& chooser)
{
    auto* const dialog = dialogAt(chooser.start, owner, chooser.title);
    dialog->setFileMode(QFileDialog::ExistingFile);
    const QStringList filters = nameFilters(chooser.filters);
    dialog->setNameFilters(filters);
    dialog->selectNameFilter(filters.value(chooser.shownRow));
    return dialog;
}

/// Waits for the choice in `dialog`, takes it and ends the dialog, which may be destroyed meanwhile. Empty
/// when there was no choice.
QStringList chosenIn(QFileDialog* dialog)
{
    const QPointer<QFileDialog> watched = dialog;
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (watched.isNull())
        return {};
    QStringList paths = accepted ? dialog->selectedFiles() : QStringList();
    delete dialog;
    return paths;
}

} // namespace

QString browseForFolder(QWidget* owner, const FolderBrowser& browser)
{
    if (const auto answer = Answerers<FolderBrowser, QString>::newest())
        return answer(browser);
    auto* const dialog = dialogAt(browser.start, owner, browser.title);
    dialog->setObjectName(QStringLiteral("FolderBrowser"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    return chosenIn(dialog).value(0);
}

QString chooseFile(QWidget* owner, const FileChooser& chooser)
{
    if (const auto answer = Answerers<FileChooser, QString>::newest())
        return answer(chooser);
    auto* const dialog = openDialog(owner, chooser);
    dialog->setObjectName(QStringLiteral("FileChooser"));
    return chosenIn(dialog).value(0);
}

QStringList chooseFiles(QWidget* owner, const FileChooser& chooser)
{
    if (const auto answer = Answerers<FileChooser, QStringList>::newest())
        return answer(chooser);
    auto* const dialog = openDialog(owner, chooser);
    dialog->setObjectName(QStringLiteral("FilesChooser"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    return chosenIn(dialog);
}

QString chooseSaveFile(QWidget* owner, const SaveChooser& chooser)
{
    if (const auto answer = Answerers<SaveChooser, QString>::newest())
        return answer(chooser);
    auto* const dialog = dialogAt(chooser.start, owner, chooser.title);
    dialog->setObjectName(QStringLiteral("SaveChooser"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite, !chooser.asksBeforeReplacing);
    dialog->setNameFilters(nameFilters(chooser.filters));
    dialog->setDefaultSuffix(chooser.extension);
    if (!chooser.name.isEmpty())
        dialog->selectFile(chooser.name);
    return chosenIn(dialog).value(0);
}

} // namespace quorvia::platform
