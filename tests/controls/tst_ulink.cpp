#include "controls/uLink.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QLabel>
#include <QtTest>

using quorvia::controls::uLink;

class TestLink : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void beginsAsDesigned()
    {
        uLink link(opener());
        QCOMPARE(link.Caption(), QStringLiteral("Launch Web-Browser..."));
        QCOMPARE(link.LinkURL(), QString());
        QCOMPARE(label(link)->palette().color(QPalette::WindowText), QColor(0, 121, 191));
    }

    void fontAndColorsAreTheControls()
    {
        uLink link(opener());
        const auto giveFont = [&link](int size) {
            QFont font = link.font();
            font.setPixelSize(size);
            link.setFont(font);
        };
        giveFont(31);
        QCOMPARE(label(link)->font().pixelSize(), 31);
        showFocus(link, true);
        QVERIFY(label(link)->font().underline());
        giveFont(17); // which the line of the focus does not keep away
        QCOMPARE(label(link)->font().pixelSize(), 17);
        QVERIFY(label(link)->font().underline());
        showFocus(link, false);
        QVERIFY(!label(link)->font().underline());

        QPalette colors;
        colors.setColor(QPalette::Window, Qt::darkGreen);
        colors.setColor(QPalette::WindowText, Qt::yellow);
        link.setPalette(colors);
        link.setAutoFillBackground(true);
        link.SetCaption(QStringLiteral("████"));
        const QImage shot = link.grab().toImage();
        QCOMPARE(shot.pixelColor(shot.width() - 1, 0), QColor(Qt::darkGreen));
        QCOMPARE(shot.pixelColor(shot.rect().center()), QColor(Qt::yellow));
    }

    void aCaptionFitsTheControlToItself()
    {
        uLink link(opener());
        for (const char* caption : {"a", "Upgrade to version: 9.9.9", ""}) {
            link.SetCaption(QString::fromLatin1(caption));
            QCOMPARE(link.Caption(), QString::fromLatin1(caption));
            QCOMPARE(link.size(), label(link)->sizeHint().expandedTo(link.minimumSizeHint()));
        }
        link.SetCaption(QStringLiteral("<b>as it stands</b>"));
        QVERIFY(link.width() > label(link)->fontMetrics().horizontalAdvance(QStringLiteral("as it stands")));
    }

    void theLabelFillsTheControl()
    {
        uLink link(opener());
        link.show();
        link.resize(300, 40);
        QCOMPARE(label(link)->geometry(), QRect(0, 0, 300, 40));
        link.SetCaption(QStringLiteral("shorter"));
        QCOMPARE(label(link)->geometry(), link.rect());
    }

    void readersAreToldOfALink()
    {
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&link);
        QCOMPARE(access->role(), QAccessible::Link);
        QCOMPARE(access->childCount(), 0); // the label is a matter of drawing
        QCOMPARE(access->text(QAccessible::Name), link.Caption());
        const QString press = QAccessibleActionInterface::pressAction();
        QVERIFY(access->actionInterface()->actionNames().contains(press));
        access->actionInterface()->doAction(press);
        QTRY_COMPARE(m_opened, QStringList{QStringLiteral("https://one.example/")});
    }

    void linkAndToolTipAreOne()
    {
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        QCOMPARE(label(link)->toolTip(), QStringLiteral("https://one.example/"));
        QCOMPARE(link.toolTip(), QStringLiteral("https://one.example/"));
        link.SetLinkURL(QStringLiteral("https://two.example/"));
        QCOMPARE(label(link)->toolTip(), link.LinkURL());
        QCOMPARE(link.toolTip(), link.LinkURL());
    }

    void opensWhatTheLinkSays()
    {
        uLink link(opener());
        link.show();
        QTest::mouseClick(&link, Qt::LeftButton);
        QTest::keyClick(&link, Qt::Key_Return);
        QVERIFY(m_opened.isEmpty()); // an empty link does nothing
        const QString there = QStringLiteral("https://one.example/");
        link.SetLinkURL(there);
        QTest::mouseClick(&link, Qt::RightButton);
        QTest::keyClick(&link, Qt::Key_A);
        QVERIFY(m_opened.isEmpty());
        QTest::mouseClick(&link, Qt::LeftButton);
        QTest::keyClick(&link, Qt::Key_Space);
        QTest::keyClick(&link, Qt::Key_Enter);
        QCOMPARE(m_opened, QStringList({there, there, there}));
    }

    void opensOnceForAClick_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<bool>("twice");
        QTest::newRow("click") << Qt::KeyboardModifiers() << false;
        QTest::newRow("double click") << Qt::KeyboardModifiers() << true;
        QTest::newRow("click with Ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier) << false;
    }

    void opensOnceForAClick()
    {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(bool, twice);
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        link.show();
        sendMouse(link, QEvent::MouseButtonPress, modifiers);
        QVERIFY(m_opened.isEmpty());
        sendMouse(link, QEvent::MouseButtonRelease, modifiers);
        if (twice) {
            sendMouse(link, QEvent::MouseButtonDblClick, modifiers);
            sendMouse(link, QEvent::MouseButtonRelease, modifiers);
        }
        QCOMPARE(m_opened.size(), 1);
    }

    void opensOnceForAKey_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("opened");
        const auto rows = [](const char* name, Qt::Key key) {
            const auto row = [&](const char* how, Qt::KeyboardModifiers modifiers, int opened) {
                QTest::addRow("%s%s", name, how) << int(key) << modifiers << opened;
            };
            row(" held", Qt::NoModifier, 1);
            row(" of the keypad", Qt::KeypadModifier, 1);
            row(" with Ctrl", Qt::ControlModifier, 0);
            row(" with Alt", Qt::AltModifier, 0);
            row(" with Shift", Qt::ShiftModifier, 0);
        };
        rows("Return", Qt::Key_Return);
        rows("Enter", Qt::Key_Enter);
        rows("Space", Qt::Key_Space);
    }

    void opensOnceForAKey()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(int, opened);
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        for (const bool repeat : {false, true, true}) {
            QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), repeat);
            QCoreApplication::sendEvent(&link, &event);
            QCOMPARE(event.isAccepted(), opened == 1); // the others are for the window
        }
        QCOMPARE(m_opened.size(), opened);
    }

    /// Where the display lets the key go for each repeat and names none.
    void opensOnceForAKeyWhoseRepeatsAreNotNamed()
    {
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        const auto send = [&link](QEvent::Type type, ulong time) {
            QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier);
            event.setTimestamp(time);
            QCoreApplication::sendEvent(&link, &event);
        };
        send(QEvent::KeyPress, 1000);
        for (ulong time = 1660; time < 3000; time += 40) {
            send(QEvent::KeyRelease, time);
            send(QEvent::KeyPress, time);
        }
        QCOMPARE(m_opened.size(), 1);
        send(QEvent::KeyRelease, 3100);
        send(QEvent::KeyPress, 3600);
        QCOMPARE(m_opened.size(), 2);
    }

    void lettingGoBesideItOpensNothing()
    {
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        link.show();
        QTest::mousePress(&link, Qt::LeftButton, {}, QPoint(3, 3));
        QTest::mouseRelease(&link, Qt::LeftButton, {}, QPoint(3, link.height() + 20));
        QVERIFY(m_opened.isEmpty());
        QTest::mouseRelease(&link, Qt::LeftButton, {}, QPoint(3, 3)); // of a press that was another's
        QVERIFY(m_opened.isEmpty());
    }

    void init() { m_opened.clear(); }

  private:
    uLink::Opener opener()
    {
        return [this](const QString& link) { m_opened.append(link); };
    }
    static void showFocus(uLink& link, bool focused)
    {
        QFocusEvent event(focused ? QEvent::FocusIn : QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(&link, &event);
    }
    static void sendMouse(uLink& link, QEvent::Type type, Qt::KeyboardModifiers modifiers)
    {
        const QPointF at(3, 3);
        const bool up = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, link.mapToGlobal(at), Qt::LeftButton, up ? Qt::NoButton : Qt::LeftButton,
                          modifiers);
        QCoreApplication::sendEvent(&link, &event);
    }
    static QLabel* label(const uLink& link) { return link.findChild<QLabel*>(QStringLiteral("lMsg")); }

    QStringList m_opened;
};

QTEST_MAIN(TestLink)
#include "tst_ulink.moc"
