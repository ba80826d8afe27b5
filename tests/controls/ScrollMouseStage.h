// A scroll bar that is driven by the mouse.
#pragma once

#include "controls/ScrollBar.h"

#include <QTest>
#include <QTimer>

#include <memory>

namespace quorvia::test {

inline constexpr int barLength = 370; // pixels: 5550 twips, with a track of 5010

/// Drives a bar through the window that it stands in. Positions are along the bar, in pixels.
class ScrollMouseStage
{
  protected:
    void setUp()
    {
        m_window = std::make_unique<QWidget>();
        m_window->resize(400, 400);
        m_bar = new controls::ScrollBar(m_window.get());
    }

    void tearDown()
    {
        if (m_window->windowHandle())
            release(0);
        m_window.reset();
    }

    void make(int alight, int maximum, int length = barLength)
    {
        m_bar->SetAlight(alight);
        m_bar->move(10, 20);
        m_bar->resize(alight == 1 ? QSize(18, length) : QSize(length, 18));
        m_bar->SetMax(maximum);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::mouseMove(m_window->windowHandle(), QPoint(395, 395));
    }

    QPoint at(int along) const
    {
        return QPoint(10, 20) + (m_bar->Vertical() ? QPoint(9, along) : QPoint(along, 9));
    }

    void press(int along, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(m_window->windowHandle(), button, {}, at(along));
    }

    void release(int along, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(m_window->windowHandle(), button, {}, at(along));
    }

    void moveTo(int along) { QTest::mouseMove(m_window->windowHandle(), at(along)); }

    void send(QEvent::Type type, int along, Qt::MouseButtons buttons)
    {
        const QPointF position = at(along) - QPoint(10, 20);
        QMouseEvent event(type, position, m_bar->mapToGlobal(position), Qt::NoButton, buttons, {});
        QCoreApplication::sendEvent(m_bar, &event);
    }

    QTimer* tMove() const { return m_bar->findChild<QTimer*>(QStringLiteral("tMove")); }

    int thumbStart() const
    {
        const auto* const pSelecter = m_bar->findChild<QWidget*>(QStringLiteral("pSelecter"));
        return m_bar->Vertical() ? pSelecter->y() : pSelecter->x();
    }

    QImage shown() const { return m_bar->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    std::unique_ptr<QWidget> m_window;
    controls::ScrollBar* m_bar = nullptr;
};

} // namespace quorvia::test
