// What can be chosen about the printed page: the controls on the left of the print window. Tells of each
// change; knows nothing of the page itself.
#pragma once

#include "output/PageLayout.h"
#include "output/PageTexts.h"
#include "output/PrintSettings.h"

#include <QWidget>

#include <array>

class QBoxLayout;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace quorvia::output {

class EffectsMenu;
class FlatButton;

class PrintOptions : public QWidget
{
    Q_OBJECT

  public:
    explicit PrintOptions(QWidget* parent);

    QString title() const;
    TitleAlign titleAlign() const;
    bool withName() const;
    bool withDirectory() const;
    AreaMode area() const;
    /// Tells of it by changed() unless it is chosen already.
    void chooseArea(AreaMode area);
    PageBoxes boxes() const;
    /// Fills the boxes that hold something else, and tells of each.
    void setBoxes(const PageBoxes& boxes);
    int layoutLine() const;
    double zoom() const;
    Decorations decorations() const;

    /// Shows `settings`, telling of what changes by that. Font and colour are none of its business.
    void show(const PrintSettings& settings);
    /// Puts what it shows into `settings`.
    void put(PrintSettings& settings) const;
    void sayPage(const QString& text);

  Q_SIGNALS:
    void changed(); ///< a list, an option, a check or a decoration
    void titleTyped();
    void boxTyped(const QString& text);
    void layoutChanged();
    void zoomChanged();
    void fontWanted();

  private:
    void addTitle(QBoxLayout& rows);
    void addFooter(QBoxLayout& rows);
    void addLayout(QBoxLayout& rows);
    void addAreas(QBoxLayout& rows);
    void addBoxes(QBoxLayout& rows);
    void addLooks(QBoxLayout& rows);
    QLineEdit* addBox(QGridLayout& grid, int place, const char* name, const QString& caption);
    QCheckBox* addCheck(const char* name, const QString& text);
    QComboBox* addList(const char* name, const QString& accessible, const QStringList& lines);

    QLineEdit* m_txtTitle = nullptr;
    QComboBox* m_cboTitle = nullptr;
    QCheckBox* m_chkFilename = nullptr;
    QCheckBox* m_chkPath = nullptr;
    QButtonGroup* m_oLayout = nullptr;
    QButtonGroup* m_oA = nullptr;
    std::array<QLineEdit*, 4> m_boxes{}; ///< left, top, width, height
    QComboBox* m_cboZoom = nullptr;
    FlatButton* m_effects = nullptr;
    EffectsMenu* m_FXFeatures = nullptr;
    QLabel* m_lPage = nullptr;
};

} // namespace quorvia::output
