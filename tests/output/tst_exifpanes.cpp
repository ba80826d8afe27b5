// The panes and rows of the side bar.
#include "output/ExifPanes.h"

#include <QTest>

using namespace quorvia;
using output::PhotoFacts;
using platform::Pane;
using platform::PaneItem;

namespace {

PhotoFacts somePhoto()
{
    return {.name = QStringLiteral("sea.jpg"),
            .bytes = 1263616,
            .image = {.pixels = QSize(640, 480), .bitsPerPixel = 24},
            .colors = 4711};
}

/// "pane/row" of all rows, from top to bottom.
QStringList keysOf(const QList<Pane>& panes)
{
    QStringList keys;
    for (const Pane& pane : panes) {
        for (const PaneItem& item : pane.items)
            keys.append(pane.key + u'/' + item.key);
    }
    return keys;
}

QStringList titlesOf(const QList<Pane>& panes)
{
    QStringList titles;
    for (const Pane& pane : panes)
        titles.append(pane.title);
    return titles;
}

PaneItem rowOf(const QList<Pane>& panes, const QString& key)
{
    for (const Pane& pane : panes) {
        for (const PaneItem& item : pane.items) {
            if (item.key == key)
                return item;
        }
    }
    qFatal("no row %s", qPrintable(key));
}

} // namespace

class TestExifPanes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void withoutAPhotograph()
    {
        const QList<Pane> panes = output::exifPanes(std::nullopt);
        QCOMPARE(titlesOf(panes), QStringList{" Experience"});
        QCOMPARE(keysOf(panes), QStringList({"Tools/Welcome", "Tools/Slideshow"}));
    }

    void withAPhotograph()
    {
        const QList<Pane> panes = output::exifPanes(somePhoto());
        QCOMPARE(titlesOf(panes),
                 QStringList({" Experience", " Photo Information", "Description:", "EXIF Information:"}));
        QCOMPARE(keysOf(panes),
                 QStringList({"Tools/Welcome", "Tools/Slideshow", "Information/File", "Information/Dimension",
                              "Information/Date", "Desc/Desci", "Desc/DescAdd", "EXIF/EXIFI"}));
    }

    void rows_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tag");
        QTest::newRow("Welcome") << "Welcome Screen"
                                 << "miCloseImage";
        QTest::newRow("Slideshow") << "View as Slideshow"
                                   << "miCloseImage";
        QTest::newRow("File") << "sea.jpg"
                              << "";
        QTest::newRow("Dimension")
            << "Photo: 640x480 24bpp\nFile Size: 1,234 KB (1,263,616 bytes)\nUnique Colors: 4711"
            << "";
        QTest::newRow("Date")
            << "Created: Jan. 14th, 2003\nModified: Jan. 14th, 2003\nAccessed: Jan. 14th, 2003"
            << "";
        QTest::newRow("Desci") << "No description is available."
                               << "";
        QTest::newRow("DescAdd") << "Add/Edit Description"
                                 << "";
        QTest::newRow("EXIFI") << "Date/Time\nAperture:\nShutter speed:\nFocal Length:\nISO:\nCamera "
                                  "Make:\nCamera Model:"
                               << "";
    }

    void rows()
    {
        const PaneItem row =
            rowOf(output::exifPanes(somePhoto()), QString::fromLatin1(QTest::currentDataTag()));
        QTEST(row.text, "text");
        QTEST(row.tag, "tag");
    }

    void colorsThatAreNotCountedAreLeftOut()
    {
        PhotoFacts photo = somePhoto();
        photo.colors.reset();
        QVERIFY(rowOf(output::exifPanes(photo), QStringLiteral("Dimension"))
                    .text.endsWith(QLatin1String("\nUnique Colors: ")));
    }

    void theDatesAreThoseOfNoFile()
    {
        PhotoFacts other{.name = QStringLiteral("b.png")};
        QCOMPARE(rowOf(output::exifPanes(other), QStringLiteral("Date")),
                 rowOf(output::exifPanes(somePhoto()), QStringLiteral("Date")));
    }

    void aNameOfSeveralLinesStandsOnOne()
    {
        PhotoFacts photo = somePhoto();
        photo.name = QStringLiteral("two\nlines.png");
        QCOMPARE(rowOf(output::exifPanes(photo), QStringLiteral("File")).text,
                 QStringLiteral("two lines.png"));
    }
};

QTEST_APPLESS_MAIN(TestExifPanes)
#include "tst_exifpanes.moc"
