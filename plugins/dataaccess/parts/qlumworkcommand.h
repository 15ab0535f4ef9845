#pragma once
#include <QAction>
#include <QLatin1String>
#include <QObject>
#include <QString>

#include <utility>

/// A command with its name and its explanation, which belongs to the owner and does what the function does.
template <typename Function>
[[nodiscard]] QAction* qlumWorkCommand(QObject* owner, const char* name, const QString& text,
                                       const QString& toolTip, Function function)
{
    auto* action = new QAction(text, owner);
    action->setObjectName(QLatin1String(name));
    action->setToolTip(toolTip);
    action->setWhatsThis(toolTip);
    QObject::connect(action, &QAction::triggered, owner, std::move(function));
    return action;
}
