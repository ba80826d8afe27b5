// The information panel in a window of its own, for tests that type into it.
#pragma once

#include "app/Colors.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/WaitingInput.h"
#include "support/ScratchHome.h"
#include "viewer/DescriptionFile.h"
#include "viewer/InformationPanel.h"

#include <QDir>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTest>

#include <memory>
#include <utility>

namespace quorvia::test {

/// The panes of a window with the panel in them, the current image, and what was asked.
class PanelBench
{
  public:
    /// `folder` (with a separator at its end) holds the images.
    explicit PanelBench(const QString& folder) : pictures(folder)
    {
        window.resize(900, 180);
        pInformation.setGeometry(window.rect());
        pShowInfo.setGeometry(3, 3, 894, 174);
        for (QWidget* pane : {&pInformation, &pShowInfo})
            pane->setAutoFillBackground(true);
        app::setPaneColor(&pInformation, QColor(0, 121, 191));
        panel = std::make_unique<viewer::InformationPanel>(viewer::InformationPanel::Parts{
            .pShowInfo = &pShowInfo,
            .isShown = [this] { return !pInformation.isHidden(); },
            .fileName = [this] { return current; },
            .image = {.facts = [this] { return facts; },
                      .uniqueColors =
                          [this] {
                              ++counts;
                              if (!fallBack.isNull())
                                  current = std::exchange(fallBack, QString());
                              return colors;
                          }},
            .openFolder = [this](const QString& opened) { folders.append(opened); }});
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("no window");
    }

    QString image(const char* name) const { return pictures + QLatin1String(name); }
    void open(const char* name)
    {
        current = image(name);
        panel->showCurrent();
        letInputPass();
    }
    /// Until keys are taken again that a change of image keeps from its description.
    void letInputPass()
    {
        const auto* const waiting = part<app::WaitingInput>("");
        if (!app::letEventsRunUntil([waiting] { return !waiting->isPassing(); }, 5000))
            qFatal("input still waits");
    }
    template <class T>
    T* part(const char* name)
    {
        T* const found = window.findChild<T*>(QLatin1String(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }
    QPlainTextEdit* tDes() { return part<QPlainTextEdit>("tDes"); }
    QString textOf(const char* field) { return part<QPlainTextEdit>(field)->toPlainText(); }
    QTimer* tSaveDes() { return part<QTimer>("tSaveDes"); }
    /// Makes `text` the description of the image in its present state.
    bool store(const char* name, const QString& text) const
    {
        return viewer::writeDescription(viewer::descriptionPath(image(name)), text);
    }
    QString stored(const char* name) const
    {
        return viewer::readDescription(viewer::descriptionPath(image(name))).text;
    }
    QStringList sidecars() const
    {
        return QDir(app::InstallPath() + QStringLiteral("Description")).entryList(QDir::Files);
    }
    /// Types over what tDes holds.
    void typeAnew(const QString& text)
    {
        tDes()->setFocus();
        tDes()->selectAll();
        QTest::keyClicks(tDes(), text);
    }
    /// Moves the mouse over the description with its left button down.
    void drawTo(int x)
    {
        QWidget* const text = tDes()->viewport();
        const QPointF place(x, 10);
        QMouseEvent move(QEvent::MouseMove, place, text->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(text, &move);
    }

    QString pictures;
    QWidget window;
    QWidget pInformation{&window};
    QWidget pShowInfo{&pInformation};
    QString current;
    QString fallBack; ///< the image that comes back when the pixels turn out to be unreadable
    app::ImageFacts facts{QSize(640, 480), 24};
    int colors = 77;
    int counts = 0;
    QStringList folders;
    std::unique_ptr<viewer::InformationPanel> panel;
};

/// That, in a fresh home with the images a.png, b.png and c.png.
struct PanelHome
{
    PanelHome()
    {
        for (const char* name : {"a.png", "b.png", "c.png"})
            home.write(QStringLiteral("pics/") + QLatin1String(name), name);
    }

    ScratchHome home;
    PanelBench bench{home.path(QStringLiteral("pics/"))};
};

/// What each test of the panel stands on: a new one for every function.
class PanelStage
{
  protected:
    void setUp() { m_stage = std::make_unique<PanelHome>(); }
    void tearDown() { m_stage.reset(); }
    PanelBench& bench() { return m_stage->bench; }

    std::unique_ptr<PanelHome> m_stage;
};

} // namespace quorvia::test
