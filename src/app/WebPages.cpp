#include "app/WebPages.h"

#include <QFile>

#include <array>
#include <utility>

/// The resources of a static library have to be asked for, and that outside of every namespace.
static void registerWebPages()
{
    Q_INIT_RESOURCE(webpages);
}

namespace quorvia::app {

namespace {

constexpr std::array roles = {
    std::pair{WebPage::Front, "front"},
    std::pair{WebPage::Product, "product"},
    std::pair{WebPage::ProductMorphane, "product of Morphane"},
    std::pair{WebPage::ProductTessary, "product of Tessary"},
    std::pair{WebPage::ProductNomalux, "product of Nomalux"},
    std::pair{WebPage::Download, "download"},
    std::pair{WebPage::Support, "support"},
    std::pair{WebPage::Report, "report"},
    std::pair{WebPage::MediaPortal, "media portal"},
    std::pair{WebPage::ImageGallery, "image gallery"},
    std::pair{WebPage::ShellMenu, "shell menu"},
    std::pair{WebPage::Partner, "partner"},
};

QByteArray ownList()
{
    registerWebPages();
    QFile file(QStringLiteral(":/quorvia/webpages.txt"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::map<QString, QString> webAddressesOf(const QByteArray& text)
{
    constexpr QLatin1String between(" = ");
    std::map<QString, QString> addresses;
    const QStringList lines = QString::fromUtf8(text).split(u'\n');
    for (const QString& line : lines) {
        if (const qsizetype at = line.indexOf(between); at > 0)
            addresses.emplace(line.left(at).trimmed(), line.mid(at + between.size()).trimmed());
    }
    return addresses;
}

QString webAddress(WebPage page)
{
    static const std::map<QString, QString> addresses = webAddressesOf(ownList());
    for (const auto& [each, role] : roles) {
        if (each == page) {
            const auto found = addresses.find(QLatin1String(role));
            return found == addresses.end() ? QString() : found->second;
        }
    }
    return {};
}

} // namespace quorvia::app
