// The scratch file: where it lies, who may see it, and that nobody else has the same one.
#include "output/ConversionScratch.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

using namespace quorvia;
using output::ConversionScratch;

namespace {

void put(const QString& path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("x"), 1);
}

} // namespace

class TestConversionScratch : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    QString folder() const { return m_home->path(QStringLiteral("root/Conversion/")); }
    QStringList names() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::ScratchHome>(); }

    void makesItsFolderForItsOwner()
    {
        ConversionScratch scratch(folder());
        constexpr auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup |
                                QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;
        QVERIFY(QFileInfo(folder()).isDir());
        QVERIFY(!(QFileInfo(folder()).permissions() & others));
    }

    void hasTheToldName()
    {
        ConversionScratch scratch(folder());
        QCOMPARE(scratch.fileFor(QStringLiteral("png")), folder() + QStringLiteral("tempimage.png"));
        QCOMPARE(scratch.fileFor(QString()), folder() + QStringLiteral("tempimage."));
    }

    void leavesNothing()
    {
        {
            ConversionScratch scratch(folder());
            put(scratch.fileFor(QStringLiteral("png")));
            put(scratch.fileFor(QStringLiteral("jpg")));
            QCOMPARE(names(), QStringList{"tempimage.jpg"});
            scratch.remove();
            QCOMPARE(names(), QStringList());
            put(scratch.fileFor(QStringLiteral("bmp")));
        }
        QCOMPARE(names(), QStringList());
    }

    void clearsWhatWasLeft()
    {
        QVERIFY(QDir().mkpath(folder()));
        put(folder() + QStringLiteral("tempimage.tif"));
        put(folder() + QStringLiteral("mine.tif"));
        ConversionScratch scratch(folder());
        QCOMPARE(names(), QStringList{"mine.tif"});
    }

    void clearsWhatAProgramWithAFolderOfItsOwnLeft()
    {
        QVERIFY(QDir().mkpath(folder() + QStringLiteral("other-abcdef")));
        put(folder() + QStringLiteral("other-abcdef/tempimage.jpg"));
        auto first = std::make_unique<ConversionScratch>(folder());
        QCOMPARE(names(), QStringList());
        ConversionScratch second(folder()); // one that runs keeps its own
        const QString file = second.fileFor(QStringLiteral("png"));
        put(file);
        first.reset();
        ConversionScratch third(folder());
        QVERIFY(QFileInfo::exists(file));
        QCOMPARE(names().size(), 1);
    }

    void twoDoNotShare()
    {
        auto first = std::make_unique<ConversionScratch>(folder());
        const QString firstFile = first->fileFor(QStringLiteral("png"));
        put(firstFile);
        auto second = std::make_unique<ConversionScratch>(folder());
        const QString secondFile = second->fileFor(QStringLiteral("png"));
        put(secondFile);
        QVERIFY(secondFile != firstFile);
        QVERIFY(secondFile.startsWith(folder()));
        QVERIFY(secondFile.endsWith(QLatin1String("/tempimage.png")));
        QVERIFY(QFileInfo::exists(firstFile));
        second.reset();
        QCOMPARE(names(), QStringList{"tempimage.png"});
        first.reset();
        QCOMPARE(names(), QStringList());
        ConversionScratch third(folder());
        QCOMPARE(third.fileFor(QStringLiteral("png")), firstFile);
    }

    void whereNoFolderCanBeMade()
    {
        m_home->write(QStringLiteral("root"), "a file");
        ConversionScratch scratch(folder());
        QCOMPARE(scratch.fileFor(QStringLiteral("png")), folder() + QStringLiteral("tempimage.png"));
        scratch.remove();
    }
};

QTEST_GUILESS_MAIN(TestConversionScratch)
#include "tst_conversionscratch.moc"
