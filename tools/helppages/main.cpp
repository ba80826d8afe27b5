// makehelppages SOURCE PAGE: writes a page of help from its source. Run by the build.
#include "HelpPage.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>

namespace {

int fail(const QString& why)
{
    std::fprintf(stderr, "makehelppages: %s\n", qPrintable(why));
    return 1;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 3)
        return fail(QStringLiteral("wants a source and a page"));
    QFile source(QFile::decodeName(argv[1]));
    if (!source.open(QIODevice::ReadOnly))
        return fail(source.fileName() + QStringLiteral(": ") + source.errorString());
    const auto page = quorvia::help::filledPage(QString::fromUtf8(source.readAll()));
    if (!page.error.isEmpty())
        return fail(source.fileName() + QStringLiteral(": ") + page.error);
    QSaveFile target(QFile::decodeName(argv[2]));
    if (!target.open(QIODevice::WriteOnly) || target.write(page.html.toUtf8()) < 0 || !target.commit())
        return fail(target.fileName() + QStringLiteral(": ") + target.errorString());
    return 0;
}
