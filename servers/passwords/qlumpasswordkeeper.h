#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsecret.h>
#include <servers/passwords/qlumkeyring.h>

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

/// Keeps passwords in a keyring, in the background. There is at most one; without it passwords live as long
/// as the program. GUI thread.
class QlumPasswordKeeper : public QObject
{
    Q_OBJECT
public:
    /// A password, empty for none, and why none could be had, which is empty when there simply is none.
    using Found = std::function<void(const QlumSecretText& password, const QString& problem)>;
    using Ticket = QlumJobPool::Ticket;

    /// Becomes the instance, and looks whether there is a service.
    explicit QlumPasswordKeeper(std::unique_ptr<QlumKeyring> keyring, QObject* parent = nullptr);
    /// Ends what runs.
    ~QlumPasswordKeeper() override;
    /// Null for none.
    [[nodiscard]] static QlumPasswordKeeper* instance();

    /// Whether passwords that are kept now would be there another time, as far as is known.
    [[nodiscard]] bool isWorking() const { return m_isWorking; }
    /// What the user is told a password that he has remembered is kept in, as the text of a box to tick.
    [[nodiscard]] static QString rememberText();
    /// The same at length.
    [[nodiscard]] static QString rememberHelp();

    /// Tells once, later, unless given up.
    Ticket find(const QlumKeyringKey& key, Found found);
    void giveUp(Ticket ticket);
    /// What fails is in the log; the password lives as long as the program then.
    void keep(const QlumKeyringKey& key, const QlumSecretText& password, const QString& server);
    void forget(const QlumKeyringKey& key);
    /// False when something still waits after so many milliseconds.
    [[nodiscard]] bool waitForDone(int milliseconds) { return m_pool.waitForDone(milliseconds); }

private:
    void take(const QlumKeyringAnswer& answer);
    void log(const QlumKeyringAnswer& answer, const QString& what);
    [[nodiscard]] static QString problemOf(const QlumKeyringAnswer& answer);

    const QlumLog m_log;
    const std::shared_ptr<QlumKeyring> m_keyring; ///< jobs hold it
    bool m_isWorking = false;
    QlumJobPool m_pool;
};
