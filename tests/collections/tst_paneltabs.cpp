// The two tabs of the list's panel, and how they change places.
#include "collections/PanelTab.h"
#include "collections/PanelTabs.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::collections;

class TestPanelTabs : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<PanelTabs> m_tabs;

    QString front() const { return label("ltab1"); }
    QString behind() const { return label("ltab2"); }
    QString label(const char* name) const { return m_tabs->findChild<QLabel*>(QLatin1String(name))->text(); }
    QTimer& tAni() const { return *m_tabs->findChild<QTimer*>(QStringLiteral("tAni")); }
    /// Lets the timer's ticks come by hand.
    void tick() const
    {
        QTimerEvent event(tAni().timerId());
        QCoreApplication::sendEvent(&tAni(), &event);
    }
    QImage icon(const char* name) const
    {
        return m_tabs->findChild<QLabel*>(QLatin1String(name))->pixmap().toImage();
    }

    void show(int face = 0)
    {
        m_tabs = std::make_unique<PanelTabs>(face, nullptr);
        m_tabs->resize(260, 20);
        m_tabs->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_tabs.get()));
    }

  private Q_SLOTS:
    void cleanup() { m_tabs.reset(); }

    void beginsWithAFace()
    {
        show(0);
        QCOMPARE(front(), QStringLiteral("Folders"));
        QCOMPARE(behind(), QStringLiteral("Playlist"));
        show(1);
        QCOMPARE(front(), QStringLiteral("Playlist"));
        QCOMPARE(behind(), QStringLiteral("Folders"));
        QVERIFY(!icon("i1").isNull());
        QVERIFY(icon("i1") != icon("i2"));
        QCOMPARE(m_tabs->tab1()->geometry(), QRect(1, 0, 100, 20)); // 20 and 1500 twips
        QCOMPARE(m_tabs->tab2()->geometry(), QRect(101, 0, 100, 20));
    }

    void readersAreToldOfTabs()
    {
        show(0);
        const QString press = QAccessibleActionInterface::pressAction();
        for (QWidget* const tab :
             {static_cast<QWidget*>(m_tabs->tab1()), static_cast<QWidget*>(m_tabs->tab2())}) {
            QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(tab);
            const bool isInFront = tab == m_tabs->tab1();
            QCOMPARE(access->role(), QAccessible::PageTab);
            QCOMPARE(access->childCount(), 0); // its icon and caption are a matter of drawing
            QVERIFY(access->state().selectable);
            QCOMPARE(bool(access->state().selected), isInFront);
            QCOMPARE(access->actionInterface()->actionNames().contains(press), !isInFront);
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(m_tabs->tab1())->text(QAccessible::Name),
                 QStringLiteral("Folders"));
    }

    void theTabBehindIsAskedForByMouseAndKeys()
    {
        show();
        QSignalSpy wanted(m_tabs.get(), &PanelTabs::faceWanted);
        QTest::mouseClick(m_tabs->tab1(), Qt::LeftButton);
        QCOMPARE(wanted.count(), 0);
        QTest::mouseClick(m_tabs->tab2(), Qt::LeftButton);
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(wanted.at(0).at(0).toInt(), 1);
        for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
            QTest::keyClick(m_tabs->tab2(), Qt::Key(key));
        QCOMPARE(wanted.count(), 4);
        QCOMPARE(front(), QStringLiteral("Folders")); // the list decides
        QCOMPARE(m_tabs->tab1()->focusPolicy(), Qt::NoFocus);
        QCOMPARE(m_tabs->tab2()->focusPolicy(), Qt::TabFocus);
        QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(m_tabs->tab2());
        QCOMPARE(face->text(QAccessible::Name), QStringLiteral("Playlist"));
        QCOMPARE(face->role(), QAccessible::PageTab);
    }

    void changesAtOnceWhenItIsNotAnimated()
    {
        show();
        m_tabs->showFace(1, false);
        QCOMPARE(front(), QStringLiteral("Playlist"));
        QVERIFY(!tAni().isActive());
        QCOMPARE(m_tabs->tab2()->x(), 101);
    }

    void theTabsPassBelowEachOther()
    {
        show();
        const QImage folders = icon("i1");
        QCOMPARE(tAni().interval(), 1);
        m_tabs->showFace(1, true);
        QVERIFY(tAni().isActive());
        tAni().setInterval(100000);
        QCOMPARE(front(), QStringLiteral("Folders"));
        QCOMPARE(m_tabs->tab2()->x(), 101);
        for (int i = 0; i < 37; ++i)
            tick();
        QCOMPARE(m_tabs->tab2()->x(), 40 / 15);
        QCOMPARE(front(), QStringLiteral("Folders"));
        tick();
        QCOMPARE(m_tabs->tab2()->x(), 0);
        QCOMPARE(front(), QStringLiteral("Playlist"));
        QCOMPARE(behind(), QStringLiteral("Folders"));
        QCOMPARE(icon("i2"), folders);
        QCOMPARE(m_tabs->tab1()->accessibleName(), QStringLiteral("Playlist"));
        for (int i = 0; i < 36; ++i)
            tick();
        QCOMPARE(m_tabs->tab2()->x(), 36 * 40 / 15);
        QVERIFY(tAni().isActive());
        tick();
        QVERIFY(!tAni().isActive());
        QCOMPARE(m_tabs->tab2()->x(), 101);
    }

    void theTimerDrivesIt()
    {
        show();
        m_tabs->showFace(1, true);
        QTRY_VERIFY(!tAni().isActive());
        QCOMPARE(front(), QStringLiteral("Playlist"));
        QCOMPARE(m_tabs->tab2()->x(), 101);
    }

    void aClickOnTheWayInKeepsWhatWasAskedFor()
    {
        show();
        QSignalSpy wanted(m_tabs.get(), &PanelTabs::faceWanted);
        m_tabs->showFace(1, true);
        tAni().setInterval(100000);
        for (int i = 0; i < 10; ++i)
            tick();
        QTest::mouseClick(m_tabs->tab2(), Qt::LeftButton, {}, {m_tabs->tab2()->width() - 3, 10});
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(wanted.at(0).at(0).toInt(), 1); // which it shows still
        QCOMPARE(m_tabs->tab2()->x(), (1520 - 400) / 15);
        for (int i = 0; i < 28; ++i)
            tick();
        QCOMPARE(front(), QStringLiteral("Playlist"));
    }

    void aClickOnTheWayOutGoesBackFromThere()
    {
        show();
        QSignalSpy wanted(m_tabs.get(), &PanelTabs::faceWanted);
        connect(m_tabs.get(), &PanelTabs::faceWanted, m_tabs.get(),
                [this](int face) { m_tabs->showFace(face, true); });
        m_tabs->showFace(1, true);
        tAni().setInterval(100000);
        for (int i = 0; i < 38 + 20; ++i)
            tick();
        QCOMPARE(m_tabs->tab2()->x(), 20 * 40 / 15);
        QTest::mouseClick(m_tabs->tab2(), Qt::LeftButton, {}, {m_tabs->tab2()->width() - 3, 10});
        QCOMPARE(wanted.at(0).at(0).toInt(), 0);
        QVERIFY(tAni().isActive());
        tAni().setInterval(100000);
        QCOMPARE(m_tabs->tab2()->x(), 20 * 40 / 15);
        for (int i = 0; i < 19; ++i)
            tick();
        QCOMPARE(front(), QStringLiteral("Playlist"));
        tick();
        QCOMPARE(front(), QStringLiteral("Folders"));
        for (int i = 0; i < 37; ++i)
            tick();
        QVERIFY(!tAni().isActive());
        QCOMPARE(m_tabs->tab2()->x(), 101);
    }

    void offTheScreenItJustStops()
    {
        show();
        m_tabs->showFace(1, true);
        tAni().setInterval(100000);
        m_tabs->hide();
        tick();
        QVERIFY(!tAni().isActive());
        QCOMPARE(front(), QStringLiteral("Playlist")); // and shows what is so
        m_tabs->showFace(0, true);
        QVERIFY(!tAni().isActive());
        QCOMPARE(front(), QStringLiteral("Folders"));
        QCOMPARE(m_tabs->tab2()->x(), 101);
    }

    void resizedOnTheWay()
    {
        show();
        m_tabs->showFace(1, true);
        m_tabs->resize(120, 20); // tabs of 58 pixels
        QTRY_VERIFY(!tAni().isActive());
        QCOMPARE(m_tabs->tab2()->x(), m_tabs->tab1()->geometry().right() + 1);
        QVERIFY(m_tabs->tab2()->geometry().right() < 120);
        QVERIFY(front() != QStringLiteral("Playlist")); // shortened
        QCOMPARE(m_tabs->tab1()->caption(), QStringLiteral("Playlist"));
    }

    void theTabBehindCanBeHidden()
    {
        show();
        m_tabs->setTab2Visible(false);
        QVERIFY(m_tabs->tab2()->isHidden());
        m_tabs->setTab2Visible(true);
        QVERIFY(m_tabs->tab2()->isVisible());
    }
};

QTEST_MAIN(TestPanelTabs)
#include "tst_paneltabs.moc"
