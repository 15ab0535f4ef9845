#pragma once
#include <uawidgets/qlummessagebar.h>

#include <QString>
#include <QStringList>

/// What came of pasted cells.
struct QlumPasteReport
{
    int taken = 0;      ///< cells that became values
    int refused = 0;    ///< cells whose text is no value of the type; what was there stays
    QStringList faults; ///< the first refused cells, in words
    int beyond = 0;     ///< cells for which there was no place

    /// Counts a refused cell: the place that it was for, and its text.
    void refuse(const QString& place, const QString& text);
};

/// The report for the user; the note says more about what was pasted and may be empty. Without a text when
/// everything went well.
[[nodiscard]] QlumMessage qlumPasteMessage(const QlumPasteReport& report, const QString& note);
