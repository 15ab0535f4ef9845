#pragma once
#include <app/api/qlumlog.h>

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <span>

struct nlmsghdr;

/// Hears from the kernel when interfaces or their addresses come, go or change: a server that could not be
/// reached may be within reach now. GUI thread.
class QlumNetworkWatch : public QObject
{
    Q_OBJECT
public:
    /// The one of the program; it lives as long as somebody holds it.
    [[nodiscard]] static std::shared_ptr<QlumNetworkWatch> shared();

    /// Takes the socket, which each datagram of such messages comes from; without one (-1) it says so in the
    /// log and hears nothing. Changes within the pause after one that was told are told together at its end.
    explicit QlumNetworkWatch(int socket, std::chrono::milliseconds pause = std::chrono::seconds(1));
    ~QlumNetworkWatch() override;

    /// What a datagram holds. A message whose length cannot be right ends it.
    void takeMessages(std::span<const std::byte> datagram);

signals:
    void networkChanged();

private:
    void read();
    void stopReading();
    [[nodiscard]] bool isChange(const nlmsghdr& header, std::span<const std::byte> body);
    [[nodiscard]] bool isChangeOfLink(bool removed, std::span<const std::byte> body);
    void noteChange();
    void tell();

    const QlumLog m_log;
    const int m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_pause;
    bool m_changedMeanwhile = false;
    std::map<int, unsigned int> m_links; ///< the flags that matter, by the number of the interface
};
