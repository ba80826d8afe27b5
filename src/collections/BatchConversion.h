// One conversion of the selected entries, from its first question to the image that is on show again. Events
// run with each file: list and program may be closed by then, and the entries have moved.
#pragma once

#include "collections/BatchActions.h"

#include <QHash>
#include <QPointer>

namespace quorvia::collections {

class BatchConversion
{
  public:
    /// Of `entries` of the face of `list` that is in front.
    BatchConversion(PictureList* list, BatchServices services, std::vector<BatchEntry> entries);

    /// Converts them to the format of `ext`. What was done stays done when the user breaks off, or the list
    /// is closed or destroyed meanwhile.
    void run(const QString& ext);

  private:
    void convertAll(const QString& ext);
    QString convert(const BatchEntry& entry, const QString& ext, bool yesToAll);
    void noteConverted(const BatchEntry& entry, const QString& sNew);
    void showAgain();
    bool isOver() const;

    PictureList* m_list;
    QPointer<PictureList> m_alive;
    BatchServices m_services;
    std::vector<BatchEntry> m_entries;
    bool m_isPlaylist;
    QString m_playlist; ///< the name of the playlist that the entries stand in
    QString m_current;  ///< the image that is to be shown at the end
    QHash<QString, QString> m_converted;
};

} // namespace quorvia::collections
