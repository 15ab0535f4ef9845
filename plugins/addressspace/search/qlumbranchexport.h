#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/addressspace/search/qlumnodedetails.h>
#include <plugins/addressspace/search/qlumnodeindex.h>

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>

/// What a file of nodes is to have.
struct QlumExportWish
{
    QString file;            ///< name; "....json" for JSON, else comma separated values
    QlumDetailsWish details; ///< besides what the index has

    /// By the ending of its name.
    [[nodiscard]] bool isJson() const;
};

/// What has become of it.
struct QlumExportOutcome
{
    std::size_t written = 0; ///< nodes
    std::size_t unread = 0;  ///< of those, nodes whose details the server did not tell
    QString error;           ///< why there is no file; empty when there is, and when it was cancelled
};

/// Writes the nodes of an index into a file, parents before their children, in a job; details are read in
/// portions. The file is there when all of it is written, and not before. told hears how many are.
[[nodiscard]] QlumExportOutcome qlumExportNodes(QlumJob& job,
                                                const std::shared_ptr<QlumSessionServices>& session,
                                                const QlumNodeIndex& index, const QlumExportWish& wish,
                                                const std::function<void(std::size_t written)>& told);
