#include "ports/network_ports.hpp"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpSocket>

namespace telvox {

namespace {

class QtTcpClient final : public ReportingTcpClient {
  public:
    QtTcpClient() {
        socket_.setProxy(QNetworkProxy::NoProxy);
        socket_.setReadBufferSize(65536); // a flood waits with its sender
        QObject::connect(&socket_, &QTcpSocket::readyRead, &socket_,
                         [this] { arrived(socket_.readAll().toStdString()); });
    }

    void connect(const std::string &address, int port) override {
        close();
        // As an address, not as a name that somebody would be asked for.
        socket_.connectToHost(QHostAddress(QString::fromStdString(address)), static_cast<quint16>(port));
    }
    void send(std::string_view bytes) override {
        if (socket_.state() == QTcpSocket::ConnectedState)
            socket_.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    void close() override { socket_.abort(); }

  private:
    QTcpSocket socket_;
};

} // namespace

std::unique_ptr<ReportingTcpClient> make_qt_tcp_client() { return std::make_unique<QtTcpClient>(); }

} // namespace telvox
