#include <plugins/dataaccess/parts/qlumdaparts.h>

#include <plugins/dataaccess/parts/qlumchangelogpart.h>
#include <plugins/dataaccess/parts/qlumcopypart.h>
#include <plugins/dataaccess/parts/qlumlistpart.h>
#include <plugins/dataaccess/parts/qlumsnapshotpart.h>
#include <plugins/dataaccess/parts/qlumstagedpart.h>
#include <plugins/dataaccess/qlumdapart.h>

#include <memory>
#include <utility>
#include <vector>

std::vector<std::unique_ptr<QlumDaPart>> qlumMakeDaParts(QlumDaHost& host)
{
    std::vector<std::unique_ptr<QlumDaPart>> parts;
    auto staged = std::make_unique<QlumStagedPart>(host);
    auto lists = std::make_unique<QlumListPart>(host, *staged);
    auto snapshots = std::make_unique<QlumSnapshotPart>(host, *staged);
    parts.push_back(std::move(staged));
    parts.push_back(std::move(lists));
    parts.push_back(std::make_unique<QlumChangeLogPart>(host));
    parts.push_back(std::move(snapshots));
    parts.push_back(std::make_unique<QlumCopyPart>(host));
    return parts;
}
