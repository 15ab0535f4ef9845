#pragma once
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnosticrows.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <optional>
#include <vector>

/// A row of diagnostics, or a part of its value.
class QlumDiagnosticItem : public QlumTreeNode<QlumDiagnosticItem>
{
public:
    QString label;        ///< "MaxNodesPerRead"
    QString text;         ///< its value
    QString more;         ///< what stands beside it: a rate, what the client uses
    bool isFault = false; ///< the text says why there is no value
    UaByteString bytes;   ///< of a byte string, which may be a certificate
    UaNodeId nodeId;      ///< of a row about the server; else null
    QlumDiagnosticKind kind = QlumDiagnosticKind::Plain; ///< how it is read and shown

private:
    friend class QlumDiagnosticModel;
    bool m_isGroup = false;                 ///< its children are rows, not parts of a value
    std::optional<OpcUa_UInt32> m_count;    ///< that a counter had come to
    QlumDiagnosticClock::time_point m_time; ///< and when
};

/// Rows with a value each, which may have parts below it.
class QlumDiagnosticModel : public QlumTreeModel<QlumDiagnosticItem>
{
    Q_OBJECT
public:
    enum Column { Parameter, Value, More };

    /// Without a title for more there are two columns.
    explicit QlumDiagnosticModel(const QStringList& titles, QObject* parent = nullptr);
    ~QlumDiagnosticModel() override;

    /// A new last row, of the whole or below another one.
    QlumDiagnosticItem* addRow(const QString& label, QlumDiagnosticKind kind = QlumDiagnosticKind::Plain,
                               QlumDiagnosticItem* parent = nullptr);
    /// Shows a value or why there is none; of a counter also how fast it rises, when it was read before. The
    /// names are those of an enumeration, null for the standard's.
    void setNewValue(QlumDiagnosticItem* item, const UaDataValue& value,
                     QlumDiagnosticClock::time_point time = {}, const QStringList* names = nullptr);
    /// Shows a text and its parts.
    void setText(QlumDiagnosticItem* item, const QlumDiagnosticText& text);
    /// What stands beside the value.
    void setMore(QlumDiagnosticItem* item, const QString& more);
    /// The rows stay, without values.
    void clearValues();
    /// Other rows altogether, with their parts.
    void setTree(const QlumDiagnosticText& tree);

    /// Null when there is no row with that label.
    [[nodiscard]] QlumDiagnosticItem* find(const QString& label) const;
    /// The rows, as text with two blanks before each part.
    [[nodiscard]] QString toText() const;

protected:
    [[nodiscard]] QVariant cell(const QlumDiagnosticItem& item, int column, int role) const override;

private:
    static void append(QlumDiagnosticItem& parent, const std::vector<QlumDiagnosticText>& parts);
    static void fill(QlumDiagnosticItem& item, const QlumDiagnosticText& text);
    void replaceParts(QlumDiagnosticItem* item, const std::vector<QlumDiagnosticText>& parts);
    void clearBelow(QlumDiagnosticItem& parent);

    std::unique_ptr<QlumDiagnosticItem> m_root;
};
