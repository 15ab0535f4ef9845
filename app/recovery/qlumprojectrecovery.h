#pragma once
#include <app/recovery/qlumsessionrecord.h>

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

/// Keeps a copy of the project on disk while it has changes that were not saved, written once a minute at
/// most, and offers after a start what earlier ones left. GUI thread.
class QlumProjectRecovery : public QObject
{
    Q_OBJECT
public:
    struct Hooks
    {
        std::function<bool(const QString&)> save; ///< writes the project as a project file
        std::function<void(const QString& fileName)> open;
        /// Opens a copy of a project that was never saved to its file, whose name may be empty; false when
        /// the copy cannot be read.
        std::function<bool(const QString& copy, const QString& fileName)> openRecovered;
    };

    /// The record outlives the window, which owns this.
    QlumProjectRecovery(QlumSessionRecord& record, Hooks hooks, QWidget* window);

    /// Writes the copy now when there are changes that it does not have.
    void keep();
    /// Asks the user about what earlier starts left; nothing is shown, and beforeAsking not called, when
    /// there is nothing.
    void offer(const std::function<void()>& beforeAsking = {});

public slots:
    /// The project has changes that are in no file; may be called for each of them.
    void sltChanged();
    /// The project is what its file holds.
    void sltClean();
    void sltProjectFileChanged(const QString& fileName);

private:
    void open(const QlumSessionRecord::Leftover& leftover);

    QlumSessionRecord& m_record;
    Hooks m_hooks;
    QWidget* m_window;
    bool m_isChanged = false; ///< since the copy was written
    bool m_hasFailed = false;
};
