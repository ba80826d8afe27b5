// A tab strip on the bench: the main window's tabs in a window on screen, and its picture.
#pragma once

#include "controls/gnTab.h"

#include <QAbstractButton>
#include <QFont>
#include <QImage>
#include <QTest>
#include <QTimer>

namespace quorvia::test {

inline constexpr quint32 blue = 0xBF7900;
inline constexpr quint32 white = 0xFFFFFF;
inline const QColor blueColor(0, 121, 191);

inline QFont plainFont()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    return font;
}

/// A strip with the main window's tabs on screen, the pointer far away from it.
class TabBench
{
  public:
    explicit TabBench(int width = 500, int height = 29)
    {
        QCursor::setPos(0, 0);
        // All that is moved to lies on the screen, at a device pixel ratio of 2 too.
        window.setGeometry(0, 0, width + 100, 300);
        tab.move(0, 50);
        tab.SetFont(plainFont());
        tab.resize(width, height);
        for (const char* const key : {"Image", "Information", "Filmstrip"}) {
            const QString text = QString::fromLatin1(key);
            if (!tab.AddTab(text + QStringLiteral(" pane"), text, QStringLiteral("About ") + text))
                qFatal("a tab was refused");
        }
        window.show();
        if (!QTest::qWaitForWindowExposed(&window))
            qFatal("no window");
    }

    QWidget* surface() const { return tab.findChild<QWidget*>(QStringLiteral("pbTabs")); }
    QAbstractButton* button(int index) const
    {
        return tab.findChild<QAbstractButton*>(QStringLiteral("cmdScroll%1").arg(index));
    }
    QTimer* timer() const { return tab.findChild<QTimer*>(QStringLiteral("tmrMouseOut")); }
    QPoint middleOf(int index) const
    {
        const controls::TabRecord& record = tab.tabs().at(index);
        return {record.Left + record.Width / 2, surface()->height() / 2};
    }
    void moveTo(QPoint position) const { QTest::mouseMove(surface(), position); }
    void click(QPoint position, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(surface(), button, {}, position);
    }
    /// The strip as it is painted, in logical pixels whatever the screen's ratio.
    QImage painted() const
    {
        QImage image(tab.size(), QImage::Format_RGB32);
        image.fill(Qt::magenta);
        const_cast<controls::gnTab&>(tab).render(&image);
        return image;
    }

    QWidget window;
    controls::gnTab tab{&window};
};

inline QColor at(const QImage& image, int x, int y)
{
    return image.pixelColor(x, y);
}

} // namespace quorvia::test
