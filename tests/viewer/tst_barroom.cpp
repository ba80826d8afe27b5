// The scroll bars of the panel's boxes, in boxes of any size: they come to rest.
#include "support/ScratchHome.h"
#include "viewer/DescriptionField.h"
#include "viewer/PanelBench.h"

#include <QScrollBar>
#include <QTest>
#include <QWidget>

using namespace quorvia;

namespace {

/// How often `field`, which lies in a window of its own, changes the ranges of its bars until it rests; it is
/// made large when that has no end.
class Changes
{
  public:
    explicit Changes(QPlainTextEdit& field)
    {
        for (QScrollBar* bar : {field.verticalScrollBar(), field.horizontalScrollBar()}) {
            QObject::connect(bar, &QScrollBar::rangeChanged, &field, [this, &field] {
                ++m_all;
                if (++m_count == endless)
                    field.resize(400, 400);
            });
        }
    }
    bool isEndless() const { return m_count >= endless; }
    void forget() { m_count = 0; }
    /// Also those that were forgotten.
    int all() const { return m_all; }

  private:
    static constexpr int endless = 100;
    int m_count = 0;
    int m_all = 0;
};

} // namespace

class TestBarRoom : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void comesToRest_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("text");
        const QStringList boxes{QStringLiteral("tDes"), QStringLiteral("tFileInfo"),
                                QStringLiteral("tImageInfo")};
        for (const QString& box : boxes) {
            const QByteArray name = box.toLatin1();
            QTest::addRow("%s: a word", name.constData()) << box << QStringLiteral("word");
            QTest::addRow("%s: lines", name.constData())
                << box << QStringLiteral("one\ntwo\nthree\nfour\nfive");
            QTest::addRow("%s: a long line", name.constData()) << box << QStringLiteral("word ").repeated(40);
        }
    }

    void comesToRest()
    {
        QFETCH(QString, box);
        QFETCH(QString, text);
        const test::ScratchHome home;
        test::PanelBench bench(home.path(QStringLiteral("pics/")));
        auto* const field = bench.panel->findChild<QPlainTextEdit*>(box);
        QVERIFY(field);
        field->setParent(&bench.window); // no layout gives it a size
        field->setPlainText(text);
        field->show();
        Changes changes(*field);
        QStringList restless;
        for (int height = 1; height <= 121; height += 3) {
            for (int width = 1; width <= 60; ++width) {
                changes.forget();
                field->resize(width, height);
                QCoreApplication::processEvents();
                if (changes.isEndless())
                    restless.append(QStringLiteral("%1 x %2").arg(width).arg(height));
            }
        }
        field->setParent(bench.panel.get());
        QVERIFY(changes.all() > 0); // or nothing was seen
        QVERIFY2(restless.isEmpty(),
                 qPrintable(QStringLiteral("%1: ").arg(restless.size()) + restless.mid(0, 10).join(u',')));
    }

    void goesByTheFontToo_data()
    {
        QTest::addColumn<bool>("isDescription");
        QTest::newRow("the description's box") << true;
        QTest::newRow("a box of facts") << false;
    }

    void goesByTheFontToo()
    {
        QFETCH(bool, isDescription);
        const test::ScratchHome home;
        test::PanelBench bench(home.path(QStringLiteral("pics/")));
        auto* const field = bench.panel->findChild<QPlainTextEdit*>(
            isDescription ? QStringLiteral("tDes") : QStringLiteral("tFileInfo"));
        field->resize(60, 80);
        const QFont small = field->font();
        QCOMPARE(field->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
        QFont large = small;
        large.setPixelSize(90); // no letter has room beside the bar
        field->setFont(large);
        QCOMPARE(field->size(), QSize(60, 80));
        QCOMPARE(field->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        field->setFont(small);
        QCOMPARE(field->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    }

    void isThereWhenTheTextNeedsIt()
    {
        QWidget window;
        viewer::DescriptionField field(&window);
        field.resize(200, 60);
        window.resize(500, 500);
        window.show();
        field.showText(QStringLiteral("one\ntwo\nthree\nfour\nfive\nsix\nseven"));
        QTRY_VERIFY(field.verticalScrollBar()->isVisible());
        field.showText(QStringLiteral("one"));
        QTRY_VERIFY(!field.verticalScrollBar()->isVisible());
        field.showText(QStringLiteral("one\ntwo\nthree\nfour\nfive\nsix\nseven"));
        QTRY_VERIFY(field.verticalScrollBar()->isVisible());
        field.resize(200, 400);
        QTRY_VERIFY(!field.verticalScrollBar()->isVisible());
    }
};

QTEST_MAIN(TestBarRoom)
#include "tst_barroom.moc"
