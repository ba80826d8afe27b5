#include "viewer/ImageTab.h"

#include "app/mFile.h"
#include "controls/gnTab.h"
#include "engine/ImageEngine.h"

#include <QEvent>
#include <QWidget>

namespace quorvia::viewer {

namespace {

constexpr char imageKey[] = "Image";

} // namespace

QString tabCaption(const QString& name)
{
    constexpr int longest = 20;
    constexpr int kept = 15;
    if (name.isEmpty())
        return QStringLiteral("Unknown");
    if (name.size() <= longest)
        return name;
    return name.left(kept) + QStringLiteral("...") + name.section(QLatin1Char('.'), -1);
}

QString tabTip(QSize pixels, int colors, const QString& fileSize)
{
    return QStringLiteral("%1x%2, %3 Colors [%4]")
        .arg(QString::number(pixels.width()), QString::number(pixels.height()), QString::number(colors),
             fileSize);
}

ImageTab::ImageTab(controls::gnTab* gTab, engine::ImageEngine* ix1) : QObject(gTab), m_gTab(gTab), m_ix1(ix1)
{
    for (QWidget* const part : gTab->findChildren<QWidget*>())
        part->installEventFilter(this);
}

void ImageTab::update()
{
    m_gTab->SetTabCaption(QLatin1String(imageKey), tabCaption(app::SplitPathName(m_ix1->FileName(), 2)));
    m_gTab->SetTabToolTip(QLatin1String(imageKey), QString());
}

bool ImageTab::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::ToolTip && m_ix1->ImagePixelWidth() > 0)
        m_gTab->SetTabToolTip(QLatin1String(imageKey),
                              tabTip(QSize(m_ix1->ImagePixelWidth(), m_ix1->ImagePixelHeight()),
                                     m_ix1->UniqueColors(), app::FormatFileSize(m_ix1->FileName(), 1, true)));
    return false;
}

} // namespace quorvia::viewer
