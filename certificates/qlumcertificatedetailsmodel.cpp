#include <certificates/qlumcertificatedetailsmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsnode.h>
#include <certificates/qlumcertificateerror.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QFont>
#include <QObject>
#include <QString>
#include <QVariant>

namespace {
constexpr int maximumLines = 12;
constexpr int maximumCharacters = 2000;

// Thousands of names would make a row that no window can show.
QString fitForCell(const QString& value)
{
    int end = 0;
    for (int line = 0; line < maximumLines; ++line) {
        end = value.indexOf(QLatin1Char('\n'), end);
        if (end < 0)
            return qlumCutText(value, maximumCharacters);
        ++end;
    }
    return qlumCutText(value.left(end), maximumCharacters) + QLatin1String("...");
}

QVariant textColor(QlumCertificateError severity)
{
    switch (severity) {
    case QlumCertificateError::Warning:
        return qlumStatusCell(QlumStatusLevel::Uncertain, Qt::ForegroundRole);
    case QlumCertificateError::Error:
        return qlumStatusCell(QlumStatusLevel::Bad, Qt::ForegroundRole);
    case QlumCertificateError::None:
        break;
    }
    return {};
}

QVariant groupFont()
{
    QFont font;
    font.setBold(true);
    return font;
}
} // namespace

QlumCertificateDetailsModel::QlumCertificateDetailsModel(QObject* parent)
    : QlumTreeModel({tr("Name"), tr("Value")}, parent)
{
}

void QlumCertificateDetailsModel::setNode(const QlumCertificateChainNode* node)
{
    reset([&] { m_node = node; });
}

int QlumCertificateDetailsModel::topCount() const
{
    return m_node ? m_node->detailsCount() : 0;
}

QlumCertificateDetailsNode* QlumCertificateDetailsModel::top(int row) const
{
    return row < topCount() ? m_node->details(row) : nullptr;
}

QVariant QlumCertificateDetailsModel::cell(const QlumCertificateDetailsNode& node, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return column == NameColumn ? node.name() : fitForCell(node.value());
    case Qt::EditRole:
        return column == NameColumn ? node.name() : node.value();
    case Qt::ToolTipRole:
        return node.finding().isEmpty() ? QVariant() : qlumPlainToolTip(node.finding());
    case Qt::AccessibleDescriptionRole:
        return node.finding();
    case Qt::FontRole:
        return node.isGroup() ? groupFont() : QVariant();
    case Qt::ForegroundRole:
        return textColor(node.severity());
    default:
        return {};
    }
}
