// A list of five pictures, the actions over it, and services that write down what they are asked for. The
// conversion writes the target's name into its file; what is deleted goes to a trash of the test's own.
#pragma once

#include "app/Paths.h"
#include "collections/BatchActions.h"
#include "collections/PictureList.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistKeeper.h"
#include "ListBench.h"
#include "support/QolPaths.h"
#include "support/ScratchTrash.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <memory>
#include <utility>

namespace quorvia::test {

class BatchTest : public QObject
{
    Q_OBJECT

  protected:
    ScratchTrash m_trash;
    std::unique_ptr<ListBench> m_bench;
    std::unique_ptr<collections::PictureList> m_list;
    std::unique_ptr<collections::BatchActions> m_batch;

    QStringList m_calls;   ///< to the conversion: "source > target", "!" behind those without a question
    QStringList m_answers; ///< of the conversion, in order; the last one goes on
    QStringList m_steps;   ///< what the main window was told
    QStringList m_batches; ///< what was told of runs
    QStringList m_expected;
    std::function<void()> m_during;
    QString m_tool;
    QStringList m_started;
    bool m_starts = true;

    QString in(const QString& name) const { return m_bench->home.path(name); }
    QStringList pathsOf(const QStringList& names) const
    {
        QStringList paths;
        for (const QString& name : names)
            paths += in("pics/" + name);
        return paths;
    }
    collections::PlaylistKeeper& playlist() const { return *m_list->playlist(); }
    QStringList stored() const
    {
        QFile file(collections::namedPlaylistPath(playlist().ActivePlaylist()));
        return file.open(QIODevice::ReadOnly) ? test::qolPaths(file.readAll()) : QStringList("(none)");
    }
    QString relative(const QString& path) const { return QDir(in("pics")).relativeFilePath(path); }
    static QByteArray contentOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    QString logged() const { return QString::fromUtf8(contentOf(app::logPath())); }
    QStringList trashed() const { return m_trash.names(); }

    QString convert(const QString& source, const QString& target, bool yesToAll)
    {
        m_calls << relative(source) + " > " + relative(target) + (yesToAll ? "!" : "");
        if (m_during)
            m_during();
        QString answer = m_answers.size() > 1 ? m_answers.takeFirst() : m_answers.value(0);
        if (answer.startsWith("Yes")) {
            QFile file(target);
            if (file.open(QIODevice::WriteOnly))
                file.write(target.toUtf8());
        }
        return answer;
    }
    collections::BatchServices services()
    {
        return {.loadConversion = [this](const QString& source, const QString& target,
                                         bool yesToAll) { return convert(source, target, yesToAll); },
                .beginBatch = [this] { m_batches << "begun"; },
                .endBatch = [this] { m_batches << "ended"; },
                .expectNext = [this](const QString& source) { m_expected << relative(source); },
                .setUpdate = [this](bool visible) { m_steps << (visible ? "shown" : "hidden"); },
                .currentFile = [this] { return m_bench->window.current; },
                .releaseImage =
                    [this] {
                        m_steps << "released";
                        m_bench->window.current.clear();
                    },
                .openFile = [this](const QString& path) { m_steps << "open " + relative(path); },
                .mailTool = [this] { return m_tool; },
                .startTool =
                    [this](const QString& program, const QStringList& arguments) {
                        m_started = QStringList(program) + arguments;
                        return m_starts;
                    }};
    }
    /// The playlist's face with these pictures.
    void showPlaylist(const QStringList& names) const
    {
        playlist().AddPlaylistFiles(pathsOf(names));
        m_list->SelectTab(1);
        m_list->finishRebuild();
        QCOMPARE(m_list->ListCount(), int(names.size()));
    }
    void selectRows(std::vector<collections::RowRange> rows) const { m_list->setSelection(std::move(rows)); }
    void listFolder(const char* pattern) const
    {
        m_list->SetPattern(QLatin1String(pattern));
        m_list->finishRebuild();
    }

  protected Q_SLOTS:
    void init()
    {
        m_trash.clear();
        m_bench = std::make_unique<ListBench>();
        m_list = std::make_unique<collections::PictureList>([this] { return m_bench->window.current; });
        connect(m_list.get(), &collections::PictureList::OpenFile, m_list.get(),
                [this](const QString& file) { m_bench->window.OpenX(file); });
        m_list->startUp();
        m_list->setPath(in("pics"));
        listFolder("*.jpg");
        QCOMPARE(m_list->ListCount(), 5);
        m_batch = std::make_unique<collections::BatchActions>(m_list.get());
        m_batch->setServices(services());
        m_calls.clear();
        m_answers = QStringList("Yes");
        m_steps.clear();
        m_batches.clear();
        m_expected.clear();
        m_during = {};
        m_tool = "/opt/tools/postrel";
        m_started.clear();
        m_starts = true;
    }
    void cleanup()
    {
        m_batch.reset();
        m_list.reset();
        m_bench.reset();
    }
};

} // namespace quorvia::test
