#pragma once
#include <app/api/qlumserverrole.h>

#include <QComboBox>
#include <QWidget>

/// Lets the user choose the role of a server. Each choice explains itself in its tool tip.
class QlumRoleBox : public QComboBox
{
    Q_OBJECT
public:
    /// Shows the role of new servers.
    explicit QlumRoleBox(QWidget* parent = nullptr);

    /// The one that is chosen.
    [[nodiscard]] QlumServerRole role() const;
    /// Chooses one.
    void setRole(QlumServerRole role);
};
