// The maker's web pages. Their addresses stand in data/webpages.txt and are part of the program; the list is
// read when the first of them is asked for, some tens of microseconds.
#pragma once

#include <QByteArray>
#include <QString>

#include <map>

namespace quorvia::app {

enum class WebPage {
    Front,           ///< of the company
    Product,         ///< of this program
    ProductMorphane, ///< of the sibling tools
    ProductTessary,
    ProductNomalux,
    Download,     ///< of this program's newest version
    Support,      ///< both with a query of their own
    Report,       ///< of errors
    MediaPortal,  ///< images, and all about imaging
    ImageGallery, ///< the maker's own images
    ShellMenu,    ///< the extension of the desktop's menus
    Partner       ///< stands for portal, gallery, support and report in the edition of a partner
};

/// The address of `page`; empty when the list does not name it, which the tests keep from happening.
QString webAddress(WebPage page);

/// The list behind it: the addresses that `text` (UTF-8) names, by what they are for.
std::map<QString, QString> webAddressesOf(const QByteArray& text);

} // namespace quorvia::app
