// The control as a widget: clipboard, pointers, focus.
#include "EngineStage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

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
        m_engine->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_engine.get()));
        QTest::mousePress(m_engine->windowHandle(), Qt::LeftButton);
        m_engine->SetMousePointer(25);
        QCOMPARE(m_engine->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mouseRelease(m_engine->windowHandle(), Qt::LeftButton);
    }

    void neutralAndOpaque()
    {
        QCOMPARE(m_engine->focusPolicy(), Qt::NoFocus);
        QVERIFY(m_engine->testAttribute(Qt::WA_OpaquePaintEvent));
    }
};

QTEST_MAIN(tst_EngineWidget)
#include "tst_enginewidget.moc"
