// The window through which a batch conversion passes each image: original and result side by side, the
// question, and the write. One object serves a whole batch. Dear is what a conversion is: two decodes and two
// encodes.
#pragma once

#include "engine/ImageLoader.h"
#include "output/ConversionScratch.h"
#include "platform/HeldKeys.h"

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

class QCheckBox;
class QPushButton;

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::output {

class frmImageConvert : public QDialog
{
    Q_OBJECT

  public:
    /// `loader` is shared with the main window, `parent`, which owns this one.
    explicit frmImageConvert(std::shared_ptr<engine::ImageLoader> loader, QWidget* parent = nullptr);
    ~frmImageConvert() override;

    /// Shows the image at `source` and what becomes of it at `target` (native paths; the extension of
    /// `target` is the format), asks, and writes `target` when told to. With `yesToAll` it writes without
    /// asking whether to convert; only for a target that is there already it asks, as always. Returns when
    /// the window is closed: "Yes", "Yes to all", "No" or "Cancel". When source or result cannot be made,
    /// nothing is written and no file touched, whatever the answer; the log has why.
    QString LoadConversion(const QString& source, const QString& target, bool yesToAll);

    /// A batch begins: nothing is deleted unless the user wants it of this one.
    void beginBatch();
    /// Names the source of the conversion after the next one (empty: none is known), which is then read while
    /// the next one is written.
    void expectNext(const QString& source) { m_next = source; }
    /// A batch has ended. With "Yes to all" the window has been up until now.
    void endBatch();
    /// The program is about to end: nothing more is written or deleted, and every answer is "Cancel".
    void stop();

    void reject() override;
    void done(int result) override;

  protected:
    void changeEvent(QEvent* event) override;

  private:
    QWidget* buildPicture(engine::ImageEngine* engine, const QString& title);
    QWidget* buildAnswers();
    QPushButton* addAnswer(const char* name, const QString& text, int key, QLatin1String word, bool writes);
    void takeDesktopColors();
    void preview(const QString& source, const QString& target);
    bool saveScratch(const QString& source, const QString& target);
    void takePlace();
    void ask();
    void goOnAlone();
    void convert(const QString& source, const QString& target, bool yesToAll);
    void answer(QLatin1String word, bool writes);
    void write(QLatin1String word);
    void writeTarget();
    bool mayReplace();
    bool saveTarget();
    bool copyScratch(QString& why);
    bool savePreview(QString& why);
    void letGo();
    QString source() const;
    QString target() const;

    const std::shared_ptr<engine::ImageLoader> m_loader;
    ConversionScratch m_scratch;
    engine::ImageEngine* m_ixOri;
    engine::ImageEngine* m_ixPreview;
    QCheckBox* m_chkDelete = nullptr;
    QList<QPushButton*> m_answers; ///< Yes first

    engine::PageKey m_read; ///< of the source, from before it was read
    QString m_scratchFile;  ///< holds the result; empty when it could not be made
    QString m_answer;
    std::optional<QPoint> m_place; ///< of the window's frame, where it was closed
    platform::HeldKeys m_heldKeys; ///< a key that is held answers one image, not those that come after it
    QString m_next;                ///< what is converted after this one
    bool m_isOver = false;         ///< stop() was called
    bool m_busy = false;           ///< LoadConversion() has not returned
    bool m_writing = false;        ///< the write step is under way
    bool m_stopped = false;        ///< the window was closed while it wrote without asking
};

} // namespace quorvia::output
