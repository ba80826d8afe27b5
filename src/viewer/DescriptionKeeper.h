// Keeps what the user writes about an image: it is saved half a second after the last key, or as soon as
// another image comes, always for the state of the image's file that the box was filled from. To show a
// description and to save one takes the disk; the first key after a pause asks for the state of the file.
//
// What the disk does not take stays in memory, shows again with its image, and is tried again with each save.
#pragma once

#include "viewer/DescriptionFile.h"

#include <QHash>
#include <QObject>
#include <QString>

class QTimer;

namespace quorvia::viewer {

class DescriptionField;

class DescriptionKeeper : public QObject
{
    Q_OBJECT

  public:
    /// Keeps what stands in `tDes`, which outlives this.
    explicit DescriptionKeeper(DescriptionField* tDes, QObject* parent = nullptr);

    /// Saves what waits, and shows the description of the image at `image`; "(none)" when it has none or
    /// there is no such file.
    void show(const QString& image);
    /// True while a changed description waits for its delay to go by.
    bool isUnsaved() const;
    /// Saves the description that waits, if one does, and those that could not be saved before.
    void saveNow();

  Q_SIGNALS:
    /// The image's file, or its description, has changed since it was shown, and the user is about to write.
    void outdated();

  private:
    void noteEdit();
    Description description(const QString& sidecar) const;
    void enter();
    void lookAgain();
    bool mayLook() const;
    bool isOutdated() const;
    void showAgain();
    void takeText();

    DescriptionField* m_tDes;
    QTimer* m_tSaveDes;
    QString m_image;
    QString m_sidecar;                 ///< of the state that is shown; empty when there is no file
    QString m_stored;                  ///< what tDes held when it was last shown or taken to be saved
    QHash<QString, QString> m_unsaved; ///< by sidecar: what the disk has not taken yet
};

} // namespace quorvia::viewer
