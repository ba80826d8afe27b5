// The box of the playlist editor in which a playlist is chosen: the named ones, and below them an empty line
// and two commands.
#pragma once

#include <QComboBox>
#include <QPointer>

namespace quorvia::collections {

class PlaylistCombo : public QComboBox
{
    Q_OBJECT

  public:
    explicit PlaylistCombo(QWidget* parent = nullptr);

    /// Replaces the lines; none is shown afterwards.
    void fill(const QStringList& names);
    /// Shows the line of the playlist `name`; no line when there is none of that name.
    void showName(const QString& name);
    /// Takes no input until switchOn(). The keys come back then, unless the user has gone elsewhere.
    void switchOff();
    void switchOn();

  protected:
    void wheelEvent(QWheelEvent* event) override;

  Q_SIGNALS:
    // What the user chose.
    void picked(const QString& name);
    void createPicked();
    void definePicked();
    void nothingPicked();

  private:
    void tell(int line);
    int playlists() const;

    bool m_hadFocus = false;
    QPointer<QWidget> m_focusThen; ///< what had the keys when it was switched off
};

} // namespace quorvia::collections
