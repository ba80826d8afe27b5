// The window in which the user edits the stored options. Nothing is written before "Accept", apart from what
// the buttons of its pages do at once.
#pragma once

#include "system/OptionTexts.h"

#include <QColor>
#include <QDialog>
#include <QString>

#include <functional>

class QStackedWidget;

namespace quorvia::controls {
class gnTab;
}

namespace quorvia::system {

/// What lies outside of the window. All of them are called.
struct OptionSinks
{
    std::function<QColor()> backColor;                  ///< of the viewport, `pContain`, as it is now
    std::function<void(const QColor&)> setBackColor;    ///< of `pContain` and of the picture's control `ix1`
    std::function<void()> applyAssociations;            ///< makes this program the viewer of all formats
    std::function<void(const QString&)> associateOther; ///< the same with an existing file, by its path
    /// Counts the thumbnails, between the events, and tells of it.
    std::function<void(std::function<void(const ThumbnailStatistics&)>)> countThumbnails;
    std::function<void(QWidget*)> clearThumbnails; ///< deletes the counted ones; a long run shows over that
    std::function<void()> endProcess;              ///< at once, without closing any window
};

class frmImageViewOptions : public QDialog
{
    Q_OBJECT

  public:
    /// Shows what is stored. The thumbnails are counted once it is on the screen.
    explicit frmImageViewOptions(OptionSinks sinks, QWidget* owner = nullptr);

    /// "Accept": writes all options, colours the viewport and closes.
    void accept() override;

  protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addPages();
    void fitTabs();
    void addButtons();
    void connectButtons();
    void addKeys();
    void loadOptions();
    void saveOptions();
    void stepTab(int step);
    void chooseColor(const char* patch);
    void sayGray();
    void countThumbnails();

    void associate();
    void associateOther();
    void clearThumbnails();
    void purge();

    template <class Kind = QWidget>
    Kind* part(const char* name) const
    {
        return findChild<Kind*>(QLatin1String(name));
    }

    OptionSinks m_sinks;
    controls::gnTab* m_gTab;
    QStackedWidget* m_pages;
    bool m_isCounted = false;
};

} // namespace quorvia::system
