#include <uawidgets/qlumformrow.h>

#include <QChar>
#include <QFormLayout>
#include <QLabel>

QString qlumBareLabel(const QString& label)
{
    QString text = label;
    text.replace(QLatin1String("&&"), QString(QChar::Null)); // one that is meant
    text.remove(QLatin1Char('&')).replace(QChar::Null, QLatin1Char('&'));
    if (text.endsWith(QLatin1Char(':')))
        text.chop(1);
    return text;
}

void qlumDescribeField(QWidget* field, const QlumFormRow& row)
{
    const QString bare = qlumBareLabel(row.label);
    field->setObjectName(row.name);
    field->setAccessibleName(bare);
    field->setToolTip(row.toolTip.isEmpty() ? bare : row.toolTip);
    field->setWhatsThis(row.whatsThis);
}

void qlumAddRow(QFormLayout* form, QWidget* field, const QlumFormRow& row, QLayout* layout)
{
    qlumDescribeField(field, row);
    auto* label = new QLabel(row.label);
    label->setBuddy(field);
    label->setWhatsThis(row.whatsThis);
    if (layout)
        form->addRow(label, layout);
    else
        form->addRow(label, field);
}

void qlumAddWideRow(QFormLayout* form, QWidget* field, const QlumFormRow& row)
{
    qlumDescribeField(field, row);
    form->addRow(field);
}
