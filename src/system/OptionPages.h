// The four pages of the preferences, with their controls as they are designed; what these show and do is the
// window's.
#pragma once

class QFrame;
class QWidget;

namespace quorvia::system {

/// General settings: the viewer's own options and the association.
QFrame* makeInterfacePage(QWidget* parent);
/// Options of the full-screen view.
QFrame* makeFullscreenPage(QWidget* parent);
/// How JPEGs are saved.
QFrame* makeJpegPage(QWidget* parent);
/// Thumbnails, links, unfinished features and the way to no settings at all.
QFrame* makeAdvancedPage(QWidget* parent);

} // namespace quorvia::system
