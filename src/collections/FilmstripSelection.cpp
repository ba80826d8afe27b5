// The marks of the selected images in the filmstrip: the old ones are cleared, then the new ones are painted.
#include "collections/CellComposer.h"
#include "collections/Filmstrip.h"

namespace quorvia::collections {

QString Filmstrip::SelectedImages() const
{
    return selectionText(m_selected);
}

void Filmstrip::SetSelectedImages(const QString& text)
{
    m_requested = text;
    m_clearing = false;
    m_tSelectionChange.begin();
}

void Filmstrip::restartSelected(bool selected)
{
    m_selState = selected;
    m_selIndex = 0;
    m_selectedRead = {};
    m_tDrawSelected.begin();
}

void Filmstrip::applySelection()
{
    if (!m_clearing) {
        m_clearing = true;
        restartSelected(false);
    }
    if (m_tDrawSelected.isDue())
        return;
    m_selected = selectionOf(m_requested);
    m_tSelectionChange.end();
    restartSelected(true);
}

void Filmstrip::drawSelected()
{
    if (selectionEnds(m_selected, m_selIndex))
        return m_tDrawSelected.end();
    if (const auto position = selectedImage(m_selected.at(m_selIndex), count())) {
        const QString& file = m_images.at(*position);
        if (!m_selectedRead.read || m_selectedRead.file != file)
            m_selectedRead = {*position, file, QString(),
                              m_ix1.ask(cellPicture(file, QString(), devicePixelRatioF()), true)};
        if (!m_selectedRead.read->isDone())
            return;
        paintCell(m_selectedRead.read->result(), m_selState, placeOf(*position, m_rows));
    }
    m_selectedRead = {};
    if (m_selIndex < m_selected.size() - 2)
        ++m_selIndex;
    else
        m_tDrawSelected.end();
}

} // namespace quorvia::collections
