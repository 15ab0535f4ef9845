#pragma once
#include <QByteArray>
#include <QModelIndex>
#include <QObject>
#include <QPersistentModelIndex>
#include <QSaveFile>
#include <QString>
#include <QTimer>
#include <QVector>

class QAbstractItemModel;

/// Writes the rows of a model as comma separated values (RFC 4180, UTF-8), portion by portion between which
/// the event loop runs, so that it can be cancelled and rows may come and go meanwhile. Of a tree the rows
/// that are loaded, the first column as a path. The file is there when all of it is written, and not before.
/// GUI thread.
class QlumCsvExport : public QObject
{
    Q_OBJECT
public:
    /// Columns in the order of the file. The model may go before: then the export fails.
    QlumCsvExport(QAbstractItemModel* model, const QVector<int>& columns, const QString& path,
                  QObject* parent = nullptr);

    /// Call once; the writing begins when control is back in the event loop.
    void start();
    /// Leaves whatever file was there as it was.
    void cancel();

signals:
    /// So many are written, after each portion but the last.
    void progressed(int rows);
    /// Once. The error is empty when the file was written, and also when the export was cancelled.
    void finished(bool isWritten, const QString& error);

private:
    void writePortion();
    [[nodiscard]] QModelIndex nextRow() const;
    [[nodiscard]] QByteArray record(const QModelIndex& row) const;
    void sltRowsAboutToBeRemoved(const QModelIndex& parent, int first, int last);
    void finish(bool isWritten, const QString& error);

    QAbstractItemModel* m_model; ///< null when finished
    const QVector<int> m_columns;
    QSaveFile m_file;
    QTimer m_timer;
    QPersistentModelIndex m_last; ///< row written last; invalid before the first
    bool m_skipsChildren = false; ///< of the last row, because they are written
    int m_rows = 0;
};
