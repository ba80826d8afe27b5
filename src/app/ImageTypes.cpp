#include "app/ImageTypes.h"

namespace quorvia::app {

bool extensionStandsIn(const QString& extension, const QString& list)
{
    return list.contains(extension, Qt::CaseInsensitive);
}

} // namespace quorvia::app
