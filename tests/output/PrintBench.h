// The print window on the bench: a red picture, a printer that writes down what it gets, and its controls by
// name.
#pragma once

#include "app/Paths.h"
#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "output/frmImagePrint.h"
#include "platform/Dialogs.h"
#include "platform/NextDialog.h"
#include "support/FakePrinter.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <functional>
#include <memory>

namespace quorvia::test {

inline constexpr QRgb red = 0xffff0000;
inline constexpr QRgb white = 0xffffffff;

inline QImage redPicture()
{
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

/// The window for a picture of 400 x 300 pixels of the screen.
class PrintBench
{
  public:
    explicit PrintBench(QWidget* owner = nullptr)
        : window(new output::frmImagePrint(
              printer, {redPicture(), {6000, 4500}, QStringLiteral("/home/a/dune.jpg")}, owner)),
          alive(window)
    {
    }
    ~PrintBench() { delete alive.data(); }
    Q_DISABLE_COPY_MOVE(PrintBench)

    template <class Kind = QWidget>
    Kind& part(const char* name) const
    {
        auto* const found = window->findChild<Kind*>(QLatin1String(name));
        Q_ASSERT(found);
        return *found;
    }
    QLineEdit& box(const char* name) const { return part<QLineEdit>(name); }
    controls::ScrollBar& bar(const char* name) const { return part<controls::ScrollBar>(name); }
    QRadioButton& area(int line) const
    {
        return part<QRadioButton>(qPrintable(QStringLiteral("oA%1").arg(line)));
    }
    QPushButton& button(const char* name) const { return part<QPushButton>(name); }
    /// What the boxes hold, their numbers as on a screen of 15 twips a pixel.
    QString boxes() const
    {
        QStringList texts;
        for (const char* name : {"txtLeft", "txtTop", "txtWidth", "txtHeight"}) {
            bool isNumber = false;
            const double number = box(name).text().toDouble(&isNumber) / window->devicePixelRatioF();
            texts << (isNumber ? QString::number(number) : box(name).text());
        }
        return texts.join(u' ');
    }
    /// What the window says of a page of `width` x `height` twips.
    QString pageSaid(int width, int height) const
    {
        const double pixels = window->devicePixelRatioF() / app::twipsPerPixel;
        return QStringLiteral("Page Dimensions: %1x%2")
            .arg(qRound(width * pixels))
            .arg(qRound(height * pixels));
    }
    quint64 composed() const { return window->page().number(); }
    QString device() const { return part<QLabel>("lPrinter").text(); }
    /// Moves the mouse over the preview with the button down, in twips of it.
    void drag(QPoint from, QPoint to) const
    {
        QWidget& preview = part("pPreview");
        QTest::mousePress(&preview, Qt::LeftButton, {}, from / app::twipsPerPixel);
        QTest::mouseMove(&preview, to / app::twipsPerPixel);
        QTest::mouseRelease(&preview, Qt::LeftButton, {}, to / app::twipsPerPixel);
    }

    /// Shows the window, lets `act` use it and closes it. True when it was shown.
    bool show(const std::function<void()>& act) const
    {
        NextDialog<output::frmImagePrint> next([&](output::frmImagePrint& shown) {
            shown.activateWindow();
            if (QTest::qWaitForWindowActive(&shown))
                act();
            if (output::frmImagePrint* const open = alive.data(); open && open->isVisible())
                open->reject();
        });
        window->ShowX();
        return next.seen();
    }

    std::shared_ptr<FakePrinter> printer = std::make_shared<FakePrinter>();
    output::frmImagePrint* window;
    QPointer<output::frmImagePrint> alive; ///< null once the owner has taken it along
};

inline QString logText()
{
    QFile file(app::logPath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Types into `box` as a user who has selected all of it.
inline void type(QLineEdit& box, const QString& text)
{
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, text);
}

} // namespace quorvia::test
