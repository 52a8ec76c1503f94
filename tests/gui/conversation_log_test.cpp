// The log of a mail's conversation in its real window.
#include <QPlainTextEdit>
#include <QTextBlock>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "tests/hosts/qt/qt_fixture.h"
#include "tests/support/fake_machine.h"
#include "transfer/frm_winsock.h"

namespace tarnvale {
namespace {

constexpr int kBatches = 10;
constexpr int kLinesOfBatch = 10000;

class QtConversationLog : public QtFixture {
 protected:
  QtConversationLog() {
    host.Adopt(conversation);
    conversation.Show();
  }

  QPlainTextEdit& Log() {
    QtWindow& native = *host.NativeOf(conversation);
    return dynamic_cast<QPlainTextEdit&>(native.PeerOf(conversation.txtData)->Widget());
  }

  /// Logs ten thousand lines, each in an event of its own, and waits until the
  /// last one is on the screen. Returns the processor time of it: what else the
  /// machine does doesn't count.
  double SecondsOfBatch(int batch) {
    const std::string last = "the last line of batch " + std::to_string(batch);
    const std::clock_t begun = std::clock();
    for (int line = 1; line < kLinesOfBatch; ++line) {
      conversation.Status("250 this is one more line of the answer");
      loop.Yield();
    }
    conversation.Status(last);
    EXPECT_TRUE(
        WaitFor([&] { return FromQt(Log().document()->lastBlock().previous().text()) == last; }));
    return static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC;
  }

  testing::FakeMachine machine;
  BackupSettings settings;
  ReportMail mail;
  std::string last_reply;
  frmWinsock conversation{machine.Interfaces(), settings, mail, last_reply};
};

TEST_F(QtConversationLog, ALineTakesNoLongerAfterAHundredThousandOthers) {
  ASSERT_TRUE(WaitFor([&] { return host.NativeOf(conversation)->isActiveWindow(); }));
  std::vector<double> seconds;
  for (int batch = 1; batch <= kBatches; ++batch) {
    seconds.push_back(SecondsOfBatch(batch));
    std::printf("%6d lines: %.0f lines a second\n", batch * kLinesOfBatch,
                kLinesOfBatch / seconds.back());
    // Else a log that slows down would keep everybody waiting.
    ASSERT_LE(seconds.back(), 10 * seconds.front());
  }
  // How often the window is painted meanwhile is chance: the best of three.
  EXPECT_LE(*std::min_element(seconds.end() - 3, seconds.end()), 3 * seconds.front());
  EXPECT_EQ(Log().textCursor().position(), Log().document()->characterCount() - 1);
  EXPECT_EQ(conversation.txtData.Selection.Get().start, conversation.txtData.Text.Get().size());
  // A line end is one character in the document and two in the text.
  EXPECT_EQ(FromQt(Log().toPlainText()).size() +
                static_cast<std::size_t>(Log().document()->blockCount()) - 1,
            conversation.txtData.Text.Get().size());
}

}  // namespace
}  // namespace tarnvale
