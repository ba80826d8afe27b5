#include "platform/PdfFile.h"

#include "platform/Reason.h"

#include <QFileDevice>
#include <QStringConverter>

namespace quorvia::platform {

PdfFile::PdfFile(QIODevice& file) : m_file(file)
{
    put("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n"); // four bytes above 127: not a text
}

int PdfFile::beginObject()
{
    m_objects.append(m_size);
    put(QByteArray::number(m_objects.size()) + " 0 obj\n");
    return int(m_objects.size());
}

int PdfFile::object(QByteArrayView content)
{
    const int number = beginObject();
    put(content);
    endObject();
    return number;
}

void PdfFile::put(QByteArrayView bytes)
{
    if (!isWhole())
        return;
    if (m_file.write(bytes.data(), bytes.size()) != bytes.size())
        note();
    m_size += bytes.size();
}

bool PdfFile::finish(int root, int info, QString* why)
{
    constexpr int digits = 10;
    const qint64 table = m_size;
    const QByteArray count = QByteArray::number(m_objects.size() + 1);
    put("xref\n0 " + count + "\n0000000000 65535 f \n");
    for (const qint64 offset : std::as_const(m_objects))
        put(QByteArray::number(offset).rightJustified(digits, '0') + " 00000 n \n");
    put("trailer\n<< /Size " + count + " /Root " + reference(root) + " /Info " + reference(info) +
        " >>\nstartxref\n" + QByteArray::number(table) + "\n%%EOF\n");
    if (isWhole() && !flush()) // what a file still holds back may fail too
        note();
    return isWhole() || fail(why, m_reason);
}

QByteArray PdfFile::reference(int number)
{
    return QByteArray::number(number) + " 0 R";
}

QByteArray PdfFile::text(const QString& text)
{
    QStringEncoder encode(QStringEncoder::Utf16BE, QStringEncoder::Flag::WriteBom);
    const QByteArray bytes = encode(text);
    return '<' + bytes.toHex() + '>';
}

QByteArray PdfFile::points(int twips)
{
    constexpr double twipsPerPoint = 20;
    return QByteArray::number(twips / twipsPerPoint, 'f', 2); // two digits hold a twentieth
}

bool PdfFile::flush()
{
    auto* const file = qobject_cast<QFileDevice*>(&m_file);
    return !file || file->flush();
}

void PdfFile::note()
{
    // A file that took a part of the bytes has no reason yet; it has one for the next.
    m_file.write(" ", 1);
    flush();
    m_reason = m_file.errorString().simplified();
    if (m_reason.isEmpty())
        m_reason = QStringLiteral("the file does not take it");
}

} // namespace quorvia::platform
