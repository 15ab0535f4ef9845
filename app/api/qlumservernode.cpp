#include <app/api/qlumservernode.h>

#include <QString>

bool QlumServerNode::startConnect()
{
    emit connectEnded(connectServer());
    return true;
}

int QlumServerNode::namespaceIndexFromUri(const QString& uri) const
{
    return namespaceTable().indexOf(uri);
}

QString QlumServerNode::namespaceUriFromIndex(int index) const
{
    return namespaceTable().value(index);
}
