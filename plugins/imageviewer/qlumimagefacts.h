// What is said of an image, in words.
#pragma once
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QObject>
#include <QString>
#include <QVariant>

class QlumImageFeed;

/// One line of it.
struct QlumImageFact
{
    QString name;                                      ///< "Format"
    QString text;                                      ///< "PNG"
    QlumStatusLevel level = QlumStatusLevel::Inactive; ///< of a status; Inactive for no status

    /// Equal in all.
    friend bool operator==(const QlumImageFact&, const QlumImageFact&) = default;
};

/// The facts of one image, as two columns.
class QlumImageFactsModel : public QlumTableModel<QlumImageFact>
{
    Q_OBJECT
public:
    enum Column { Fact, Value };

    /// Without facts.
    explicit QlumImageFactsModel(QObject* parent = nullptr);
    /// Shows those of a feed, null for none; rows that stay are kept.
    void show(const QlumImageFeed* feed, const QString& serverName);

protected:
    [[nodiscard]] QVariant cell(const QlumImageFact& fact, int column, int role) const override;
};

/// Format, size, bytes, status and time in one line.
[[nodiscard]] QString qlumImageLine(const QlumImageFeed& feed);
/// "4.9 images/s, 3 dropped"; empty for one that is not watched.
[[nodiscard]] QString qlumImageRate(const QlumImageFeed& feed);
/// "png": the ending of a file with the bytes as they were received.
[[nodiscard]] QString qlumImageEnding(const QlumImageFeed& feed);
