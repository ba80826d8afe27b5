// A listener to libwpg that hears nothing: the base of one that cares for a few of the calls.
#pragma once

#include <librevenge/librevenge.h>

namespace quorvia::engine {

class WpgSilentListener : public librevenge::RVNGDrawingInterface
{
  public:
    using Properties = librevenge::RVNGPropertyList;

    void setDocumentMetaData(const Properties&) override {}
    void defineEmbeddedFont(const Properties&) override {}
    void startPage(const Properties&) override {}
    void startMasterPage(const Properties&) override {}
    void setStyle(const Properties&) override {}
    void startLayer(const Properties&) override {}
    void startEmbeddedGraphics(const Properties&) override {}
    void openGroup(const Properties&) override {}
    void drawRectangle(const Properties&) override {}
    void drawEllipse(const Properties&) override {}
    void drawPolygon(const Properties&) override {}
    void drawPolyline(const Properties&) override {}
    void drawPath(const Properties&) override {}
    void drawGraphicObject(const Properties&) override {}
    void drawConnector(const Properties&) override {}
    void startTextObject(const Properties&) override {}
    void startTableObject(const Properties&) override {}
    void openTableRow(const Properties&) override {}
    void openTableCell(const Properties&) override {}
    void insertCoveredTableCell(const Properties&) override {}
    void insertField(const Properties&) override {}
    void openOrderedListLevel(const Properties&) override {}
    void openUnorderedListLevel(const Properties&) override {}
    void openListElement(const Properties&) override {}
    void defineParagraphStyle(const Properties&) override {}
    void openParagraph(const Properties&) override {}
    void defineCharacterStyle(const Properties&) override {}
    void openSpan(const Properties&) override {}
    void openLink(const Properties&) override {}
    void startDocument(const Properties&) override {}
    void endDocument() override {}
    void endPage() override {}
    void endMasterPage() override {}
    void endLayer() override {}
    void endEmbeddedGraphics() override {}
    void closeGroup() override {}
    void endTextObject() override {}
    void closeTableRow() override {}
    void closeTableCell() override {}
    void endTableObject() override {}
    void insertTab() override {}
    void insertSpace() override {}
    void insertLineBreak() override {}
    void closeOrderedListLevel() override {}
    void closeUnorderedListLevel() override {}
    void closeListElement() override {}
    void closeParagraph() override {}
    void closeSpan() override {}
    void closeLink() override {}
    void insertText(const librevenge::RVNGString&) override {}
};

} // namespace quorvia::engine
