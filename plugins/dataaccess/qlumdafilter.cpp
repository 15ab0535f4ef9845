#include <plugins/dataaccess/qlumdafilter.h>

#include <plugins/dataaccess/qlumdamodel.h>

void QlumDaFilter::setShow(Show show)
{
    if (show == m_show)
        return;
    m_show = show;
    refilter();
}

bool QlumDaFilter::acceptsRow(int row, const QModelIndex&) const
{
    const auto& model = *static_cast<const QlumDaModel*>(sourceModel());
    switch (m_show) {
    case Troubled:
        return model.level(model.rowAt(row)) != QlumStatusLevel::Good;
    case Writable:
        return model.rowAt(row).isWritable;
    case All:
        break;
    }
    return true;
}
