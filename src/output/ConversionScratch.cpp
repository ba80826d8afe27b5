#include "output/ConversionScratch.h"

#include "app/mFile.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvia::output {

namespace {

constexpr char ownFolder[] = "other-"; // and some letters: of a program that did not get the folder

/// The descriptor that holds `folder` against others; -1 when somebody else has it.
int lockFolder(const QString& folder)
{
    const int opened = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0 || ::flock(opened, LOCK_EX | LOCK_NB) == 0)
        return opened;
    ::close(opened);
    return -1;
}

/// What programs that ended early have left. Only for who holds the folder.
void clearLeftovers(const QString& folder)
{
    QDir directory(folder);
    for (const QString& name : directory.entryList({QStringLiteral("tempimage.*")}, QDir::Files))
        directory.remove(name);
    for (const QString& name : directory.entryList({QStringLiteral("other-*")}, QDir::Dirs)) {
        if (const int lock = lockFolder(directory.filePath(name)); lock >= 0) {
            QDir(directory.filePath(name)).removeRecursively();
            ::close(lock);
        }
    }
}

} // namespace

ConversionScratch::ConversionScratch(const QString& folder) : m_folder(app::AddBackslash(folder))
{
    constexpr mode_t ownerOnly = S_IRWXU;
    const QByteArray name = QFile::encodeName(m_folder);
    app::MakePath(m_folder);
    ::chmod(name.constData(), ownerOnly);
    m_lock = lockFolder(m_folder);
    if (m_lock >= 0)
        clearLeftovers(m_folder);
    else
        takeOwnFolder();
}

void ConversionScratch::takeOwnFolder()
{
    m_own = std::make_unique<QTemporaryDir>(m_folder + QLatin1String(ownFolder));
    if (m_own->isValid())
        m_lock = lockFolder(m_own->path());
}

ConversionScratch::~ConversionScratch()
{
    remove();
    if (m_lock >= 0)
        ::close(m_lock);
}

QString ConversionScratch::fileFor(const QString& extension)
{
    remove();
    const QString folder = m_own && m_own->isValid() ? app::AddBackslash(m_own->path()) : m_folder;
    m_file = folder + QStringLiteral("tempimage.") + extension;
    return m_file;
}

void ConversionScratch::remove()
{
    if (!m_file.isEmpty())
        QFile::remove(m_file);
    m_file.clear();
}

} // namespace quorvia::output
