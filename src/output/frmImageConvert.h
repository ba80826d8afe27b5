// The window through which a batch conversion passes each image: original and result side by side, the
// question, and the write. One object serves a whole batch. Dear is what a conversion is: two decodes and two
// encodes.
#pragma once

#include "engine/ImageLoader.h"
#include "output/ConversionScratch.h"

#include <QDialog>
#include <QString>

#include <memory>

class QCheckBox;
class QLabel;
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

    void reject() override;

  private:
    class Parts;

    void buildParts();
    void buildAnswers(Parts& parts);
    bool loadPreview(const QString& source, const QString& target);
    void answer(const QString& word, bool writes);
    void writeTarget();
    bool mayReplace();
    bool saveTarget();
    void setJpegSettings(engine::ImageEngine* engine, const QString& path);
    void setAsking(bool asks);
    void letGo();

    std::shared_ptr<engine::ImageLoader> m_loader;
    ConversionScratch m_scratch;
    engine::ImageEngine* m_ixOri;
    engine::ImageEngine* m_ixPreview;
    QCheckBox* m_chkDelete = nullptr;
    QPushButton* m_cmdYes = nullptr;
    QPushButton* m_cmdYesToAll = nullptr;
    QPushButton* m_cmdNo = nullptr;
    QPushButton* m_cmdCancel = nullptr;

    engine::PageKey m_read; ///< of the source, from before it was read
    QString m_answer;
    bool m_busy = false;
};

} // namespace quorvia::output
