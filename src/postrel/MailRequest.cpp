#include "postrel/MailRequest.h"

#include <array>

namespace quorvia::postrel {

namespace {

constexpr std::array forms = {"/subject:", "/hiddenbody:", "/attachments:"};

/// The index of the form that `argument` begins with, else -1.
int formOf(const QByteArray& argument)
{
    for (std::size_t i = 0; i < forms.size(); ++i) {
        if (qstrnicmp(argument.constData(), forms[i], qstrlen(forms[i])) == 0)
            return int(i);
    }
    return -1;
}

/// `text` cut at each ";" with "/" behind it, where a full path may begin.
QByteArrayList piecesOf(const QByteArray& text)
{
    QByteArrayList pieces;
    qsizetype begin = 0;
    for (qsizetype cut; (cut = text.indexOf(";/", begin)) >= 0; begin = cut + 1)
        pieces.append(text.mid(begin, cut - begin));
    pieces.append(text.mid(begin));
    return pieces;
}

/// The attachments in `text`, where those pieces belong together that name something only when joined.
QByteArrayList attachmentsOf(const QByteArray& text, const std::function<bool(const QByteArray&)>& exists)
{
    QByteArrayList paths;
    const QByteArrayList pieces = piecesOf(text);
    for (qsizetype first = 0; first < pieces.size(); ++first) {
        QByteArray path = pieces.at(first);
        qsizetype last = first;
        QByteArray joined = path;
        while (!exists(joined) && last + 1 < pieces.size())
            joined += ';' + pieces.at(++last);
        if (exists(joined)) {
            path = joined;
            first = last;
        } else {
            path = path.trimmed(); // blanks between path and ";"
        }
        if (!path.isEmpty())
            paths.append(path);
    }
    return paths;
}

} // namespace

MailRequest mailRequest(const QByteArrayList& arguments, const std::function<bool(const QByteArray&)>& exists)
{
    std::array<QByteArray, forms.size()> texts;
    QByteArray* present = nullptr;
    for (const QByteArray& argument : arguments) {
        if (const int form = formOf(argument); form >= 0) {
            present = &texts[std::size_t(form)];
            *present = argument.mid(qsizetype(qstrlen(forms[std::size_t(form)])));
        } else if (present) {
            *present += ' ' + argument;
        }
    }
    return {.subject = texts[0].trimmed(),
            .body = texts[1].replace("<BRX>", "\n"),
            .attachments = attachmentsOf(texts[2], exists)};
}

QByteArrayList composerArguments(const MailRequest& request)
{
    QByteArrayList arguments{"--utf8"};
    if (!request.subject.isEmpty())
        arguments << "--subject" << request.subject;
    if (!request.body.isEmpty())
        arguments << "--body" << request.body;
    for (const QByteArray& path : request.attachments)
        arguments << "--attach" << (path.startsWith('-') ? "./" + path : path);
    return arguments;
}

} // namespace quorvia::postrel
