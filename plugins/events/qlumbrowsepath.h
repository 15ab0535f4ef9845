#pragma once
#include <uabase/values/uacontentfilter.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>

#include <QString>

#include <utility>
#include <vector>

/// The names on the way from an event type to one of its fields. Empty for the condition itself.
class BrowsePathList
{
public:
    BrowsePathList() = default;
    /// From the type downward.
    explicit BrowsePathList(UaBrowseNames names) : m_names(std::move(names)) {}

    /// Each name with a slash behind it, and with its namespace and a colon before it unless that is 0. What
    /// would be mistaken for a separator gets an ampersand before it.
    [[nodiscard]] QString toString() const;
    /// The reverse; what makes no sense as a path gives an empty one.
    [[nodiscard]] static BrowsePathList fromString(const QString& text);
    /// The same without the last slash, by which rules and users name the field; "ConditionId" when empty.
    [[nodiscard]] QString fieldName() const;

    [[nodiscard]] const UaBrowseNames& names() const { return m_names; }
    [[nodiscard]] UaBrowseNames& names() { return m_names; }
    [[nodiscard]] bool isEmpty() const { return m_names.empty(); }
    /// One name longer.
    [[nodiscard]] BrowsePathList child(const UaQualifiedName& name) const;

    friend bool operator==(const BrowsePathList&, const BrowsePathList&) = default;
    friend auto operator<=>(const BrowsePathList&, const BrowsePathList&) = default;

private:
    UaBrowseNames m_names;
};

/// A field that a notifier's events are to have.
struct QlumSelectClause
{
    UaNodeId eventType;    ///< below which the user has ticked it
    BrowsePathList path;   ///< from there
    bool isObject = false; ///< ends in an object, of which the node id is the value

    friend bool operator==(const QlumSelectClause&, const QlumSelectClause&) = default;
};
using QlumSelectClauses = std::vector<QlumSelectClause>;

/// One line that a project file keeps.
[[nodiscard]] QString qlumStoredClause(const QlumSelectClause& clause);
/// False for a line that is none.
[[nodiscard]] bool qlumReadClause(const QString& line, QlumSelectClause& clause);
/// What a notifier begins with: the fields of every event, and those by which conditions are listed.
[[nodiscard]] QlumSelectClauses qlumStandardClauses();
