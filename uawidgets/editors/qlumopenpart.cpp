#include <uawidgets/editors/qlumopenpart.h>

#include <uabase/values/uavariant.h>

#include <QWidget>

void qlumOpenPart(QWidget* page, const QlumValueContext& context, const QString& place, const UaVariant& part,
                  const QlumValueDialog::Taker& take)
{
    auto* dialog = new QlumValueDialog(context, page, QStringLiteral("QlumPartDialog"));
    dialog->setObjectName(QStringLiteral("partDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setHeading(place);
    dialog->setValue(part);
    dialog->setReadOnly(!take);
    if (take)
        dialog->setTaker(take);
    dialog->open();
}
