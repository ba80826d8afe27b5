// The dialog for a font where the family has no sloped style, as on a system with the fewest fonts: what is
// not chosen there stays as it was.
#include "NextDialog.h"
#include "platform/Dialogs.h"
#include "platform/FontStyles.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontDialog>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <vector>

using namespace quorvia::platform;
using Styles = std::vector<FontStyle>;

Q_DECLARE_METATYPE(Styles)

namespace {

const QString family = QStringLiteral("DejaVu Sans");

/// The list in `dialog` that offers the styles.
QListView* styleList(const QDialog& dialog)
{
    for (QListView* const list : dialog.findChildren<QListView*>()) {
        const QAbstractItemModel* const rows = list->model();
        const QModelIndexList found =
            rows->match(rows->index(0, 0), Qt::DisplayRole, QStringLiteral("Bold"), 1, Qt::MatchExactly);
        if (!found.isEmpty())
            return list;
    }
    return nullptr;
}

/// Chooses the style `name` in `dialog`, as a click on its row does.
void chooseStyle(const QDialog& dialog, const QString& name)
{
    QListView* const list = styleList(dialog);
    const QModelIndexList found =
        list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(found.value(0)).center());
}

void pressOk(const QDialog& dialog)
{
    dialog.findChild<QDialogButtonBox*>(QString(), Qt::FindDirectChildrenOnly)
        ->button(QDialogButtonBox::Ok)
        ->click();
}

} // namespace

class TestFontDialog : public QObject
{
    Q_OBJECT

    inline static std::unique_ptr<QTemporaryDir> s_fonts;

  public:
    /// A system that has the upright and the bold style of one family only.
    static void initMain()
    {
        s_fonts = std::make_unique<QTemporaryDir>();
        const QString from = QStringLiteral("/usr/share/fonts/truetype/dejavu/");
        for (const char* const name : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf"}) {
            const QString file = QLatin1String(name);
            if (!QFile::link(from + file, s_fonts->filePath(file)))
                qFatal("No link to %s.", name);
        }
        QFile config(s_fonts->filePath(QStringLiteral("fonts.conf")));
        if (!config.open(QIODevice::WriteOnly))
            qFatal("No place for the list of fonts.");
        const QByteArray folder = s_fonts->path().toUtf8();
        config.write("<?xml version=\"1.0\"?><fontconfig><dir>" + folder + "</dir><cachedir>" + folder +
                     "/cache</cachedir></fontconfig>");
        qputenv("FONTCONFIG_FILE", config.fileName().toUtf8());
    }

  private Q_SLOTS:
    void initTestCase()
    {
        QStringList styles = QFontDatabase::styles(family);
        styles.sort();
        QCOMPARE(styles, (QStringList{QStringLiteral("Bold"), QStringLiteral("Book")}));
    }
    void cleanupTestCase() { s_fonts.reset(); }

    void whatIsNotChosenStays_data()
    {
        QTest::addColumn<QFont::Weight>("weight");
        QTest::addColumn<bool>("italic");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << QFont::Normal << false << "Book";
        QTest::newRow("bold") << QFont::Bold << false << "Bold";
        QTest::newRow("italic") << QFont::Normal << true << "Book";
        QTest::newRow("both") << QFont::Bold << true << "Bold";
    }
    void whatIsNotChosenStays()
    {
        QFETCH(QFont::Weight, weight);
        QFETCH(bool, italic);
        QString shown;
        quorvia::test::NextDialog<QDialog> accept([&](QDialog& dialog) {
            shown = dialog.findChild<QFontDialog*>()->currentFont().styleName();
            pressOk(dialog);
        });
        const auto chosen = askFont(nullptr, {"Font", {QFont(family, 17, weight, italic), Qt::red}});
        QVERIFY(accept.seen() && chosen);
        QTEST(shown, "shown");
        QCOMPARE(chosen->font.bold(), weight == QFont::Bold);
        QCOMPARE(chosen->font.italic(), italic);
        QCOMPARE(chosen->font.pointSize(), 17);
        QVERIFY(chosen->font.styleName().isEmpty());
    }

    void anotherSizeLeavesTheStyle()
    {
        quorvia::test::NextDialog<QDialog> accept([](QDialog& dialog) {
            auto* const fonts = dialog.findChild<QFontDialog*>();
            QFont larger = fonts->currentFont();
            larger.setPointSize(20);
            fonts->setCurrentFont(larger);
            pressOk(dialog);
        });
        const auto chosen = askFont(nullptr, {"Font", {QFont(family, 17, QFont::Normal, true), Qt::red}});
        QVERIFY(accept.seen() && chosen);
        QCOMPARE(chosen->font.pointSize(), 20);
        QVERIFY(chosen->font.italic() && !chosen->font.bold());
    }

    /// So the slope can be taken off too: by another style and back.
    void whatIsChosenCounts_data()
    {
        QTest::addColumn<QStringList>("choices");
        QTest::addColumn<bool>("bold");
        QTest::newRow("another") << QStringList{"Bold"} << true;
        QTest::newRow("another and back") << QStringList{"Bold", "Book"} << false;
    }
    void whatIsChosenCounts()
    {
        QFETCH(QStringList, choices);
        quorvia::test::NextDialog<QDialog> accept([&](QDialog& dialog) {
            for (const QString& choice : choices)
                chooseStyle(dialog, choice);
            pressOk(dialog);
        });
        const auto chosen = askFont(nullptr, {"Font", {QFont(family, 17, QFont::Normal, true), Qt::red}});
        QVERIFY(accept.seen() && chosen);
        QTEST(chosen->font.bold(), "bold");
        QVERIFY(!chosen->font.italic());
    }

    void nearest_data()
    {
        QTest::addColumn<Styles>("styles");
        QTest::addColumn<int>("weight");
        QTest::addColumn<bool>("italic");
        QTest::addColumn<QString>("name");
        const Styles full{{"Bold", 700, false},       {"Bold Oblique", 700, true},
                          {"Book", 400, false},       {"Condensed Bold", 700, false},
                          {"ExtraLight", 200, false}, {"Oblique", 400, true}};
        QTest::newRow("plain") << full << 400 << false << "Book";
        QTest::newRow("bold, not condensed") << full << 700 << false << "Bold";
        QTest::newRow("italic") << full << 400 << true << "Oblique";
        QTest::newRow("both") << full << 700 << true << "Bold Oblique";
        QTest::newRow("the nearest weight") << full << 600 << false << "Bold";
        QTest::newRow("the weight before the slope") << full << 200 << true << "ExtraLight";
        const Styles upright{{"Bold", 700, false}, {"Book", 400, false}};
        QTest::newRow("no slope") << upright << 400 << true << "Book";
        QTest::newRow("no slope, bold") << upright << 700 << true << "Bold";
        const Styles sloped{{"Italic", 400, true}};
        QTest::newRow("only sloped") << sloped << 700 << false << "Italic";
        const Styles alike{{"Book", 400, false}, {"Text", 400, false}};
        QTest::newRow("of equals the first") << alike << 400 << false << "Book";
        QTest::newRow("none") << Styles() << 400 << false << QString();
    }
    void nearest()
    {
        QFETCH(Styles, styles);
        QFETCH(int, weight);
        QFETCH(bool, italic);
        QTEST(nearestStyle(styles, weight, italic), "name");
    }
};

QTEST_MAIN(TestFontDialog)
#include "tst_fontdialog.moc"
