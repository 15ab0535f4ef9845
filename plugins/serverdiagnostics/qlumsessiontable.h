#pragma once
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnostictable.h>

#include <QObject>
#include <QString>
#include <QVariant>

/// The sessions of a server.
class QlumSessionTable : public QlumDiagnosticTable<QlumSessionRow>
{
    Q_OBJECT
public:
    enum Column {
        Name,
        Application,
        User,
        Security,
        Endpoint,
        Connected,
        LastContact,
        Timeout,
        Subscriptions,
        Items,
        PublishRequests,
        Requests,
        RequestRate,
        Errors,
        Unauthorized,
        Note
    };

    /// Without rows.
    explicit QlumSessionTable(QObject* parent = nullptr);

    /// The sessions of this application that have not been heard of for a while.
    [[nodiscard]] int forgottenCount() const;

protected:
    [[nodiscard]] QVariant cell(const QlumSessionRow& row, int column, int role) const override;
    void follow(QlumSessionRow& row, const QlumSessionRow& before, double seconds) const override;
};

/// The name with the mark of the own session.
[[nodiscard]] QString qlumSessionTitle(const QlumSessionRow& row);
