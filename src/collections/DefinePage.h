// The page of the playlist editor where the named playlists are made, renamed and deleted. It only tells what
// the user wants.
#pragma once

#include <QWidget>

class QFrame;
class QListWidget;
class QPushButton;

namespace quorvia::collections {

class DefinePage : public QWidget
{
    Q_OBJECT

  public:
    explicit DefinePage(QWidget* parent = nullptr);

    /// The playlists to choose from; none is selected afterwards.
    void showNames(const QStringList& names);

  Q_SIGNALS:
    void createWanted();
    /// The selected playlist is to have another name, or is to go.
    void renameWanted(const QString& name);
    void deleteWanted(const QString& name);
    void finished();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QPushButton* makeButton(const char* name, const QString& caption);
    QString selected() const;
    void layOut();

    QFrame* m_pDefine;
    QListWidget* m_lPlaylistNames;
    QPushButton* m_cmdCreate;
    QPushButton* m_cmdRename;
    QPushButton* m_cmdDelete;
    QPushButton* m_cmdClose;
};

} // namespace quorvia::collections
