#pragma once
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumbasewidget.h>

#include <QWidget>

class QComboBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QlumApplicationInterface;

/// Asks for a node of any server by its id.
class QlumCustomNodeIdDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// The server is proposed; the user may take another one of the project.
    QlumCustomNodeIdDialog(QlumApplicationInterface& application, unsigned int serverId,
                           QWidget* parent = nullptr);

    /// qlumNoServer when the project has none.
    [[nodiscard]] unsigned int serverId() const;
    /// Null while the text is no node id.
    [[nodiscard]] UaNodeId nodeId() const;

private slots:
    void sltCheck();

private:
    QComboBox* m_server;
    QLineEdit* m_nodeId;
    QLabel* m_message;
    QDialogButtonBox* m_buttons;
};
