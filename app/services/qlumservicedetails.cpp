#include <app/services/qlumservicedetails.h>

#include <app/api/qlumdisplaytext.h>

#include <QLocale>

#include <utility>

QlumServiceDetails::QlumServiceDetails(QObject* parent)
    : QlumTreeModel({tr("Name"), tr("Value"), tr("Type")}, parent),
      m_root(std::make_unique<QlumServiceDetail>())
{
    setRoot(m_root.get());
}

void QlumServiceDetails::clear()
{
    reset([this] { m_root->clearChildren(); });
}

void QlumServiceDetails::show(const QlumServiceRecord& record)
{
    reset([this, &record] {
        m_root->clearChildren();
        addTimes(record);
        addMessage(tr("Request"), record, record.request.get(), tr("no longer kept, or too large"));
        addMessage(tr("Response"), record, record.response.get(),
                   !record.hasEnded        ? tr("waiting for it")
                   : record.bytesIn == 0   ? tr("none came")
                   : record.status.isBad() ? tr("a fault: see the status")
                                           : tr("no longer kept, or too large"));
    });
}

void QlumServiceDetails::addTimes(const QlumServiceRecord& record)
{
    QlumServiceDetail& times = add(*m_root, tr("Time"), QString());
    const auto step = [&](const QString& name, qint64 from, qint64 to) {
        if (from >= 0 && to >= from)
            add(times, name,
                tr("%1 ms").arg(QLocale::system().toString(static_cast<double>(to - from) / 1e6, 'f', 3)));
    };
    const QlumServiceRecord::Times& t = record.times;
    step(tr("Encoding the request"), 0, t.encoded);
    step(tr("Sending it"), t.encoded, t.sent);
    step(tr("Waiting for the server"), t.sent, t.firstByte);
    step(tr("Receiving and decoding the response"), t.firstByte, t.decoded);
    step(tr("Handing it over"), t.decoded, t.ended);
    step(tr("In all"), 0, t.ended);
}

void QlumServiceDetails::addMessage(const QString& name, const QlumServiceRecord& record,
                                    const QlumServiceMessage* message, const QString& missing)
{
    if (!message || !message->message()) {
        add(*m_root, name, missing);
        return;
    }
    QlumFieldText fields =
        qlumFieldTexts(message->type(), message->message(), {record.callPurpose, record.note.get()});
    fields.name = name;
    addFields(*m_root, fields);
}

QlumServiceDetail& QlumServiceDetails::add(QlumServiceDetail& parent, const QString& name,
                                           const QString& value, const QString& type)
{
    auto node = std::make_unique<QlumServiceDetail>();
    node->name = name;
    node->value = value;
    node->type = type;
    return parent.appendChild(std::move(node));
}

void QlumServiceDetails::addFields(QlumServiceDetail& parent, const QlumFieldText& field)
{
    QlumServiceDetail& node = add(parent, field.name, field.value, field.type);
    for (const QlumFieldText& child : field.children)
        addFields(node, child);
}

QVariant QlumServiceDetails::cell(const QlumServiceDetail& node, int column, int role) const
{
    const QString& text = column == Name ? node.name : column == Value ? node.value : node.type;
    if (role == Qt::DisplayRole)
        return text;
    return role == Qt::ToolTipRole && !text.isEmpty() ? QVariant(qlumPlainToolTip(text)) : QVariant();
}
