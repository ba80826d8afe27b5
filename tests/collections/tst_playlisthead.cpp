// The head of the playlist's face: the name, and the list of names that opens over it.
#include "collections/PlaylistHead.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QCursor>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::collections;

class TestPlaylistHead : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<QWidget> m_window;
    PlaylistHead* m_head = nullptr;

    QLabel& lPlaylistName() const { return *m_head->findChild<QLabel*>(QStringLiteral("lPlaylistName")); }
    QComboBox& cboPlaylist() const { return *m_head->findChild<QComboBox*>(QStringLiteral("cboPlaylist")); }
    QTimer& timer(const char* name) const { return *m_head->findChild<QTimer*>(QLatin1String(name)); }
    bool isOpen() const { return cboPlaylist().isVisible() && cboPlaylist().view()->isVisible(); }
    /// The pointer moves over the name, and then on to `dx`, `dy` from there without a further word of it.
    void hover(int dx, int dy)
    {
        const QPoint at = lPlaylistName().rect().center();
        const QPoint onScreen = lPlaylistName().mapToGlobal(at);
        QCursor::setPos(onScreen);
        QCoreApplication::processEvents();
        QMouseEvent move(QEvent::MouseMove, at, onScreen, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&lPlaylistName(), &move);
        QVERIFY(timer("tCombo").isActive());
        QCOMPARE(timer("tCombo").property("tag").toInt(), onScreen.y());
        lPlaylistName().removeEventFilter(m_head); // it hears of no further move
        QCursor::setPos(onScreen + QPoint(dx, dy));
        QCoreApplication::processEvents();
        QCOMPARE(QCursor::pos(), onScreen + QPoint(dx, dy));
    }

  private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_window->resize(260, 200);
        m_head = new PlaylistHead(m_window.get());
        m_head->setGeometry(0, 50, 260, m_head->sizeHint().height());
        m_head->setNames({"one", "two", "R&D"});
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void cleanup() { m_window.reset(); }

    void aReaderOpensTheList()
    {
        QAccessibleInterface* const box = QAccessible::queryAccessibleInterface(m_head->box());
        QVERIFY(box);
        QCOMPARE(box->role(), QAccessible::Button);
        m_head->setName("one");
        QCOMPARE(box->text(QAccessible::Name), QStringLiteral("Playlist: one"));
        QCOMPARE(box->childCount(), 0);
        QAccessibleActionInterface* const actions = box->actionInterface();
        QVERIFY(actions);
        QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
        actions->doAction(QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(isOpen());
        m_head->setNames({});
        QVERIFY(!actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    }

    void captions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        QTest::newRow("none") << ""
                              << "Open Playlist";
        QTest::newRow("short") << "Summer"
                               << "Playlist: Summer";
        QTest::newRow("29 characters")
            << QString(29, u'x') << QStringLiteral("Playlist: ") + QString(29, u'x');
        QTest::newRow("30 characters") << QString(30, u'x') << QString(30, u'x');
        QTest::newRow("as it is written") << "R&D <b>"
                                          << "Playlist: R&D <b>";
    }

    void captions()
    {
        QFETCH(QString, name);
        QTEST(playlistCaption(name), "caption");
        m_head->setName(name);
        QCOMPARE(m_head->name(), name);
        m_head->resize(900, m_head->height());
        QTEST(lPlaylistName().text(), "caption");
        QCOMPARE(lPlaylistName().property("tag").toString(), name);
    }

    void rests_data()
    {
        QTest::addColumn<int>("seen");
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("rests");
        QTest::newRow("the same") << 100 << 100 << true;
        QTest::newRow("10 below") << 100 << 110 << true;
        QTest::newRow("11 below") << 100 << 111 << false;
        QTest::newRow("10 above") << 100 << 90 << true;
        QTest::newRow("11 above") << 100 << 89 << false;
        QTest::newRow("on a screen above") << -100 << -111 << false;
    }

    void rests()
    {
        QFETCH(int, seen);
        QFETCH(int, y);
        QTEST(restsAt(seen, y), "rests");
    }

    void partsBearTheirNames()
    {
        for (const char* name : {"pPlaylistBox", "lPlaylistName", "iDown", "cboPlaylist"})
            QVERIFY2(m_head->findChild<QWidget*>(QLatin1String(name)), name);
        QCOMPARE(m_head->objectName(), QStringLiteral("pInternalPlaylist"));
        QCOMPARE(lPlaylistName().toolTip(), QStringLiteral("SelectPlaylist"));
        QVERIFY(cboPlaylist().isHidden());
        QVERIFY(!cboPlaylist().accessibleName().isEmpty());
        m_head->setName(QStringLiteral("two"));
        QCOMPARE(m_head->box()->accessibleName(), QStringLiteral("Playlist: two"));
        QCOMPARE(timer("tCombo").interval(), 400);
        QCOMPARE(timer("tHide").interval(), 2500);
        QVERIFY(!timer("tCombo").isActive());
        QVERIFY(!timer("tHide").isActive());
    }

    void aLongNameIsShortenedInTheMiddle()
    {
        const QString name = QStringLiteral("begin ") + QString(200, u'x') + QStringLiteral(" end");
        m_head->setName(name);
        const QString shown = lPlaylistName().text();
        QVERIFY(shown.size() < 60);
        QVERIFY(shown.startsWith(QLatin1String("begin ")));
        QVERIFY(shown.endsWith(QLatin1String(" end")));
        QCOMPARE(m_head->name(), name);
        m_head->setName(QStringLiteral("a\nb"));
        QCOMPARE(lPlaylistName().text(), QStringLiteral("Playlist: a b"));
    }

    void hovering_data()
    {
        QTest::addColumn<int>("dx");
        QTest::addColumn<int>("dy");
        QTest::addColumn<bool>("opens");
        QTest::newRow("rests") << 0 << 0 << true;
        QTest::newRow("10 pixels below") << 0 << 10 << true;
        QTest::newRow("11 pixels below") << 0 << 11 << false;
        QTest::newRow("11 pixels above") << 0 << -11 << false;
        QTest::newRow("11 pixels beside") << 11 << 0 << true;
    }

    void hovering()
    {
        QFETCH(int, dx);
        QFETCH(int, dy);
        hover(dx, dy);
        QTRY_VERIFY(!timer("tCombo").isActive());
        QTEST(isOpen(), "opens");
        QTEST(timer("tHide").isActive(), "opens");
    }

    void aMoveStartsTheDelayAnew()
    {
        QTimer& tCombo = timer("tCombo");
        QCOMPARE(tCombo.interval(), 400);
        tCombo.setTimerType(Qt::PreciseTimer);
        tCombo.setInterval(60'000); // so that no stall of the machine matters
        hover(0, 0);
        QTRY_VERIFY(tCombo.remainingTime() < 59'000);
        lPlaylistName().installEventFilter(m_head);
        const int before = tCombo.remainingTime();
        hover(0, 0);
        QVERIFY(tCombo.remainingTime() > before);
        QVERIFY(!isOpen());
    }

    void theListStandsOverTheName()
    {
        m_head->setName(QStringLiteral("two"));
        m_head->openList();
        QVERIFY(isOpen());
        const QPoint label = lPlaylistName().mapTo(m_head, QPoint());
        QCOMPARE(cboPlaylist().x(), label.x());
        QCOMPARE(cboPlaylist().width(), lPlaylistName().width());
        QCOMPARE(cboPlaylist().currentText(), QStringLiteral("two"));
        m_head->hideList();
        m_head->setName(QStringLiteral("elsewhere"));
        m_head->openList();
        QCOMPARE(cboPlaylist().currentIndex(), -1);
    }

    void withoutNamesNothingOpens()
    {
        m_head->setNames({});
        m_head->openList();
        QVERIFY(cboPlaylist().isHidden());
    }

    void opensByClickAndKey_data()
    {
        QTest::addColumn<int>("key"); // 0: a click
        QTest::addColumn<bool>("opens");
        QTest::newRow("click") << 0 << true;
        QTest::newRow("Space") << int(Qt::Key_Space) << true;
        QTest::newRow("Return") << int(Qt::Key_Return) << true;
        QTest::newRow("Enter") << int(Qt::Key_Enter) << true;
        QTest::newRow("Down") << int(Qt::Key_Down) << true;
        QTest::newRow("Up") << int(Qt::Key_Up) << false;
        QTest::newRow("a letter") << int(Qt::Key_A) << false;
    }

    void opensByClickAndKey()
    {
        QFETCH(int, key);
        if (key == 0)
            QTest::mouseClick(&lPlaylistName(), Qt::LeftButton);
        else
            QTest::keyClick(m_head->box(), Qt::Key(key));
        QTEST(isOpen(), "opens");
        QCOMPARE(m_head->box()->focusPolicy(), Qt::TabFocus);
    }

    void escapeHides()
    {
        m_head->openList();
        QTest::keyClick(cboPlaylist().view(), Qt::Key_Escape);
        QTRY_VERIFY(cboPlaylist().isHidden());
        QVERIFY(!cboPlaylist().view()->isVisible());
        m_head->openList();
        QVERIFY(isOpen());
        QCoreApplication::processEvents();
        QVERIFY(isOpen()); // the closing before does not close it again
    }

    void closingTheListFromOutsideHides()
    {
        m_head->openList();
        cboPlaylist().view()->window()->close(); // as the desktop does it with pop-ups
        QTRY_VERIFY(cboPlaylist().isHidden());
    }

    void movesOverTheListKeepIt()
    {
        m_head->openList();
        QVERIFY(!timer("tHide").isActive()); // opened by click or key it stays
        const auto move = [this](QWidget* over) {
            timer("tHide").stop();
            QMouseEvent event(QEvent::MouseMove, QPointF(5, 5), over->mapToGlobal(QPointF(5, 5)),
                              Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(over, &event);
            return timer("tHide").isActive();
        };
        QVERIFY(move(cboPlaylist().view()->viewport()));
        QVERIFY(move(&cboPlaylist()));
        timer("tHide").setInterval(1);
        QTRY_VERIFY(cboPlaylist().isHidden());
        QVERIFY(!cboPlaylist().view()->isVisible());
    }

    void aNameIsChosen_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"one", "two", "R&D"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aNameIsChosen()
    {
        QFETCH(QString, name);
        QSignalSpy chosen(m_head, &PlaylistHead::chosen);
        m_head->setName(QStringLiteral("one"));
        m_head->openList();
        QAbstractItemView* const view = cboPlaylist().view();
        const QModelIndex index = view->model()->index(cboPlaylist().findData(name), 0);
        QCOMPARE(index.data().toString(), name);
        view->setCurrentIndex(index);
        QTest::keyClick(view, Qt::Key_Return);
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.at(0).at(0).toString(), name);
        QVERIFY(cboPlaylist().isHidden());
        QCOMPARE(m_head->name(), QStringLiteral("one")); // until it is open
    }

    void aNameIsChosenByMouse()
    {
        QSignalSpy chosen(m_head, &PlaylistHead::chosen);
        m_head->setName(QStringLiteral("one"));
        m_head->openList();
        QAbstractItemView* const view = cboPlaylist().view();
        const QPoint place = view->visualRect(view->model()->index(1, 0)).center();
        // The list takes a click only when the pointer has moved to it.
        QTest::mouseMove(view->viewport(), place);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
        QTRY_COMPARE(chosen.count(), 1);
        QCOMPARE(chosen.at(0).at(0).toString(), QStringLiteral("two"));
    }

    void whatCannotBeShownOnOneLineIsChosenAsItIs()
    {
        QSignalSpy chosen(m_head, &PlaylistHead::chosen);
        m_head->setNames({"a\nb"});
        m_head->openList();
        QCOMPARE(cboPlaylist().itemText(0), QStringLiteral("a b"));
        QTest::keyClick(cboPlaylist().view(), Qt::Key_Down);
        QTest::keyClick(cboPlaylist().view(), Qt::Key_Return);
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.at(0).at(0).toString(), QStringLiteral("a\nb"));
    }

    void newNamesCloseTheList()
    {
        m_head->openList();
        m_head->setNames({"one", "two", "R&D"}); // as every save tells them
        QVERIFY(isOpen());
        m_head->setNames({"one"});
        QVERIFY(!cboPlaylist().view()->isVisible());
        QCOMPARE(cboPlaylist().count(), 1);
    }

    void nothingOpensOverAMenu()
    {
        hover(0, 0);
        QMenu menu;
        menu.addAction(QStringLiteral("one"));
        menu.popup(m_window->mapToGlobal(QPoint(10, 150)));
        QTRY_VERIFY(!timer("tCombo").isActive());
        QVERIFY(!isOpen());
        QVERIFY(menu.isVisible());
    }

    void hidingTheHeadHidesTheList()
    {
        m_head->openList();
        m_head->hide();
        QVERIFY(!cboPlaylist().view()->isVisible());
        m_head->show();
        QVERIFY(cboPlaylist().isHidden());
    }
};

QTEST_MAIN(TestPlaylistHead)
#include "tst_playlisthead.moc"
