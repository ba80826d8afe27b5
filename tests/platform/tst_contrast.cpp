// Contrasts, and what can be read on a ground.
#include "platform/Contrast.h"

#include <QPalette>
#include <QTest>

using namespace quorvia::platform;

namespace {

const QColor chrome(0, 121, 191);

} // namespace

class TestContrast : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void contrasts()
    {
        QCOMPARE(contrast(Qt::white, Qt::white), 1.0);
        QVERIFY(qAbs(contrast(Qt::white, Qt::black) - 21) < 1e-9);
        QCOMPARE(contrast(Qt::red, chrome), contrast(chrome, Qt::red));
        QVERIFY(qAbs(contrast(QColor(119, 119, 119), Qt::white) - 4.478) < 0.001); // a known pair
    }

    void inkIsItsOwnWhereThatCanBeRead()
    {
        QCOMPARE(inkOn(Qt::black, Qt::yellow), QColor(Qt::yellow));
        QCOMPARE(inkOn(chrome, Qt::black), QColor(Qt::white));
        QCOMPARE(inkOn(Qt::white, Qt::white), QColor(24, 28, 32));
    }

    void tints()
    {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(0, 100, 200));
        palette.setColor(QPalette::WindowText, QColor(200, 0, 201));
        QCOMPARE(tint(palette, 0), QColor(0, 100, 200));
        QCOMPARE(tint(palette, 0.5), QColor(100, 50, 201));
        QCOMPARE(tint(palette, 1), QColor(200, 0, 201));
    }
};

QTEST_GUILESS_MAIN(TestContrast)
#include "tst_contrast.moc"
