// The filmstrip below the picture: fills it from the file list, keeps its selection at the current image, and
// turns clicks on it into steps in the list or its menu. While it is hidden nothing is read or painted.
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace quorvia::collections {
class Filmstrip;
class PictureList;
} // namespace quorvia::collections

namespace quorvia::viewer {

class FilmstripHost : public QObject
{
    Q_OBJECT

  public:
    struct Parts
    {
        QWidget* pFilm; ///< the pane that the strip fills
        collections::PictureList* list;
        std::function<QString()> currentFile;              ///< native path; empty when no image is open
        std::function<bool()> isShown;                     ///< whether the pane can be seen
        std::function<void(const QString& file)> openMenu; ///< the menu of one image, at the mouse
    };

    /// Lives in `parts.pFilm`.
    explicit FilmstripHost(Parts parts);

    collections::Filmstrip* Filmstrip1() const { return m_Filmstrip1; }

    /// Fills the strip anew when the list has another fingerprint than what stands in it, and shows the
    /// current image then; else nothing happens. Called too when the pane comes into sight or goes.
    void showList();
    /// Selects the current image and brings it into view; no selection when it is not in the strip.
    void showCurrent();
    /// The picture in `file` is another one, or has gone: what the strip shows of it is read anew, when it
    /// can be seen. The current image, once it is marked, is left to showCurrent().
    void refreshEntry(const QString& file);
    /// Shows `rows` rows of images.
    void setRows(int rows);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool noteSight();
    void clicked(int index, int button);
    int currentPosition() const;

    Parts m_parts;
    collections::Filmstrip* m_Filmstrip1;
    bool m_outdated = false; ///< what stands in the strip is of another content than its files
};

} // namespace quorvia::viewer
