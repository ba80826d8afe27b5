// Keeps docs/how-to-add.md true: it has five steps, and all lines that each of them shows stand in a file
// that it names, the first ones in the first.
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

class TestHowToAdd : public QObject
{
    Q_OBJECT

  private:
    static QString contents(const QString& path)
    {
        QFile file(QStringLiteral(QUORVIA_SOURCE "/") + path);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).remove(QLatin1Char('\r'));
    }

    /// All that the brackets of `expression` hold in `text`.
    static QStringList all(const QRegularExpression& expression, const QString& text)
    {
        QStringList found;
        for (auto match = expression.globalMatch(text); match.hasNext();)
            found.append(match.next().captured(1));
        return found;
    }

    static QStringList steps()
    {
        return contents(QStringLiteral("docs/how-to-add.md")).split(QStringLiteral("\n## ")).mid(1);
    }

  private Q_SLOTS:
    void thereAreFiveSteps()
    {
        const QStringList all = steps();
        QCOMPARE(all.size(), 5);
        for (int i = 0; i < all.size(); ++i)
            QVERIFY2(all.at(i).startsWith(QString::number(i + 1) + QStringLiteral(". ")),
                     qPrintable(all.at(i).left(40)));
    }

    void theLinesShownStandWhereItSays()
    {
        static const QRegularExpression path(QStringLiteral("`((?:src|data)/[^`]+)`"));
        static const QRegularExpression block(QStringLiteral("\n```[a-z]*\n(.*?)\n```"),
                                              QRegularExpression::DotMatchesEverythingOption);
        for (const QString& step : steps()) {
            const QStringList files = all(path, step);
            const QStringList blocks = all(block, step);
            QVERIFY2(!files.isEmpty() && !blocks.isEmpty(), qPrintable(step));
            for (const QString& lines : blocks) {
                QVERIFY2(lines.contains(QLatin1String("miBestFit")), qPrintable(lines));
                const auto holds = [&lines](const QString& file) { return contents(file).contains(lines); };
                QVERIFY2(std::any_of(files.begin(), files.end(), holds), qPrintable(lines));
            }
            QVERIFY2(contents(files.first()).contains(blocks.first()), qPrintable(files.first()));
        }
    }

    void theFilesNamedAreThere()
    {
        static const QRegularExpression named(QStringLiteral("`((?:src|data|docs|tests)/[^`]+)`"));
        auto match = named.globalMatch(contents(QStringLiteral("docs/how-to-add.md")));
        QVERIFY(match.hasNext());
        while (match.hasNext()) {
            const QString path = match.next().captured(1);
            QVERIFY2(QFile::exists(QStringLiteral(QUORVIA_SOURCE "/") + path), qPrintable(path));
        }
    }
};

QTEST_GUILESS_MAIN(TestHowToAdd)
#include "tst_howtoadd.moc"
