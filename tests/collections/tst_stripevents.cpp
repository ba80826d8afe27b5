// What a screen reader that listens is told of the filmstrip. Without one the toolkit tells nothing, so a
// journey runs this where one is.
#include "collections/Filmstrip.h"
#include "FilmBench.h"

#include <QAccessible>
#include <QtTest>

using quorvia::collections::Filmstrip;
using quorvia::test::FilmBench;

namespace {

/// Notes what a reader is told while it lives.
class Listener
{
  public:
    struct Told
    {
        QAccessible::Event what;
        const QObject* about;
        int child; ///< -1 for none
    };

    Listener() : m_before(QAccessible::installUpdateHandler(note)) { told().clear(); }
    ~Listener() { QAccessible::installUpdateHandler(m_before); }
    Q_DISABLE_COPY_MOVE(Listener)

    /// The children that `what` about `strip` was told of.
    static QList<int> children(QAccessible::Event what, const Filmstrip& strip)
    {
        QList<int> found;
        for (const Told& each : std::as_const(told())) {
            if (each.what == what && each.about == &strip)
                found.append(each.child);
        }
        return found;
    }

  private:
    static QList<Told>& told()
    {
        static QList<Told> heard; // the toolkit's handler is a plain function
        return heard;
    }
    static void note(QAccessibleEvent* event)
    {
        told().append({event->type(), event->object(), event->child()});
    }

    QAccessible::UpdateHandler m_before;
};

} // namespace

class TestStripEvents : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { QTRY_VERIFY(QAccessible::isActive()); }

    void theKeysTellWhereTheyAre()
    {
        const FilmBench bench;
        Filmstrip& strip = *bench.strip;
        bench.addMany(20);
        bench.laysOut();
        strip.setFocus();
        QVERIFY(strip.hasFocus());
        const Listener listener;
        // The toolkit asks the reader about each key first, and waits for no answer.
        QTest::keyClick(&strip, Qt::Key_Right);
        QTRY_COMPARE(Listener::children(QAccessible::Focus, strip), (QList<int>{1}));
        QTest::keyClick(&strip, Qt::Key_Right);
        QTRY_COMPARE(Listener::children(QAccessible::Focus, strip), (QList<int>{1, 2}));
        QTest::keyClick(&strip, Qt::Key_End);
        QTRY_COMPARE(Listener::children(QAccessible::Focus, strip), (QList<int>{1, 2, 19}));
    }

    void anotherListIsToldOfOnce()
    {
        Filmstrip strip;
        strip.add(QStringLiteral("/p/a.png"));
        QVERIFY(QAccessible::queryAccessibleInterface(&strip)->child(0));
        const Listener listener;
        strip.Clear();
        for (const char* file : {"/q/x.png", "/q/y.png"})
            strip.add(QLatin1String(file));
        QVERIFY(Listener::children(QAccessible::ObjectReorder, strip).isEmpty()); // there may be more
        QTRY_COMPARE(Listener::children(QAccessible::ObjectReorder, strip), QList<int>{-1});
        QCoreApplication::processEvents();
        QCOMPARE(Listener::children(QAccessible::ObjectReorder, strip).size(), 1);
    }
};

QTEST_MAIN(TestStripEvents)
#include "tst_stripevents.moc"
