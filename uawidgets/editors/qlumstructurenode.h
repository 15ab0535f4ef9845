#pragma once
#include <uabase/structures/uagenericoptionsetvalue.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementlist.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QCoreApplication>
#include <QString>

#include <memory>
#include <variant>
#include <vector>

/// A value within a structure, or the structure itself. What is in it is taken apart when somebody asks for
/// its children, and put together again when somebody asks for its value: an edit alone costs neither.
class QlumStructureNode : public QlumTreeNode<QlumStructureNode>
{
    Q_DECLARE_TR_FUNCTIONS(QlumStructureNode)
public:
    /// What of its parent it is.
    enum class Part {
        Root,
        Field,   ///< of a structure
        Member,  ///< of a union, the chosen one or another
        Element, ///< of an array or matrix
        Bit,     ///< of an option set
        Note     ///< in words, why a value could not be taken apart, or that there is more
    };
    /// What is in it.
    enum class Kind { Plain, Structure, Union, Array, Bits, Undecoded };

    /// Levels of values within values that are shown.
    static constexpr int maximumDepth = 100;
    /// Elements that get a node; the others are for the array page.
    static constexpr int shownElements = 1000;

    /// A root. The context must outlive the tree.
    QlumStructureNode(const QlumValueContext& whole, const UaVariant& value);

    /// Of its parent.
    [[nodiscard]] Part part() const { return m_part; }
    /// Of its value.
    [[nodiscard]] Kind kind() const { return m_kind; }
    /// Among the fields, members, elements or bits.
    [[nodiscard]] int place() const { return m_place; }
    /// Name of the field or bit, "[3]" or "[1,2]" of an element; of a note what it is about.
    [[nodiscard]] QString name() const;
    /// What a note says.
    [[nodiscard]] const QString& note() const { return m_note; }
    /// The declared field that it is, or is an element of; null for the root's own elements.
    [[nodiscard]] const UaStructureField& field() const { return m_field; }
    /// What is known of the place.
    [[nodiscard]] QlumValueContext context() const;
    /// Whether it can be left away, or is one of several.
    [[nodiscard]] bool isOptional() const;
    /// Whether it is there: an optional field that is not absent, the chosen member, a bit that is set.
    [[nodiscard]] bool isPresent() const;
    /// Whether another type than that of the value may be given.
    [[nodiscard]] bool isOpenType() const;

    /// What speaks against the value that was given; nothing for one that came with the whole.
    [[nodiscard]] const QlumValueCheck& check() const { return m_check; }

    /// Whether it has children that are not made yet.
    [[nodiscard]] bool isWaiting() const;
    /// Takes the value apart; the caller makes the children those of this node. A value that cannot be taken
    /// apart becomes Undecoded, with notes as children.
    [[nodiscard]] std::vector<std::unique_ptr<QlumStructureNode>> makeChildren();
    /// Why the value could not be taken apart, in words; empty when it could.
    [[nodiscard]] const QString& reason() const { return m_reason; }

    /// As it was before edits below it, until collect().
    [[nodiscard]] const UaVariant& value() const { return m_value; }
    /// Puts together what was edited below. A status tells what did not go into the value.
    UaStatusCode collect();
    /// Gives it another value; the caller takes the children away that it had, except those of an option set
    /// that is not waiting. A status tells that it is none for this place, and nothing has changed.
    UaStatusCode setValue(const UaVariant& value);
    /// Sets or unsets an optional field, chooses a member or none, sets a bit. An absent value comes back as
    /// it was. The caller takes the children of a field away, and those of all members.
    UaStatusCode setPresent(bool present);

private:
    using Children = std::vector<std::unique_ptr<QlumStructureNode>>;

    QlumStructureNode(const QlumStructureNode& parent, Part part, int place);
    void adopt(const UaVariant& value);
    [[nodiscard]] Kind kindOf(const UaVariant& value) const;
    [[nodiscard]] UaStructureDefinition definition() const;
    void addFields(Children& children);
    void addMembers(Children& children);
    void addElements(Children& children);
    void addBits(Children& children);
    void addBytes(Children& children);
    void addNote(Children& children, const QString& name, const QString& note) const;
    void fail(UaStatusCode status);
    UaStatusCode take(const QlumStructureNode& child);
    UaStatusCode putTogether();
    UaStatusCode passOn();

    const QlumValueContext* m_whole;
    UaStructureField m_field;
    Part m_part = Part::Root;
    Kind m_kind = Kind::Plain;
    int m_place = 0;
    int m_depth = 0;
    bool m_present = true;
    bool m_waiting = false; ///< for its children to be made
    bool m_edited = false;  ///< below
    UaVariant m_value;
    QlumValueCheck m_check;
    QString m_title; ///< of a note
    QString m_note;
    QString m_reason;
    std::variant<std::monostate, UaGenericStructureValue, UaGenericUnionValue, QlumElementList,
                 UaGenericOptionSetValue>
        m_content;
};
