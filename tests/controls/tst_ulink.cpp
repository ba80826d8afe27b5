#include "controls/uLink.h"

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

    void lettingGoBesideItOpensNothing()
    {
        uLink link(opener());
        link.SetLinkURL(QStringLiteral("https://one.example/"));
        link.show();
        QTest::mousePress(&link, Qt::LeftButton, {}, QPoint(3, 3));
        QTest::mouseRelease(&link, Qt::LeftButton, {}, QPoint(3, link.height() + 20));
        QVERIFY(m_opened.isEmpty());
    }

    void init() { m_opened.clear(); }

  private:
    uLink::Opener opener()
    {
        return [this](const QString& link) { m_opened.append(link); };
    }
    static QLabel* label(const uLink& link) { return link.findChild<QLabel*>(QStringLiteral("lMsg")); }

    QStringList m_opened;
};

QTEST_MAIN(TestLink)
#include "tst_ulink.moc"
