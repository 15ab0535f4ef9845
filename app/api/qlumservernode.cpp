#include <app/api/qlumservernode.h>

int QlumServerNode::namespaceIndexFromUri(const QString& uri) const
{
    return namespaceTable().indexOf(uri);
}

QString QlumServerNode::namespaceUriFromIndex(int index) const
{
    return namespaceTable().value(index);
}
