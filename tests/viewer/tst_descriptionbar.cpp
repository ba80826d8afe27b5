// The scroll bar of the description's box, in a box of any size: it comes to rest.
#include "viewer/DescriptionField.h"

#include <QScrollBar>
#include <QTest>
#include <QWidget>

using namespace quorvia;

namespace {

/// How often `field`, which lies in a window of its own, changes the range of its bar until it rests; it is
/// made large when that has no end.
class Changes
{
  public:
    explicit Changes(viewer::DescriptionField& field)
    {
        QObject::connect(field.verticalScrollBar(), &QScrollBar::rangeChanged, &field, [this, &field] {
            if (++m_count == endless)
                field.resize(400, 400);
        });
    }
    bool isEndless() const { return m_count >= endless; }
    void forget() { m_count = 0; }

  private:
    static constexpr int endless = 100;
    int m_count = 0;
};

} // namespace

class TestDescriptionBar : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void comesToRest_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a word") << QStringLiteral("word");
        QTest::newRow("two words") << QStringLiteral("(no description)");
        QTest::newRow("lines") << QStringLiteral("one\ntwo\nthree\nfour\nfive");
        QTest::newRow("a long line") << QStringLiteral("word ").repeated(40);
        QTest::newRow("a long word") << QStringLiteral("letters").repeated(20);
    }

    void comesToRest()
    {
        QFETCH(QString, text);
        QWidget window;
        viewer::DescriptionField field(&window);
        field.showText(text);
        window.resize(500, 500);
        window.show();
        Changes changes(field);
        QStringList restless;
        for (int height = 1; height <= 121; height += 4) {
            for (int width = 1; width <= 121; ++width) {
                changes.forget();
                field.resize(width, height);
                QCoreApplication::processEvents();
                if (changes.isEndless())
                    restless.append(QStringLiteral("%1 x %2").arg(width).arg(height));
            }
        }
        QVERIFY2(restless.isEmpty(), qPrintable(QStringLiteral("%1: %2")
                                                    .arg(restless.size())
                                                    .arg(restless.mid(0, 60).join(QStringLiteral(", ")))));
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

QTEST_MAIN(TestDescriptionBar)
#include "tst_descriptionbar.moc"
