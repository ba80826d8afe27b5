#include "viewer/ViewerBench.h"

#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "system/UpdateCheck.h"
#include "viewer/LoadStep.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>

namespace quorvia::test {

ViewerBench::ViewerBench(std::shared_ptr<engine::ImageLoader> loader)
    : m_answerer([this](const platform::MessageBox& box) {
          boxes.push_back(box);
          return platform::BoxAnswer::Ok;
      }),
      m_loader(std::move(loader))
{
    app::openSettings();
    system::isFirstStartOfVersion();    // the next is not, so that nothing runs by itself amid a test
    QDir().mkpath(in("root/Playlist")); // as the start of the program leaves it
}

ViewerBench::~ViewerBench()
{
    close();
    app::closeSettings();
}

QString ViewerBench::picture(const QString& name, const QColor& color, QSize size)
{
    const QString path = home.path(name);
    QDir().mkpath(QFileInfo(path).path());
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    const engine::Codec* codec = engine::encoderFor(QFileInfo(path).suffix());
    Q_ASSERT(codec);
    const auto bytes = codec->encode(image, QFileInfo(path).suffix(), {});
    Q_ASSERT(bytes);
    return home.write(name, *bytes);
}

void ViewerBench::threePictures()
{
    picture(QStringLiteral("pics/a.png"), Qt::red);
    picture(QStringLiteral("pics/b.png"), Qt::green);
    picture(QStringLiteral("pics/two words.png"), Qt::blue);
}

QString ViewerBench::document(const QString& name, const std::vector<QColor>& pages)
{
    const QString path = home.path(name);
    QDir().mkpath(QFileInfo(path).path());
    QStringList arguments = {QStringLiteral("-size"), QStringLiteral("40x30")};
    for (const QColor& page : pages)
        arguments.append(QStringLiteral("xc:") + page.name());
    arguments.append(path);
    const int status = QProcess::execute(QStringLiteral("convert"), arguments);
    Q_ASSERT(status == 0);
    Q_UNUSED(status);
    return path;
}

viewer::frmImageView& ViewerBench::make(const QStringList& arguments)
{
    close();
    const app::CommandLine line = app::parseCommandLine(arguments, home.path(QString()));
    m_window = std::make_unique<viewer::frmImageView>(m_loader, line);
    return *m_window;
}

viewer::frmImageView& ViewerBench::load(const QStringList& arguments)
{
    viewer::frmImageView& window = make(arguments);
    wentOn = viewer::runLoadStep(window, false);
    return window;
}

void ViewerBench::close()
{
    if (m_window)
        m_window->close();
    m_window.reset();
}

QStringList ViewerBench::logTexts() const
{
    QFile file(app::logPath());
    QStringList texts;
    if (file.open(QIODevice::ReadOnly)) {
        constexpr int stampLength = 21; // "mm-dd-yyyy - hh:mm:ss"
        const QStringList lines =
            QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& line : lines)
            texts.append(line.mid(stampLength));
    }
    return texts;
}

QColor ViewerBench::middle() const
{
    const QImage shot = m_window->pContain()->grab().toImage();
    return shot.pixelColor(shot.rect().center());
}

} // namespace quorvia::test
