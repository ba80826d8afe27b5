// The drawings: that all are there, that each can be seen and told from the others, and that they take the
// colour that they are asked for.
#include "platform/Contrast.h"
#include "platform/DrawnPixels.h"
#include "platform/Icons.h"
#include "platform/ToolLook.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QTest>

using namespace quorvia::platform;
using quorvia::test::drawnPixels;

/// The resources of a static library have to be asked for, and that outside of every namespace.
static void registerIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace {

/// The names of all drawings that are built in, sorted.
QStringList iconNames()
{
    registerIcons();
    QStringList names;
    for (const QString& file : QDir(QStringLiteral(":/icons")).entryList(QDir::Files, QDir::Name))
        names.append(file.section(u'.', 0, 0));
    return names;
}

const QStringList carriers =
    QStringLiteral("next previous bestfit actualsize fullscreen slideshow zoomin zoomout "
                   "rotateclock rotatecounter open save wallpaper pref filelist sldmode "
                   "copy paste print edit refresh delete information website resize bevel "
                   "customresize thumbnail recent delay rename scan email help")
        .split(QLatin1Char(' '));
const QStringList others =
    QStringLiteral(
        "clear folder file exit moveup movedown add addall remove playlist playlistadd playlistremove "
        "import export lock close stretch slidestop lindora gallery software tip alone")
        .split(QLatin1Char(' '));

QImage imageOf(const QString& name, int side, const QColor& color = Qt::black)
{
    return drawing(name, side, color).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The mean contrast with the ground of the pixels that are covered at least by half.
double meanContrast(const QImage& image, const QColor& ground)
{
    QImage painted(image.size(), QImage::Format_RGB32);
    painted.fill(ground);
    QPainter(&painted).drawImage(0, 0, image);
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) >= 128)
                sum += contrast(painted.pixelColor(x, y), ground);
        }
    }
    return sum / std::max(1, drawnPixels(image));
}

QColor darkestOf(const QIcon& icon, QIcon::Mode mode)
{
    const QImage image = icon.pixmap(QSize(48, 48), 1, mode).toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255)
                return image.pixelColor(x, y);
        }
    }
    return {};
}

} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void allAreThere()
    {
        QStringList expected = carriers + others;
        expected.sort();
        QCOMPARE(iconNames(), expected);
        for (const QString& name : expected) {
            QVERIFY2(isIcon(name), qPrintable(name));
            QVERIFY2(isIcon(QLatin1Char('#') + name), qPrintable(name));
            QVERIFY2(!icon(name).isNull(), qPrintable(name));
        }
    }

    void ofOneHand()
    {
        const QStringList files = QDir(QStringLiteral(ICON_FOLDER)).entryList({QStringLiteral("*.svg")});
        QCOMPARE(files.size(), iconNames().size()); // none lies there that is not built in
        for (const QString& each : files) {
            QFile file(QStringLiteral(ICON_FOLDER "/") + each);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray head = file.readLine();
            QVERIFY2(head.contains("viewBox=\"0 0 24 24\"") && head.contains("stroke-width=\"2\"") &&
                         head.contains("stroke-linecap=\"round\"") && head.contains("stroke=\"#000\""),
                     qPrintable(each));
        }
    }

    void othersAreNot_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"", "#", "##open", "Open", "nothing", "open.svg", "../icons/open", "miSep1007"})
            QTest::newRow(*name ? name : "(empty)") << QString::fromLatin1(name);
    }

    void othersAreNot()
    {
        QFETCH(QString, name);
        QVERIFY(!isIcon(name));
        QVERIFY(icon(name).isNull());
        QVERIFY(drawing(name, 16, Qt::black).isNull());
    }

    void everyOneShows()
    {
        for (const QString& name : iconNames()) {
            for (const int side : {16, 24, 32, 36, 48}) {
                const QImage image = imageOf(name, side);
                QCOMPARE(image.size(), QSize(side, side));
                const double share = drawnPixels(image) / double(side * side);
                QVERIFY2(share > 0.06 && share < 0.6, qPrintable(name + QString::number(side)));
            }
        }
        QVERIFY(drawing(QStringLiteral("open"), 0, Qt::black).isNull());
        QVERIFY(drawing(QStringLiteral("open"), -4, Qt::black).isNull());
    }

    void noTwoAreAlike()
    {
        const QStringList names = iconNames();
        for (const int side : {16, 24}) {
            for (qsizetype one = 0; one < names.size(); ++one) {
                for (qsizetype other = 0; other < one; ++other)
                    QVERIFY2(imageOf(names[one], side) != imageOf(names[other], side),
                             qPrintable(names[one]));
            }
        }
    }

    void nothingReachesTheEdge()
    {
        for (const QString& name : iconNames()) {
            const QImage image = imageOf(name, 48);
            for (int at = 0; at < 48; ++at) {
                for (const QPoint edge : {QPoint(at, 0), QPoint(at, 47), QPoint(0, at), QPoint(47, at)})
                    QVERIFY2(qAlpha(image.pixel(edge)) == 0, qPrintable(name));
            }
        }
    }

    void takeTheirColour()
    {
        const QColor color(10, 200, 90);
        const QImage image = imageOf(QStringLiteral("save"), 48, color);
        int full = 0;
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 48; ++x) {
                if (qAlpha(image.pixel(x, y)) == 255) {
                    ++full;
                    QCOMPARE(image.pixelColor(x, y), color);
                }
            }
        }
        QVERIFY(full > 100);
    }

    void standOut_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("words");
        QTest::newRow("chrome") << QColor(0, 121, 191) << QColor(Qt::black);
        QTest::newRow("light") << QColor(239, 239, 239) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(45, 45, 48) << QColor(Qt::white);
    }

    void standOut()
    {
        QFETCH(QColor, ground);
        QFETCH(QColor, words);
        QPalette palette;
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::WindowText, words);
        const QColor ink = toolLook(palette).ink;
        for (const QString& name : iconNames()) {
            for (const int side : {16, 24, 32}) {
                const double mean = meanContrast(imageOf(name, side, ink), ground);
                QVERIFY2(mean >= 3, qPrintable(QStringLiteral("%1 %2: %3").arg(name).arg(side).arg(mean)));
            }
        }
    }

    void followTheApplicationsPalette()
    {
        const QPalette before = QGuiApplication::palette();
        const QIcon save = icon(QStringLiteral("#save"));
        QPalette palette = before;
        for (const QColor& words : {QColor(20, 20, 20), QColor(240, 240, 240)}) {
            palette.setColor(QPalette::Active, QPalette::WindowText, words);
            palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(130, 131, 132));
            palette.setColor(QPalette::Active, QPalette::HighlightedText, QColor(1, 2, 3));
            QGuiApplication::setPalette(palette);
            QCOMPARE(darkestOf(save, QIcon::Normal), words);
            QCOMPARE(darkestOf(save, QIcon::Active), words);
            QCOMPARE(darkestOf(save, QIcon::Disabled), QColor(130, 131, 132));
            QCOMPARE(darkestOf(save, QIcon::Selected), QColor(1, 2, 3));
        }
        QGuiApplication::setPalette(before);
    }

    void disabledDrawing()
    {
        const auto disabled = [](const QIcon& icon) {
            return icon.pixmap(QSize(24, 24), 1, QIcon::Disabled).toImage();
        };
        const QImage save = disabled(icon(QStringLiteral("save")));
        const QImage open = disabled(icon(QStringLiteral("open")));
        QCOMPARE(disabled(icon(QStringLiteral("save"), QStringLiteral("#open"))), open);
        QCOMPARE(disabled(icon(QStringLiteral("save"), QStringLiteral("nothing"))), save);
        QVERIFY(save != open);
    }

    void everyRatioHasItsOwnPixels_data()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0})
            QTest::newRow(qPrintable(QString::number(ratio))) << ratio;
    }

    void everyRatioHasItsOwnPixels()
    {
        QFETCH(double, ratio);
        const QIcon zoom = icon(QStringLiteral("zoomin"));
        const int side = qRound(16 * ratio);
        QPixmap pixmap = zoom.pixmap(QSize(16, 16), ratio);
        QCOMPARE(pixmap.size(), QSize(side, side));
        const QColor ink = QGuiApplication::palette().color(QPalette::Active, QPalette::WindowText);
        pixmap.setDevicePixelRatio(1); // for the comparison
        QCOMPARE(pixmap.toImage().convertToFormat(QImage::Format_ARGB32),
                 imageOf(QStringLiteral("zoomin"), side, ink));

        QImage painted(QSize(40, 40) * ratio, QImage::Format_ARGB32_Premultiplied); // the way of other styles
        painted.setDevicePixelRatio(ratio);
        painted.fill(Qt::transparent);
        QPainter painter(&painted);
        zoom.paint(&painter, QRect(8, 8, 16, 16));
        painter.end();
        painted.setDevicePixelRatio(1);
        const int at = qRound(8 * ratio);
        QCOMPARE(painted.copy(at, at, side, side).convertToFormat(QImage::Format_ARGB32),
                 imageOf(QStringLiteral("zoomin"), side, ink));
    }
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
