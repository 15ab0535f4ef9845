#include <app/api/qlumdocumentservers.h>

#include <QVariant>
#include <QVariantList>

const char* qlumDocumentServersProperty()
{
    return "qlumDocumentServers";
}

void qlumSetDocumentServers(QWidget* document, const QList<unsigned int>& serverIds)
{
    QVariantList ids;
    for (const unsigned int id : serverIds)
        ids.append(id);
    if (document->property(qlumDocumentServersProperty()).toList() != ids)
        document->setProperty(qlumDocumentServersProperty(), ids);
}

QList<unsigned int> qlumDocumentServers(const QWidget* document)
{
    QList<unsigned int> ids;
    for (const QVariant& id : document->property(qlumDocumentServersProperty()).toList())
        ids.append(id.toUInt());
    return ids;
}
