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

// A quiet server is asked whether it is there, and given up after some questions.
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

enum class Waiting { kNothing, kBytes, kEnd, kReset, kLoss };

/// What the next read of a connection would find.
Waiting Look(const QTcpSocket& connection) {
  char first = 0;
  const ssize_t count = ::recv(Descriptor(connection), &first, 1, MSG_PEEK | MSG_DONTWAIT);
  if (count > 0) return Waiting::kBytes;
  if (count == 0) return Waiting::kEnd;
  if (errno == EAGAIN || errno == EINTR) return Waiting::kNothing;
  return errno == ECONNRESET ? Waiting::kReset : Waiting::kLoss;
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
    const Waiting waiting = heard_ < kMostOfFarewell ? Look(*connection_) : Waiting::kEnd;
    if (waiting == Waiting::kBytes) heard_ += connection_->read(kMostOfFarewell - heard_).size();
    // A server that has said all may still be reading.
    if (connection_->bytesToWrite() > 0 && waiting != Waiting::kReset) return;
    ::shutdown(Descriptor(*connection_), SHUT_WR);
    if (waiting != Waiting::kBytes && waiting != Waiting::kNothing) deleteLater();
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

template <class Job>
void QtSocket::Later(Job job) {
  loop_.Post([life = std::weak_ptr<int>(life_), job = std::move(job)] {
    if (!life.expired()) job();
  });
}

void QtSocket::ReportFailed(int number) {
  Later([this, number] { Failed.Emit(number); });
}

void QtSocket::Connect(const std::string& host, std::uint16_t port) {
  if (state_ == SocketState::kConnecting || state_ == SocketState::kConnected) {
    ReportFailed(kSocketInUse);
    return;
  }
  Close();
  state_ = SocketState::kConnecting;
  if (host.empty()) return Fail(kAddressNotAvailable);
  // The system would stop reading at a zero byte and find another host.
  if (host.find('\0') != std::string::npos) return Fail(kHostNotFound);
  Later([this, host, port] { Open(host, port); });
}

void QtSocket::Open(const std::string& host, std::uint16_t port) {
  connection_.reset(new QTcpSocket);
  connection_->setProxy(QNetworkProxy::NoProxy);
  QTcpSocket* connection = connection_.get();
  QObject::connect(connection, &QTcpSocket::connected, [this] { OnConnected(); });
  QObject::connect(connection, &QTcpSocket::readyRead, [this] { Later([this] { Report(); }); });
  QObject::connect(connection, &QTcpSocket::errorOccurred,
                   [this](QAbstractSocket::SocketError error) { OnError(NumberOf(error)); });
  connection->connectToHost(QString::fromStdString(host), port,
                            QIODevice::ReadWrite | QIODevice::Unbuffered);
}

// Handlers may take long and yield: none runs within a signal of Qt's, which would
// then report nothing else.
void QtSocket::OnConnected() {
  state_ = SocketState::kConnected;
  KeepAlive(*connection_);
  Later([this] { Connected.Emit(); });
}

void QtSocket::OnError(int number) {
  if (state_ == SocketState::kConnecting) return Fail(number);
  error_ = number;
  Later([this] { Report(); });
}

// Takes what has come, as much as one report may hold.
void QtSocket::Fetch() {
  if (server_ended_ || error_ != 0 || arrived_.size() >= kMostBytesAtOnce) return;
  switch (Look(*connection_)) {
    case Waiting::kNothing:
      break;
    case Waiting::kBytes:
      arrived_ +=
          connection_->read(static_cast<qint64>(kMostBytesAtOnce - arrived_.size())).toStdString();
      break;
    case Waiting::kEnd:
      server_ended_ = true;
      break;
    case Waiting::kReset:
      error_ = kConnectionReset;
      break;
    case Waiting::kLoss:
      error_ = kConnectionAborted;
      break;
  }
}

// An emission comes last: its handler may close or connect.
void QtSocket::Report() {
  Fetch();
  if (!arrived_.empty()) {
    if (server_ended_ || error_ != 0) Later([this] { Report(); });
    const std::string bytes = std::exchange(arrived_, {});
    DataArrived.Emit(bytes);
  } else if (error_ != 0) {
    Fail(error_);
  } else if (server_ended_ && state_ == SocketState::kConnected) {
    state_ = SocketState::kClosedByPeer;
    ClosedByPeer.Emit();
  }
}

void QtSocket::Send(const std::string& bytes) {
  if (state_ != SocketState::kConnected && state_ != SocketState::kClosedByPeer) {
    ReportFailed(kWrongConnectionState);
    return;
  }
  // A write that fails throws away what the server said before it went.
  Fetch();
  const auto size = static_cast<qint64>(bytes.size());
  if (error_ == 0 && connection_->write(bytes.data(), size) < 0) error_ = kConnectionAborted;
  if (!arrived_.empty() || error_ != 0) Later([this] { Report(); });
}

void QtSocket::Fail(int number) {
  LetGo();
  state_ = SocketState::kFailed;
  ReportFailed(number);
}

void QtSocket::Close() {
  const bool sees_off =
      (state_ == SocketState::kConnected || state_ == SocketState::kClosedByPeer) && error_ == 0;
  if (sees_off) {
    connection_->disconnect();
    new Farewell(connection_.release(), leaving_);
  }
  LetGo();
  state_ = SocketState::kClosed;
}

void QtSocket::LetGo() {
  connection_.reset();
  arrived_.clear();
  server_ended_ = false;
  error_ = 0;
  life_ = std::make_shared<int>();
}

}  // namespace tarnvale
