#include "viewer/FilmstripHost.h"

#include "collections/Filmstrip.h"
#include "collections/PictureList.h"
#include "collections/StripLayout.h"
#include "collections/ThumbnailCache.h"
#include "platform/FileStatus.h"

#include <QEvent>
#include <QWidget>

namespace quorvia::viewer {

namespace {

constexpr int rightButton = 2;

} // namespace

FilmstripHost::FilmstripHost(Parts parts)
    : QObject(parts.pFilm), m_parts(std::move(parts)), m_Filmstrip1(new collections::Filmstrip(m_parts.pFilm))
{
    m_Filmstrip1->setObjectName(QStringLiteral("Filmstrip1"));
    m_Filmstrip1->setGeometry(m_parts.pFilm->rect());
    m_parts.pFilm->installEventFilter(this);
    connect(m_Filmstrip1, &collections::Filmstrip::ImageClicked, this, &FilmstripHost::clicked);
}

/// True when the strip can be seen. Else it stands still from now on.
bool FilmstripHost::noteSight()
{
    const bool isShown = m_parts.isShown();
    m_Filmstrip1->SetPaused(!isShown);
    return isShown;
}

void FilmstripHost::showList()
{
    const QStringList& files = m_parts.list->files();
    if (!noteSight() || (!m_outdated && collections::listKey(files) == m_Filmstrip1->GetUniKey()))
        return;
    m_outdated = false;
    m_Filmstrip1->Clear();
    for (const QString& file : files)
        m_Filmstrip1->add(file);
    m_Filmstrip1->DrawStrip();
    showCurrent();
}

void FilmstripHost::refreshEntry(const QString& file)
{
    // A thumbnail is known by the second: one of the former content may bear the name of the new one.
    if (const QString thumbnail = collections::thumbnailFor(file);
        platform::isFile(file) && collections::hasThumbnail(thumbnail))
        collections::deleteThumbnails({thumbnail});
    const QStringList& images = m_Filmstrip1->Images();
    if (!images.contains(file))
        return;
    const bool isMarked = images.count(file) == 1 &&
                          m_Filmstrip1->SelectedImages() == QString::number(images.indexOf(file)) + u';';
    if (noteSight() && isMarked && file == m_parts.currentFile())
        return; // the strip reads what is marked anew, now or when the mark goes
    m_outdated = true;
    showList();
}

void FilmstripHost::showCurrent()
{
    if (!noteSight())
        return;
    const int position = currentPosition();
    m_Filmstrip1->SetSelectedImages(position < 0 ? QString() : QString::number(position));
    m_Filmstrip1->SetVisibleImage(m_parts.currentFile());
}

void FilmstripHost::setRows(int rows)
{
    noteSight();
    m_Filmstrip1->SetNumberOfRows(rows);
    showCurrent();
}

/// Where the current image stands in the strip; -1 when it is not there. The list's own entry goes before
/// another one of the same file.
int FilmstripHost::currentPosition() const
{
    const QString file = m_parts.currentFile();
    if (file.isEmpty())
        return -1;
    const int index = m_parts.list->ListIndex();
    const QStringList& images = m_Filmstrip1->Images();
    return images.value(index) == file ? index : int(images.indexOf(file));
}

void FilmstripHost::clicked(int index, int button)
{
    if (button == rightButton)
        m_parts.openMenu(m_Filmstrip1->Images().value(index));
    else if (index == m_parts.list->ListIndex())
        m_parts.list->pick(index); // which may not be on show
    else
        m_parts.list->SetListIndex(index);
}

bool FilmstripHost::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        m_Filmstrip1->setGeometry(m_parts.pFilm->rect());
    return false;
}

} // namespace quorvia::viewer
