// What the tests of the conversion preview share: a home with pictures and a trash of its own, the window,
// and what it left behind.
#pragma once

#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "engine/ImageEngine.h"
#include "output/frmImageConvert.h"
#include "platform/Dialogs.h"
#include "support/FileContent.h"
#include "support/ScratchHome.h"

#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace quorvia::test {

/// A picture in which JPEG leaves its marks; `shade` tells one from another.
inline QImage noise(QSize size, int shade)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(shade, (x * 7919 + y * 104729 + x * y) % 256, (x + y) % 256));
    }
    return image;
}

/// One home for a test program: the desktop looks for the trash once a process.
class ConvertBench
{
  public:
    ConvertBench() : m_home(home())
    {
        for (const char* folder : {".local", "pictures", "root", ".config", "machine"})
            QDir(m_home.path(QLatin1String(folder))).removeRecursively();
        QDir().mkpath(m_home.path(QStringLiteral("pictures")));
        app::openSettings();
        window = std::make_unique<output::frmImageConvert>(loader);
    }
    ~ConvertBench()
    {
        window.reset();
        app::closeSettings();
    }
    ConvertBench(const ConvertBench&) = delete;
    ConvertBench& operator=(const ConvertBench&) = delete;

    static const ScratchHome& home()
    {
        static const ScratchHome one;
        return one;
    }

    QString file(const QString& name) const { return m_home.path(QStringLiteral("pictures/")) + name; }
    QString picture(const QString& name, const QImage& image = noise(QSize(61, 47), 90)) const
    {
        const QString path = file(name);
        const bool saved = image.save(path);
        Q_ASSERT(saved);
        Q_UNUSED(saved);
        return path;
    }
    QString bytes(const QString& name, const QByteArray& content) const
    {
        return m_home.write(QStringLiteral("pictures/") + name, content);
    }
    QStringList pictures() const { return QDir(file({})).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }
    QStringList trash() const
    {
        return QDir(m_home.path(QStringLiteral(".local/share/Trash/files"))).entryList(QDir::Files);
    }
    QByteArray inTrash(const QString& name) const
    {
        return contentOf(m_home.path(QStringLiteral(".local/share/Trash/files/")) + name);
    }
    QString scratchFolder() const { return m_home.path(QStringLiteral("root/Conversion")); }
    QStringList scratchFiles() const
    {
        return QDir(scratchFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    QString log() const
    {
        return QString::fromUtf8(contentOf(m_home.path(QStringLiteral(".local/state/quorvia/qolog.log"))));
    }

    template <class Kind>
    Kind* part(const char* name) const
    {
        return window->findChild<Kind*>(QLatin1String(name));
    }
    QPushButton* button(const char* name) const { return part<QPushButton>(name); }
    engine::ImageEngine* image(const char* name) const { return part<engine::ImageEngine>(name); }
    void deleteOriginal(bool wanted) const { part<QCheckBox>("chkDelete")->setChecked(wanted); }

    /// Runs the conversion; when the window asks, `act` does what the user does.
    QString convert(const QString& source, const QString& target, std::function<void()> act)
    {
        asked = false;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, &watch, [this, &watch, &act] {
            if (!window->isVisible() || !window->isModal())
                return;
            watch.stop();
            asked = true;
            act();
            if (QTest::currentTestFailed() && window && window->isVisible())
                window->reject();
        });
        watch.start(0);
        return window->LoadConversion(source, target, false);
    }
    /// The same with a click on the button of that name.
    QString convert(const QString& source, const QString& target, const char* name = "cmdYes")
    {
        return convert(source, target, [this, name] { button(name)->click(); });
    }
    QString convertAlone(const QString& source, const QString& target)
    {
        return window->LoadConversion(source, target, true);
    }

    const ScratchHome& m_home;
    const std::shared_ptr<engine::ImageLoader> loader = std::make_shared<engine::ImageLoader>();
    std::unique_ptr<output::frmImageConvert> window;
    bool asked = false;
    platform::BoxAnswer overwrite = platform::BoxAnswer::Yes;
    std::function<void()> whileAsked = [] {};
    QList<platform::MessageBox> boxes;
    platform::MessageBoxAnswerer answerer{[this](const platform::MessageBox& box) {
        boxes.append(box);
        whileAsked();
        return overwrite;
    }};
};

} // namespace quorvia::test
