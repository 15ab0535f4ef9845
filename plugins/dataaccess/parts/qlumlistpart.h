#pragma once
#include <plugins/dataaccess/parts/qlumnodelist.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uastatus.h>

#include <QByteArray>
#include <QString>

#include <vector>

class QlumStagedPart;

/// Rows from lists of nodes: pasted ones, files, and files with new values.
class QlumListPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its commands to the host; both outlive it.
    QlumListPart(QlumDaHost& host, QlumStagedPart& staged);

    /// Adds a row for each line, also for those that name nothing; asks for the server where that is open.
    void takeList(const QByteArray& bytes);
    /// Looks for the selected rows that named nothing, or for all of them.
    void lookAgain();

private:
    /// A line on its way to a row.
    struct Wanted
    {
        QlumNodeLine line;
        unsigned int serverId = qlumNoServer;
        QlumFoundNode found;
        UaStatus status;   ///< bad: the server could not be asked
        quint32 row = 0;   ///< that is looked for again; 0: a new one
        QlumDataItem item; ///< what it becomes
    };
    using Lines = std::vector<Wanted>;
    enum class Purpose { Rows, Values, Again };

    void makeCommands();
    void load(Purpose purpose);
    void read(const QByteArray& bytes, const QString& path, Purpose purpose);
    [[nodiscard]] static QByteArray contentOf(const QString& path, QString& fault);
    void take(const QlumNodeList& list, Purpose purpose);
    void tellFault(const QString& what, const QString& why);
    [[nodiscard]] unsigned int usualServer(bool& isGivenUp);
    void find(Lines lines, Purpose purpose, const QString& remark);
    void finish(Lines& lines, Purpose purpose, const QString& remark);
    [[nodiscard]] static QlumDataItem itemFor(const Wanted& wanted);
    void stage(const Lines& lines);
    void tellRows(const Lines& lines, const QString& remark);

    QlumDaHost& m_host;
    QlumStagedPart& m_staged;
};
