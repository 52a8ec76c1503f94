#include "hosts/qt/qt_sockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <QNetworkProxy>
#include <QTimer>

#include <cerrno>
#include <memory>
#include <utility>

// Qt reads ahead as soon as bytes come, and closes both directions when the server
// ends its own. A server that has ended its side still takes what is sent, and what
// a server said before it cut the connection is worth reading, so the sockets here
// are unbuffered and look at what waits before they let Qt read it.

namespace tarnvale {
namespace {

/// How much of a closed connection is still read.
constexpr auto kMostOfFarewell = static_cast<qint64>(kMostBytesAtOnce);

// A quiet server is probed, and given up after some probes without an answer.
constexpr int kQuietSeconds = 60;
constexpr int kBetweenQuestionsSeconds = 15;
constexpr int kQuestions = 4;

int Descriptor(const QTcpSocket& connection) {
  return static_cast<int>(connection.socketDescriptor());
}

// Makes an error of a link that died without a word. Without it a connection
// works all the same.
void KeepAlive(const QTcpSocket& connection) {
  const auto set = [&connection](int level, int option, int value) {
    ::setsockopt(Descriptor(connection), level, option, &value, sizeof value);
  };
  set(SOL_SOCKET, SO_KEEPALIVE, 1);
  set(IPPROTO_TCP, TCP_KEEPIDLE, kQuietSeconds);
  set(IPPROTO_TCP, TCP_KEEPINTVL, kBetweenQuestionsSeconds);
  set(IPPROTO_TCP, TCP_KEEPCNT, kQuestions);
}

/// What the next read of a connection would find.
SocketWaiting LookAt(const QTcpSocket& connection) {
  char first = 0;
  const ssize_t count = ::recv(Descriptor(connection), &first, 1, MSG_PEEK | MSG_DONTWAIT);
  if (count > 0) return SocketWaiting::kBytes;
  if (count == 0) return SocketWaiting::kEnd;
  if (errno == EAGAIN || errno == EINTR) return SocketWaiting::kNothing;
  return errno == ECONNRESET ? SocketWaiting::kReset : SocketWaiting::kLoss;
}

int NumberOf(QAbstractSocket::SocketError error) {
  switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
      return kConnectionRefused;
    case QAbstractSocket::HostNotFoundError:
      return kHostNotFound;
    case QAbstractSocket::SocketAccessError:
      return kSocketAccessDenied;
    case QAbstractSocket::SocketResourceError:
      return kNoBufferSpace;
    case QAbstractSocket::SocketTimeoutError:
      return kConnectTimedOut;
    case QAbstractSocket::NetworkError:
      return kNetworkUnreachable;
    case QAbstractSocket::SocketAddressNotAvailableError:
    case QAbstractSocket::UnsupportedSocketOperationError:
      return kAddressNotAvailable;
    default:
      return kConnectionAborted;
  }
}

/// Sees a closed connection off: sends what still waits, ends the sending side, and
/// throws away what the server says until it hangs up. Closing at once would have
/// the system answer the server's next word with a reset, and the server lose what
/// it hasn't read yet.
class Farewell : public QObject {
 public:
  Farewell(QTcpSocket* connection, ClosedConnections& leaving)
      : QObject(&leaving.owner), connection_(connection) {
    connection_->setParent(this);
    connect(connection_, &QTcpSocket::readyRead, this, [this] { Advance(); });
    connect(connection_, &QTcpSocket::bytesWritten, this, [this] { Advance(); });
    connect(connection_, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    QTimer::singleShot(leaving.limit, this, &QObject::deleteLater);
    Advance();
  }

 private:
  void Advance() {
    const SocketWaiting waiting =
        heard_ < kMostOfFarewell ? LookAt(*connection_) : SocketWaiting::kEnd;
    if (waiting == SocketWaiting::kBytes)
      heard_ += connection_->read(kMostOfFarewell - heard_).size();
    // A server that has said all may still be reading.
    if (connection_->bytesToWrite() > 0 && waiting != SocketWaiting::kReset) return;
    ::shutdown(Descriptor(*connection_), SHUT_WR);
    if (waiting != SocketWaiting::kBytes && waiting != SocketWaiting::kNothing) deleteLater();
  }

  QTcpSocket* connection_;
  qint64 heard_ = 0;
};

}  // namespace

std::unique_ptr<Socket> QtSockets::MakeSocket() {
  return std::make_unique<QtSocket>(loop_, leaving_);
}

void QtSocket::DeleteLater::operator()(QTcpSocket* connection) const {
  // It may be the one whose signal is being handled.
  connection->disconnect();
  connection->abort();
  connection->deleteLater();
}

QtSocket::~QtSocket() {
  Close();
}

void QtSocket::Open(const std::string& host, std::uint16_t port) {
  connection_.reset(new QTcpSocket);
  connection_->setProxy(QNetworkProxy::NoProxy);
  QTcpSocket* connection = connection_.get();
  QObject::connect(connection, &QTcpSocket::connected, [this, connection] {
    KeepAlive(*connection);
    OnConnected();
  });
  QObject::connect(connection, &QTcpSocket::readyRead, [this] { OnArrival(); });
  QObject::connect(connection, &QTcpSocket::errorOccurred,
                   [this](QAbstractSocket::SocketError error) { OnError(NumberOf(error)); });
  connection->connectToHost(QString::fromStdString(host), port,
                            QIODevice::ReadWrite | QIODevice::Unbuffered);
}

SocketWaiting QtSocket::Look() {
  return LookAt(*connection_);
}

std::string QtSocket::Read(std::size_t most) {
  return connection_->read(static_cast<qint64>(most)).toStdString();
}

bool QtSocket::Write(const std::string& bytes) {
  return connection_->write(bytes.data(), static_cast<qint64>(bytes.size())) >= 0;
}

void QtSocket::Drop(bool sees_off) {
  if (sees_off) {
    connection_->disconnect();
    new Farewell(connection_.release(), leaving_);
  }
  connection_.reset();
}

}  // namespace tarnvale
