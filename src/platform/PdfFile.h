// A document in the format PDF 1.4 (ISO 32000-1) as it is written: from its first byte to its last, each
// checked, nothing of it kept but where its objects begin.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QIODevice>
#include <QList>
#include <QString>

namespace quorvia::platform {

class PdfFile
{
  public:
    /// Writes to `file`, which is open; the document begins where that stands. The header is written at once
    /// (ISO 32000-1, 7.5.2).
    explicit PdfFile(QIODevice& file);

    /// Begins the next object (7.3.10); gives its number, from 1.
    int beginObject();
    void endObject() { put("\nendobj\n"); }
    /// Writes a whole object; gives its number.
    int object(QByteArrayView content);
    /// Writes bytes; without effect once something failed.
    void put(QByteArrayView bytes);
    /// How many bytes the document has so far.
    qint64 size() const { return m_size; }
    /// Whether all bytes so far were taken.
    bool isWhole() const { return m_reason.isEmpty(); }
    /// Ends the document with the table of its objects (7.5.4) and where to begin (7.5.5): `root` and `info`
    /// are numbers of objects. True when all of it has left the program; else `why`, which may be null, gets
    /// the reason.
    bool finish(int root, int info, QString* why);

    /// The reference to the object `number`.
    static QByteArray reference(int number);
    /// `text` as a string of the document, in UTF-16 (7.9.2.2), its bytes in hexadecimal (7.3.4.3).
    static QByteArray text(const QString& text);
    /// `twips` in the document's unit, points of 20 twips (8.3.2.3).
    static QByteArray points(int twips);

  private:
    bool flush();
    void note();

    QIODevice& m_file;
    qint64 m_size = 0;
    QList<qint64> m_objects; ///< where each begins
    QString m_reason;        ///< what failed first; empty when nothing did
};

} // namespace quorvia::platform
