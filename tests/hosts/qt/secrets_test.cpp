// What of a password field leaves the process.
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QLineEdit>
#include <QProcess>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

/// Runs where a screen reader can listen: with an accessibility bus. All that goes
/// over that bus is written down.
class QtSecrets : public QtFixture {
 protected:
  ~QtSecrets() override {
    monitor_.terminate();
    monitor_.waitForFinished();
    QDBusConnection::disconnectFromBus("readers");
  }

  void Listen() {
    const QDBusReply<QString> address =
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
    ASSERT_TRUE(address.isValid()) << FromQt(address.error().message());
    monitor_.start("dbus-monitor", {"--address", address.value()});
    ASSERT_TRUE(WaitFor([&] { return Heard("NameLost"); })) << "the monitor listens";
    // Programs announce only what somebody wants to hear.
    QDBusMessage wish =
        QDBusMessage::createMethodCall("org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                                       "org.a11y.atspi.Registry", "RegisterEvent");
    wish << QStringLiteral("object:");
    const QDBusMessage answer =
        QDBusConnection::connectToBus(address.value(), "readers").call(wish);
    ASSERT_EQ(answer.type(), QDBusMessage::ReplyMessage) << FromQt(answer.errorMessage());
  }
  bool Heard(const char* what) {
    heard_ += monitor_.readAllStandardOutput();
    return heard_.contains(what);
  }

  TextBox password{TextKind::kPassword};
  TextBox plain;

 private:
  QProcess monitor_;
  QByteArray heard_;
};

TEST_F(QtSecrets, APasswordIsNeverHeardNorReadByReaders) {
  Place(password);
  Place(plain);
  Show();
  ASSERT_TRUE(WaitFor([] { return QAccessible::isActive(); }));
  Listen();
  // What a program announces before it has learnt of the wish, nobody hears.
  int tries = 0;
  ASSERT_TRUE(WaitFor([&] {
    plain.Text = "first" + std::to_string(++tries);
    return Heard("first");
  }));

  password.Text = "Wacholder";
  password.Text = "Brombeere";
  window.Focus(password);
  auto& edit = dynamic_cast<QLineEdit&>(WidgetOf(password));
  edit.setCursorPosition(9);
  QTest::keyClicks(&edit, "xyzzy");
  QTest::keyClick(&edit, Qt::Key_Backspace);
  ASSERT_TRUE(WaitFor([&] { return password.Text.Get() == "Brombeerexyzz"; }));
  // As a real keyboard does it: through the window.
  ASSERT_TRUE(WaitFor([&] { return edit.hasFocus(); }));
  QTest::keyClick(Native().windowHandle(), Qt::Key_W);
  ASSERT_TRUE(WaitFor([&] { return password.Text.Get() == "Brombeerexyzzw"; }));
  edit.selectAll();
  edit.insert("Schlehe");
  password.Text = "";
  plain.Text = "and last";
  ASSERT_TRUE(WaitFor([&] { return Heard("and last"); }));

  for (const char* secret :
       {"Wacholder", "Brombeere", "\"x\"", "\"y\"", "\"z\"", "\"w\"", "xyzz", "Schlehe"}) {
    EXPECT_FALSE(Heard(secret)) << secret;
  }
  EXPECT_TRUE(Heard("\"*********\"")) << "its length is announced";
}

TEST_F(QtSecrets, APasswordIsNotGivenToAQuery) {
  password.Text = "Wacholder";
  Place(password);
  Show();
  QAccessibleInterface* reader = Accessible(password);
  EXPECT_EQ(FromQt(reader->text(QAccessible::Value)), "*********");
  EXPECT_EQ(FromQt(reader->textInterface()->text(0, 9)).find("W"), std::string::npos);
  const QWidget& edit = WidgetOf(password);
  dynamic_cast<QLineEdit&>(WidgetOf(password)).selectAll();
  for (const Qt::InputMethodQuery query : {Qt::ImSurroundingText, Qt::ImCurrentSelection,
                                           Qt::ImTextBeforeCursor, Qt::ImTextAfterCursor}) {
    EXPECT_EQ(FromQt(edit.inputMethodQuery(query).toString()), "") << query;
  }
}

}  // namespace
}  // namespace tarnvale
