#include <servers/qlumnamespacemap.h>

#include <QHash>
#include <QString>

#include <algorithm>
#include <limits>

NamespaceMap qlumNamespaceMap(const QStringList& oldUris, const QStringList& newUris)
{
    constexpr int limit = std::numeric_limits<unsigned short>::max() + 1;
    QHash<QString, unsigned short> indexes;
    for (int i = std::min(newUris.size(), limit) - 1; i >= 0; --i)
        indexes.insert(newUris.at(i), static_cast<unsigned short>(i));
    NamespaceMap map;
    for (int i = 0; i < std::min(oldUris.size(), limit); ++i)
        if (const auto found = indexes.constFind(oldUris.at(i)); found != indexes.constEnd())
            map.insert(static_cast<unsigned short>(i), *found);
    return map;
}
