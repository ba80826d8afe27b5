// Colours and texts of the toolbar's buttons.
#include "platform/Contrast.h"
#include "platform/ToolLook.h"
#include "platform/ToolModel.h"

#include <QPalette>
#include <QTest>

using namespace quorvia::platform;

namespace {

const QColor chrome(0, 121, 191);

QPalette paletteOf(const QColor& window, const QColor& words)
{
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, words);
    return palette;
}

QColor over(const QColor& veil, const QColor& ground)
{
    const auto mix = [&](float a, float b) { return b + (a - b) * veil.alphaF(); };
    return QColor::fromRgbF(mix(veil.redF(), ground.redF()), mix(veil.greenF(), ground.greenF()),
                            mix(veil.blueF(), ground.blueF()));
}

} // namespace

class TestToolLook : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void inks_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("words");
        QTest::addColumn<QColor>("ink");
        const QColor black(Qt::black);
        const QColor white(Qt::white);
        QTest::newRow("chrome, light desktop") << chrome << black << white;
        QTest::newRow("chrome, dark desktop") << chrome << white << white;
        QTest::newRow("light desktop") << QColor(239, 239, 239) << black << black;
        QTest::newRow("dark desktop") << QColor(45, 45, 48) << QColor(235, 235, 235) << QColor(235, 235, 235);
        QTest::newRow("own colours") << black << QColor(Qt::yellow) << QColor(Qt::yellow);
        QTest::newRow("words of the ground's colour") << white << white << QColor(24, 28, 32);
        QTest::newRow("middle grey") << QColor(110, 110, 110) << QColor(120, 120, 120) << white;
    }

    void inks()
    {
        QFETCH(QColor, ground);
        QFETCH(QColor, words);
        const ToolLook look = toolLook(paletteOf(ground, words));
        QTEST(look.ink, "ink");
        QVERIFY(contrast(look.ink, ground) >= 4.5);
        // On every face as well, and the states can be told apart.
        for (const QColor& face : {look.hovered, look.checked})
            QVERIFY(contrast(look.ink, over(face, ground)) >= 3);
        QVERIFY(contrast(over(look.hovered, ground), ground) > 1.1);
        QVERIFY(contrast(over(look.pressed, ground), over(look.hovered, ground)) > 1.05);
        QVERIFY(contrast(over(look.outline, ground), ground) > 2);
        const double disabled = contrast(over(look.disabledInk, ground), ground);
        QVERIFY(disabled > 1.7 && disabled < contrast(look.ink, ground));
    }

    void captions_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("plain");
        const auto row = [](const char* caption, const char* plain) {
            QTest::newRow(caption) << QString::fromLatin1(caption) << QString::fromLatin1(plain);
        };
        row("", "");
        row("Save", "Save");
        row("&Save", "Save");
        row("Sa&ve", "Save");
        row("Cats && Dogs", "Cats & Dogs");
        row("&&&x", "&x");
        row("end&", "end");
    }

    void captions()
    {
        QFETCH(QString, caption);
        QTEST(plainCaption(caption), "plain");
    }

    void literalCaptions()
    {
        ToolValues values;
        values.caption = QStringLiteral("Salt & &Pepper");
        QCOMPARE(plainCaption(values), QStringLiteral("Salt  Pepper"));
        QCOMPARE(markedCaption(values), values.caption);
        values.literalCaption = true;
        QCOMPARE(plainCaption(values), values.caption);
        QCOMPARE(markedCaption(values), QStringLiteral("Salt && &&Pepper"));
        QCOMPARE(tipOf(values), values.caption);
    }

    void tips()
    {
        ToolValues values;
        values.caption = QStringLiteral("&Save");
        QCOMPARE(tipOf(values), QStringLiteral("Save"));
        values.toolTip = values.caption;
        QCOMPARE(tipOf(values), QStringLiteral("Save"));
        values.toolTip = QStringLiteral("Save R&D");
        QCOMPARE(tipOf(values), QStringLiteral("Save R&D"));
        values.toolTip = QStringLiteral("<b>Save</b>");
        QVERIFY(tipOf(values).contains(QStringLiteral("&lt;b&gt;Save")));
    }
};

QTEST_APPLESS_MAIN(TestToolLook)
#include "tst_toollook.moc"
