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
    QlumCustomNodeIdDialog(QlumApplicationInterface& application, unsigned int serverId,
                           QWidget* parent = nullptr);

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
