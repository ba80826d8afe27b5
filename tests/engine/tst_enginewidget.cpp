// The control as a widget: clipboard, pointers, focus.
#include "EngineStage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// Notes the presses and releases that come by, and lets them pass.
class MouseEvents : public QObject
{
  public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease)
            seen.append(event->type());
        return false;
    }

    QList<QEvent::Type> seen;
};

} // namespace

class tst_EngineWidget : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void copiesToTheClipboard()
    {
        m_engine->SetFileName(small);
        m_engine->CopyToClipboard();
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), graded(60, 30));
    }

    void pointers_data()
    {
        QTest::addColumn<int>("pointer");
        QTest::addColumn<Qt::CursorShape>("shape");
        QTest::newRow("default") << 0 << Qt::ArrowCursor;
        QTest::newRow("pan") << 25 << Qt::OpenHandCursor;
        QTest::newRow("selection") << 30 << Qt::CrossCursor;
        QTest::newRow("other") << 7 << Qt::ArrowCursor;
    }

    void pointers()
    {
        QFETCH(int, pointer);
        QFETCH(Qt::CursorShape, shape);
        m_engine->SetMousePointer(30);
        m_engine->SetMousePointer(pointer);
        QCOMPARE(m_engine->MousePointer(), pointer);
        QCOMPARE(m_engine->cursor().shape(), shape);
    }

    void aHandThatHoldsIsClosed()
    {
        showEngine();
        QWindow* window = m_engine->windowHandle();
        m_engine->SetMousePointer(25);
        QCOMPARE(m_engine->cursor().shape(), Qt::OpenHandCursor);
        QTest::mousePress(window, Qt::LeftButton);
        QCOMPARE(m_engine->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mousePress(window, Qt::RightButton);
        QTest::mouseRelease(window, Qt::RightButton);
        QCOMPARE(m_engine->cursor().shape(), Qt::ClosedHandCursor); // one button is still down
        QTest::mouseRelease(window, Qt::LeftButton);
        QCOMPARE(m_engine->cursor().shape(), Qt::OpenHandCursor);
    }

    void aHandIsClosedThatComesWhileAButtonIsDown()
    {
        showEngine();
        QTest::mousePress(m_engine->windowHandle(), Qt::LeftButton);
        m_engine->SetMousePointer(25);
        QCOMPARE(m_engine->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mouseRelease(m_engine->windowHandle(), Qt::LeftButton);
        QCOMPARE(m_engine->cursor().shape(), Qt::OpenHandCursor);
    }

    void otherPointersKnowNoButtons()
    {
        showEngine();
        m_engine->SetMousePointer(30);
        QTest::mousePress(m_engine->windowHandle(), Qt::LeftButton);
        QCOMPARE(m_engine->cursor().shape(), Qt::CrossCursor);
        QTest::mouseRelease(m_engine->windowHandle(), Qt::LeftButton);
        QCOMPARE(m_engine->cursor().shape(), Qt::CrossCursor);
    }

    /// Whatever the pointer, its owner sees them first and gets them after.
    void mouseEventsAreItsOwners()
    {
        QWidget owner;
        m_engine->setParent(&owner);
        m_engine->SetMousePointer(25);
        MouseEvents onEngine;
        MouseEvents onOwner;
        m_engine->installEventFilter(&onEngine);
        owner.installEventFilter(&onOwner);
        owner.resize(m_engine->size());
        owner.show();
        QVERIFY(QTest::qWaitForWindowExposed(&owner));
        QTest::mouseClick(owner.windowHandle(), Qt::LeftButton, {}, QPoint(20, 20));
        const QList<QEvent::Type> both = {QEvent::MouseButtonPress, QEvent::MouseButtonRelease};
        QCOMPARE(onEngine.seen, both);
        QCOMPARE(onOwner.seen, both);
        m_engine->setParent(nullptr);
    }

    void neutralAndOpaque()
    {
        QCOMPARE(m_engine->focusPolicy(), Qt::NoFocus);
        QVERIFY(m_engine->testAttribute(Qt::WA_OpaquePaintEvent));
    }

  private:
    void showEngine()
    {
        m_engine->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_engine.get()));
    }
};

QTEST_MAIN(tst_EngineWidget)
#include "tst_enginewidget.moc"
