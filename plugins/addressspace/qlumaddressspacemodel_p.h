#pragma once
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumaddressspacenode.h>
#include <plugins/addressspace/qlumbrowseprogress.h>
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/browseprogress.h>

#include <QString>

#include <memory>

struct QlumAddressSpaceModel::Task
{
    explicit Task(QlumAddressSpaceNode* browsed)
        : node(browsed), progress(std::make_unique<QlumBrowseProgress>(browsed->name()))
    {
    }

    QlumAddressSpaceNode* node;
    UaClientSdk::ServiceSettings settings;
    UaByteString continuationPoint;
    UaClientSdk::BrowseProgress pages;
    int budget = 0;      ///< BrowseNext calls left; negative: no limit
    int failures = 0;    ///< in a row
    int barren = 0;      ///< results in a row without a new node
    QString stopText;    ///< why it ends early
    bool isDone = false; ///< but for the order of the children
    std::unique_ptr<QlumBrowseProgress> progress;
};
