#pragma once
#include <plugins/history/qlumhistoryplan.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <vector>

/// Values of one item that no curve can show.
class QlumNonNumericModel : public QlumTableModel<QlumHistoryText>
{
    Q_OBJECT
public:
    /// Its columns.
    enum Column { SourceTimestamp, ServerTimestamp, Value };

    /// Without values; times are local.
    explicit QlumNonNumericModel(QObject* parent = nullptr);

    /// At the end, in this order; of a great many the oldest go.
    void add(std::vector<QlumHistoryText> values);
    /// Removes all values.
    void clear() { reset(); }
    /// Whether times are UTC.
    void setUtc(bool isUtc);

protected:
    [[nodiscard]] QVariant cell(const QlumHistoryText& value, int column, int role) const override;

private:
    bool m_isUtc = false;
};

/// "yyyy-MM-dd hh:mm:ss.zzz"; empty for a null time.
[[nodiscard]] QString qlumHistoryTime(const UaDateTime& time, bool isUtc);
