// What a screen reader sees of the filmstrip.
#include "collections/Filmstrip.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QSignalSpy>
#include <QtTest>

using quorvia::collections::Filmstrip;

class TestFilmstripAccess : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void isAListOfNames()
    {
        Filmstrip strip;
        for (const char* file : {"/p/a.png", "/p/b.png", "/p/c.png"})
            strip.add(QLatin1String(file));
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&strip);
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->childCount(), 3);
        QAccessibleInterface* const second = list->child(1);
        QCOMPARE(second->role(), QAccessible::ListItem);
        QCOMPARE(second->text(QAccessible::Name), QStringLiteral("b.png"));
        QCOMPARE(list->indexOfChild(second), 1);
        QCOMPARE(list->child(1), second);
        QVERIFY(!list->child(3));
        strip.Clear();
        QCOMPARE(list->childCount(), 0);
        QVERIFY(!second->isValid());
        QVERIFY(second->state().invalid);
    }

    void aPressIsAClick()
    {
        Filmstrip strip;
        for (const char* file : {"/p/a.png", "/p/b.png"})
            strip.add(QLatin1String(file));
        const QSignalSpy selected(&strip, &Filmstrip::IndexSelected);
        const QSignalSpy clicked(&strip, &Filmstrip::ImageClicked);
        QAccessibleInterface* const second = QAccessible::queryAccessibleInterface(&strip)->child(1);
        second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(clicked.size(), 1);
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected.first().first().toInt(), 1);
        QCOMPARE(clicked.first(), (QVariantList{1, 1, 0}));
    }
};

QTEST_MAIN(TestFilmstripAccess)
#include "tst_filmstripaccess.moc"
