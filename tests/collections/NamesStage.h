// The playlist editor with two named playlists: its box of names, the page where they are managed, and the
// questions that it asks.
#pragma once

#include "EditorBench.h"
#include "platform/Dialogs.h"

#include <QListWidget>

namespace quorvia::test {

class NamesStage
{
  protected:
    /// "one" holds a.jpg and c.png, "Two" d.jpg.
    void begin()
    {
        m_bench.begin();
        m_bench.writeList("one", {"a.jpg", "c.png"});
        m_bench.writeList("Two", {"d.jpg"});
    }
    void end()
    {
        m_bench.end();
        m_asked.clear();
    }

    QWidget& page() const { return m_bench.part<QWidget>("pDefinePlaylist"); }
    QListWidget& lPlaylistNames() const { return m_bench.part<QListWidget>("lPlaylistNames"); }
    QStringList lines() const
    {
        QStringList all;
        for (int line = 0; line < m_bench.cPlaylist().count(); ++line)
            all += m_bench.cPlaylist().itemText(line);
        return all;
    }
    static QStringList withClosingLines(QStringList names)
    {
        return names << QString() << QStringLiteral("(Define Playlist's)")
                     << QStringLiteral("(Create New Playlist)");
    }
    /// Adds the file "B.jpg" to the list in hand.
    void addB() const { m_bench.editor->AddPlaylistFile(m_bench.in("pics/B.jpg")); }
    /// Answers the next questions with `answer`.
    auto answering(const QString& answer)
    {
        return std::make_unique<platform::TextQuestionAnswerer>(
            [this, answer](const platform::TextQuestion& question) {
                m_asked.push_back(question);
                return answer;
            });
    }
    void openDefinePage() const
    {
        m_bench.choose(-2);
        QVERIFY(page().isVisible());
    }
    void selectName(const char* name) const
    {
        const auto found = lPlaylistNames().findItems(QString::fromUtf8(name), Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        QTest::mouseClick(lPlaylistNames().viewport(), Qt::LeftButton, {},
                          lPlaylistNames().visualItemRect(found.constFirst()).center());
    }
    void press(const char* button) const
    {
        QTest::mouseClick(&m_bench.part<QAbstractButton>(button), Qt::LeftButton);
    }

    EditorBench m_bench;
    std::vector<platform::TextQuestion> m_asked;
};

} // namespace quorvia::test
