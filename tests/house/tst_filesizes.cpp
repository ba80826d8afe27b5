// Keeps the files short: whoever reads one holds it in the head. Everything that is written here counts:
// code, tests, benchmarks, tools.
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace {

const QString root = QStringLiteral(QUORVIA_SOURCE "/");
constexpr int mostLines = 500;

/// The files of code and text below the directories of the house, with their paths from the root.
QStringList writtenFiles()
{
    static const QRegularExpression kind(QStringLiteral("\\.(cpp|h|inc|py|sh|cmake|txt|json)$"));
    QStringList files;
    for (const char* directory : {"src", "tests", "bench", "tools", "fuzz", "cmake"}) {
        QDirIterator each(root + QLatin1String(directory), QDir::Files, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            const QString path = each.next();
            if (kind.match(path).hasMatch() || !each.fileName().contains(u'.')) // tools without an ending
                files.append(path.mid(root.size()));
        }
    }
    files.sort();
    return files;
}

/// The number of lines of a file; -1 where it cannot be read.
int linesOf(const QString& path)
{
    QFile file(root + path);
    return file.open(QIODevice::ReadOnly) ? int(file.readAll().count('\n')) : -1;
}

} // namespace

class TestFileSizes : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void noFileIsTooLong()
    {
        const QStringList files = writtenFiles();
        QVERIFY(files.size() > 1000); // the house was found
        QStringList tooLong;
        for (const QString& path : files) {
            const int lines = linesOf(path);
            QVERIFY2(lines >= 0, qPrintable(path));
            if (lines > mostLines)
                tooLong.append(QStringLiteral("%1: %2 lines").arg(path).arg(lines));
        }
        QVERIFY2(tooLong.isEmpty(), qPrintable(tooLong.join(u'\n')));
    }
};

QTEST_GUILESS_MAIN(TestFileSizes)
#include "tst_filesizes.moc"
