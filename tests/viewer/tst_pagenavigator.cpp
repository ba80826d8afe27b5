#include "viewer/PageNavigator.h"

#include <QKeyEvent>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace quorvia::viewer;

namespace {

/// A window that notes the keys that come to it.
class KeyNoting : public QWidget
{
  public:
    QList<int> keys;

  protected:
    void keyPressEvent(QKeyEvent* event) override { keys.append(event->key()); }
};

} // namespace

class TestPageNavigator : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tiffNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isTiff");
        QTest::newRow("tif") << "/a/b.tif" << true;
        QTest::newRow("tiff") << "/a/b.tiff" << true;
        QTest::newRow("upper case") << "/a/B.TIF" << true;
        QTest::newRow("no dot ahead") << "/a/motif" << true;
        QTest::newRow("other") << "/a/b.png" << false;
        QTest::newRow("tif inside") << "/a/b.tif.png" << false;
        QTest::newRow("dcx gets none") << "/a/b.dcx" << false;
        QTest::newRow("too short") << "if" << false;
        QTest::newRow("nothing open") << "" << false;
    }

    void tiffNames()
    {
        QFETCH(QString, name);
        QTEST(isTiffName(name), "isTiff");
    }

    void captions()
    {
        QCOMPARE(pageCaption(1, 3), QStringLiteral("1 of 3"));
        QCOMPARE(totalFromCaption(QStringLiteral("2 of 17")), 17);
        QCOMPARE(totalFromCaption(QStringLiteral("Image 1 of X")), 0);
        QCOMPARE(totalFromCaption(QString()), 0);
    }

    void showsAndTells()
    {
        QWidget owner;
        PageNavigator navigator(&owner);
        QCOMPARE(navigator.objectName(), QStringLiteral("pTiff"));
        QVERIFY(navigator.isHidden());
        const auto* label = navigator.findChild<QLabel*>(QStringLiteral("lTiffImg"));
        QVERIFY(label);
        QCOMPARE(label->text(), QStringLiteral("Image 1 of X"));
        navigator.showPage(2, 5);
        QCOMPARE(label->text(), QStringLiteral("2 of 5"));
        QCOMPARE(navigator.total(), 5);
    }

    void buttonsSpeak()
    {
        QWidget owner;
        PageNavigator navigator(&owner);
        navigator.showPage(1, 2);
        navigator.show();
        owner.show();
        QSignalSpy next(&navigator, &PageNavigator::nextClicked);
        QSignalSpy previous(&navigator, &PageNavigator::previousClicked);
        auto* forward = navigator.findChild<QToolButton*>(QStringLiteral("lTiffNext"));
        auto* back = navigator.findChild<QToolButton*>(QStringLiteral("lTiffPrevious"));
        QVERIFY(forward && back);
        QCOMPARE(forward->text(), QStringLiteral(">>"));
        QCOMPARE(back->text(), QStringLiteral("<<"));
        QVERIFY(!forward->accessibleName().isEmpty() && !back->accessibleName().isEmpty());
        QTest::mouseClick(forward, Qt::LeftButton);
        QCOMPARE(next.count(), 1);
        QTest::mouseClick(back, Qt::LeftButton);
        QCOMPARE(previous.count(), 1);
    }

    void itsButtonsLeaveTheKeysToTheWindow_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("clicks");
        QTest::newRow("left") << Qt::Key_Left << 0;
        QTest::newRow("right") << Qt::Key_Right << 0;
        QTest::newRow("up") << Qt::Key_Up << 0;
        QTest::newRow("down") << Qt::Key_Down << 0;
        QTest::newRow("a letter") << Qt::Key_K << 0;
        QTest::newRow("Esc") << Qt::Key_Escape << 0;
        QTest::newRow("the space bar") << Qt::Key_Space << 1;
    }

    void itsButtonsLeaveTheKeysToTheWindow()
    {
        QFETCH(Qt::Key, key);
        QFETCH(int, clicks);
        KeyNoting owner;
        PageNavigator navigator(&owner);
        navigator.showPage(2, 3);
        navigator.show();
        owner.show();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        const QSignalSpy previous(&navigator, &PageNavigator::previousClicked);
        const QSignalSpy next(&navigator, &PageNavigator::nextClicked);
        const QStringList names{QStringLiteral("lTiffPrevious"), QStringLiteral("lTiffNext")};
        for (const QString& name : names) {
            auto* const button = navigator.findChild<QToolButton*>(name);
            button->setFocus(Qt::TabFocusReason);
            QTest::keyClick(owner.windowHandle(), key);
            QVERIFY(button->hasFocus());
        }
        QCOMPARE(previous.count(), clicks);
        QCOMPARE(next.count(), clicks);
        QCOMPARE(owner.keys, clicks == 0 ? QList<int>(2, key) : QList<int>());
    }

    void theKeysReachItsButtonsAndReturn()
    {
        QWidget owner;
        owner.setFocusPolicy(Qt::StrongFocus);
        PageNavigator navigator(&owner);
        auto* const behind = new QToolButton(&owner); // would get the keys from the toolkit
        behind->setFocusPolicy(Qt::StrongFocus);
        navigator.showPage(1, 2);
        navigator.show();
        owner.show();
        owner.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        const QSignalSpy previous(&navigator, &PageNavigator::previousClicked);
        QTest::keyClick(owner.windowHandle(), Qt::Key_Tab);
        QTest::keyClick(owner.windowHandle(), Qt::Key_Space);
        QCOMPARE(previous.count(), 1);
        auto* const forward = navigator.findChild<QToolButton*>(QStringLiteral("lTiffNext"));
        QTest::keyClick(owner.windowHandle(), Qt::Key_Tab);
        QVERIFY(forward->hasFocus());
        navigator.hide();
        QVERIFY(owner.hasFocus());
    }
};

QTEST_MAIN(TestPageNavigator)
#include "tst_pagenavigator.moc"
