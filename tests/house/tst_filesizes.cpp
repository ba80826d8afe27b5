// Keeps the files short: whoever reads one holds it in the head. Every text that is written here counts:
// code, tests, benchmarks, tools, data, docs, and what starts them; pictures and other files with zero bytes
// do not.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QTest>

#include <optional>

namespace {

const QString root = QStringLiteral(QUORVIA_SOURCE "/");
constexpr int mostLines = 500;

/// What a file holds; nothing where it cannot be read.
std::optional<QByteArray> contentsOf(const QString& path)
{
    QFile file(root + path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

/// The files at the root and all below the directories of the house, with their paths from the root.
QStringList filesOfTheHouse()
{
    QStringList files = QDir(root).entryList(QDir::Files | QDir::Hidden);
    for (const char* directory : {".ci", "bench", "cmake", "data", "docs", "fuzz", "src", "tests", "tools"}) {
        QDirIterator each(root + QLatin1String(directory), QDir::Files, QDirIterator::Subdirectories);
        while (each.hasNext())
            files.append(each.next().mid(root.size()));
    }
    files.sort();
    return files;
}

} // namespace

class TestFileSizes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void noFileIsTooLong()
    {
        QSet<QString> written;
        QStringList tooLong;
        for (const QString& path : filesOfTheHouse()) {
            const std::optional<QByteArray> contents = contentsOf(path);
            QVERIFY2(contents, qPrintable(path));
            if (contents->contains('\0'))
                continue;
            written.insert(path);
            if (const auto lines = contents->count('\n'); lines > mostLines)
                tooLong.append(QStringLiteral("%1: %2 lines").arg(path).arg(lines));
        }
        QVERIFY(written.size() > 1000); // the house was found
        for (const char* one : {"check", "run", ".ci/run", "CMakeLists.txt", "README.md", "bench/compare",
                                "bench/viewers.conf", "cmake/Rooms.cmake", "data/interface.dat",
                                "data/help/style.css", "docs/subjects.md", "src/main.cpp", "tools/lint"})
            QVERIFY2(written.contains(QLatin1String(one)), one);
        QVERIFY2(tooLong.isEmpty(), qPrintable(tooLong.join(u'\n')));
    }
};

QTEST_GUILESS_MAIN(TestFileSizes)
#include "tst_filesizes.moc"
