#include "FileAnswers.h"

#include <QDialog>
#include <QDir>
#include <QPointer>

#include <array>
#include <utility>

namespace quorvia::test {

FileAnswers::FileAnswers(std::function<StepRandom()> random, std::function<QWidget*()> owner, QString folder)
    : m_random(std::move(random)), m_owner(std::move(owner)), m_folder(std::move(folder)),
      m_file([this](const platform::FileChooser&) {
          StepRandom numbers = m_random();
          return isCancelled(numbers) ? QString() : existing(numbers);
      }),
      m_files([this](const platform::FileChooser&) {
          StepRandom numbers = m_random();
          return isCancelled(numbers) ? QStringList() : several(numbers);
      }),
      m_folders([this](const platform::FolderBrowser&) {
          StepRandom numbers = m_random();
          return isCancelled(numbers) ? QString() : this->folder(numbers);
      }),
      m_save([this](const platform::SaveChooser&) {
          StepRandom numbers = m_random();
          return isCancelled(numbers) ? QString() : target(numbers);
      })
{
}

/// Waits in a modal window first, every other time. The window's end is no choice in a third of the cases.
bool FileAnswers::isCancelled(StepRandom& random) const
{
    if (random.oneIn(2)) {
        const QPointer<QDialog> standIn = new QDialog(m_owner());
        standIn->setObjectName(QStringLiteral("FileStandIn"));
        standIn->exec();
        if (standIn.isNull())
            return true;
        delete standIn.data();
    }
    return random.oneIn(3);
}

QString FileAnswers::existing(StepRandom& random) const
{
    const QStringList names = QDir(m_folder).entryList(QDir::Files, QDir::Name);
    return names.isEmpty() ? m_folder : m_folder + u'/' + random.oneOf(names);
}

QStringList FileAnswers::several(StepRandom& random) const
{
    QStringList paths;
    for (int left = random.below(6); left >= 0; --left)
        paths.append(existing(random));
    return paths;
}

QString FileAnswers::folder(StepRandom& random) const
{
    return random.oneIn(3) ? m_folder + QStringLiteral("/below") : m_folder;
}

QString FileAnswers::target(StepRandom& random) const
{
    static constexpr std::array endings{".bmp", ".jpg", ".png", ".gif", ".tif",
                                        ".pcx", ".tga", ".txt", "",     ".qol"};
    if (random.oneIn(3))
        return existing(random);
    return QStringLiteral("%1/saved-%2%3")
        .arg(m_folder)
        .arg(random.below(40))
        .arg(QLatin1String(random.oneOf(endings)));
}

} // namespace quorvia::test
