// The slideshow: a timer that runs the commands of stepping, in one of three orders. It holds no list and no
// position; a tick costs what its command costs.
#pragma once

#include "app/SlideMode.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

namespace quorvia::output {

/// What the slideshow does to the windows. All of them are called.
struct SlideshowSinks
{
    std::function<void(const QString& name)> runTool;
    std::function<void()> updateToolbar;
    std::function<QString()> caption; ///< of the main window
    std::function<void(const QString& caption)> setCaption;
    std::function<bool()> isAsking;      ///< something goes on with the image on show, as a dialog about it
    std::function<bool()> isFullVisible; ///< the full-screen window shows
    std::function<void()> closeFull;
    std::function<void()> hideMain;
    std::function<void()> closeMain; ///< ends the program
};

class Slideshow : public QObject
{
    Q_OBJECT

  public:
    explicit Slideshow(SlideshowSinks sinks, QObject* parent = nullptr);

    /// Takes `slidemode` and `Interval` from the settings. An interval that no timer has counts as absent.
    /// Until then a running show takes no step: it does not know which.
    void readSettings();

    /// `tSlide` is enabled.
    bool isRunning() const { return m_tSlide.isActive(); }
    /// Milliseconds between two steps.
    int interval() const { return m_tSlide.interval(); }
    /// The mode as text, whatever was stored.
    QString slidemode() const { return m_slidemode; }

    // --- the commands

    /// `miSlideShow`: starts the show or stops it.
    void toggle();
    /// `tSldAdvance`, `tSldReverse`, `tSldRandom`: stores the mode, which holds from the next step on. Starts
    /// a show that does not run.
    void choose(app::SlideMode mode);
    /// `xSlideShow`: the show in the full-screen window alone. Once that window has gone the next tick ends
    /// the program.
    void startAlone();
    bool SlideShowOnly() const { return m_slideShowOnly; }

    // --- the bands, of which some pause the show while they are open

    void bandOpens(const QString& name);
    void bandCloses(const QString& name);
    /// The band that paused the show, or "".
    QString PausedByBand() const { return m_pausedByBand; }
    /// Whether the show ran when that band opened.
    bool PausedEnabledState() const { return m_pausedEnabledState; }

    // --- the delay tool

    /// What the tool says when its band opens: the interval in seconds.
    QString delayText() const;
    /// A key was typed into the tool. An empty text changes nothing, so that another one can be typed; any
    /// other counts as chosen. Returns what the tool has to say.
    QString typeDelay(const QString& text);
    /// A text of the tool was chosen or entered: it is brought between 1 and 60 seconds, holds at once and is
    /// stored. Returns what the tool has to say.
    QString chooseDelay(const QString& text);

  private:
    void setRunning(bool running);
    void tick();

    SlideshowSinks m_sinks;
    QTimer m_tSlide;
    QString m_slidemode;
    QString m_pausedByBand;
    bool m_pausedEnabledState = false;
    bool m_slideShowOnly = false;
    bool m_settingsRead = false;
    bool m_ticking = false;
};

/// Whether opening the band `name` pauses the show.
bool isPausingBand(const QString& name);

} // namespace quorvia::output
