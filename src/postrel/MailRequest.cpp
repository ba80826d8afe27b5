#include "postrel/MailRequest.h"

#include <array>

namespace quorvia::postrel {

namespace {

constexpr std::array forms = {QLatin1String("/subject:"), QLatin1String("/hiddenbody:"),
                              QLatin1String("/attachments:")};

/// The pieces between ";", where those belong together that name something only when joined.
QStringList attachmentsOf(const QString& text, const std::function<bool(const QString&)>& exists)
{
    const QStringList pieces = text.split(u';', Qt::SkipEmptyParts);
    QStringList paths;
    for (qsizetype first = 0; first < pieces.size(); ++first) {
        QString path = pieces.at(first);
        qsizetype last = first;
        QString joined = path;
        while (!exists(joined) && last + 1 < pieces.size())
            joined += u';' + pieces.at(++last);
        if (exists(joined)) {
            path = joined;
            first = last;
        }
        paths.append(path.trimmed());
    }
    return paths;
}

} // namespace

MailRequest mailRequest(const QStringList& arguments, const std::function<bool(const QString&)>& exists)
{
    std::array<QString, forms.size()> texts;
    QString* present = nullptr;
    for (const QString& argument : arguments) {
        bool begins = false;
        for (std::size_t i = 0; i < forms.size(); ++i) {
            if (argument.startsWith(forms[i], Qt::CaseInsensitive)) {
                present = &texts[i];
                *present = argument.mid(forms[i].size());
                begins = true;
            }
        }
        if (!begins && present)
            *present += u' ' + argument;
    }
    return {.subject = texts[0].trimmed(),
            .body = texts[1].replace(QLatin1String("<BRX>"), QLatin1String("\n")),
            .attachments = attachmentsOf(texts[2], exists)};
}

QStringList composerArguments(const MailRequest& request)
{
    QStringList arguments{QStringLiteral("--utf8")};
    if (!request.subject.isEmpty())
        arguments << QStringLiteral("--subject") << request.subject;
    if (!request.body.isEmpty())
        arguments << QStringLiteral("--body") << request.body;
    for (const QString& path : request.attachments)
        arguments << QStringLiteral("--attach")
                  << (path.startsWith(u'-') ? QStringLiteral("./") + path : path);
    return arguments;
}

} // namespace quorvia::postrel
