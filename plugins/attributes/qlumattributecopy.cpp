#include <plugins/attributes/qlumattributecopy.h>

#include <app/api/qlumtext.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributenode.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemModel>
#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

#include <functional>

namespace {
QString nameOf(const QModelIndex& index)
{
    return index.siblingAtColumn(QlumAttributeModel::NameColumn).data().toString();
}

QString valueOf(const QModelIndex& index)
{
    return index.siblingAtColumn(QlumAttributeModel::ValueColumn).data(Qt::EditRole).toString();
}

// In the order in which they are shown; what has not been fetched yet is not among them.
void forEach(const QAbstractItemModel& model, const QModelIndex& parent, const QStringList& path,
             const std::function<void(const QModelIndex& index, const QStringList& path)>& visit)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const QStringList own = QStringList(path) << nameOf(index);
        visit(index, own);
        forEach(model, index, own, visit);
    }
}

QString jsonOf(const QlumAttributeModel& model, const UaVariant& value)
{
    auto* dictionary =
        model.index(0, 0).data(QlumAttributeModel::DictionaryRole).value<UaDataTypeDictionary*>();
    UaString text;
    return !value.isNull() && UaValueText::toJson(value, dictionary, text, true).isNotBad() ? toQString(text)
                                                                                            : QString();
}
} // namespace

void qlumForEachRow(const QlumAttributeModel& model,
                    const std::function<void(const QString& path, const QString& value)>& visit)
{
    forEach(
        model, {}, {},
        [&visit](const QModelIndex& index, const QStringList& path) {
            visit(path.join(QLatin1Char('/')), valueOf(index));
        });
}

QString qlumAllAsText(const QlumAttributeModel& model)
{
    QStringList lines;
    forEach(model, {}, {}, [&lines](const QModelIndex& index, const QStringList& path) {
        constexpr int indent = 2;
        lines.append(QString(indent * (path.size() - 1), QLatin1Char(' ')) + path.last() + QLatin1Char('\t') +
                     valueOf(index));
    });
    return lines.join(QLatin1Char('\n'));
}

QString qlumAllAsCsv(const QlumAttributeModel& model)
{
    QByteArray records =
        qlumCsvRecord({QlumAttributeModel::tr("Attribute"), QlumAttributeModel::tr("Value")});
    qlumForEachRow(model, [&records](const QString& path, const QString& value) {
        records += qlumCsvRecord({path, value});
    });
    return QString::fromUtf8(records);
}

QString qlumRowAsJson(const QlumAttributeModel& model, const QModelIndex& index)
{
    return jsonOf(model, model.rowValue(index).value);
}

// What is no value, a status for one, stands as the text that is shown.
QString qlumAllAsJson(const QlumAttributeModel& model)
{
    QJsonObject all;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const UaVariant own = model.rowValue(index).value;
        const QString text = own.isNull() && model.rowCount(index) > 0
                                 ? qlumRowAsJson(model, model.index(0, 0, index))
                                 : jsonOf(model, own);
        const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
        all.insert(nameOf(index),
                   document.isObject() ? QJsonValue(document.object()) : QJsonValue(valueOf(index)));
    }
    return QString::fromUtf8(QJsonDocument(all).toJson());
}
