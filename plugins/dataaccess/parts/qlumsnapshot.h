// The values of a view as they were at one moment, kept under a name.
#pragma once
#include <uabase/values/uadatavalue.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <vector>

/// A row of a snapshot. It names its node so that it is found again on a server with other indexes.
struct QlumSnapshotRow
{
    QString server;        ///< name in the project
    QString namespaceUri;  ///< of the node id; empty where it was not known
    QString nodeId;        ///< without a namespace index: "s=Pump"; empty for a row without a node
    QString indexRange;    ///< of an array; empty for all of it
    QString fieldPath;     ///< of a structure; empty for all of it
    QString name;          ///< for the user
    QString browsePath;    ///< for the user, and for other ids of the same node; may be empty
    QString unit;          ///< for the user
    bool hasValue = false; ///< one had come
    UaDataValue value;
    quint32 key = 0; ///< of the row of the view that it was taken of just now; not stored
};

/// All rows of a view at one moment.
struct QlumSnapshot
{
    QString name; ///< the user's
    QDateTime taken;
    std::vector<QlumSnapshotRow> rows;
};

/// As text for a file or a project, JSON in UTF-8.
[[nodiscard]] QByteArray qlumSnapshotText(const QlumSnapshot& snapshot);
/// The reverse, of text from anywhere. False with the reason, for the user, when it is no snapshot; values
/// that cannot be read are left out and counted.
[[nodiscard]] bool qlumReadSnapshot(const QByteArray& text, QlumSnapshot& snapshot, QString& fault,
                                    int& unreadable);

/// What became of a row between two snapshots.
enum class QlumDifferenceKind : unsigned char {
    Same,
    Changed, ///< another value, and perhaps another status
    Status,  ///< the same value, with another status
    Gone,    ///< it was there before only
    New      ///< it is there afterwards only
};

/// A row of a comparison.
struct QlumDifferenceRow
{
    QlumDifferenceKind kind = QlumDifferenceKind::Same;
    bool isByPath = false;  ///< the node has another id; it was found by its browse path
    QlumSnapshotRow before; ///< empty of a new one
    QlumSnapshotRow after;  ///< empty of one that is gone
};

/// Every row of both, those of after in their order, then those that are gone. The same node is found by
/// server, namespace URI and id, else by namespace URI and browse path; the server's name does not count
/// where no row of after is on a server of that name.
[[nodiscard]] std::vector<QlumDifferenceRow> qlumCompare(const QlumSnapshot& before,
                                                         const QlumSnapshot& after);
