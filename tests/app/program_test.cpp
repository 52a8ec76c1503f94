// The whole program on the test machine: its start, and what opens what.
#include "app/program.h"

#include <gmock/gmock.h>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest() {
    machine.files.Write("C:\\Program\\Data.txt", "C:\\Data\r\n");
    machine.files.Write("C:\\Program\\U3-Data.exe", "");
    machine.files.MakeFolder("C:\\Data");
  }

  void GivenWizard(const std::string& mark) {
    machine.files.Write("C:\\Data\\Tarnvale.ini", "[Setup]\r\nWizard=" + mark + "\r\n");
  }

  /// Starts the program.
  Program& Start() {
    program = std::make_unique<Program>(machine.Interfaces());
    EXPECT_TRUE(program->Start());
    machine.Advance(1s);
    return *program;
  }

  FakeMachine machine;
  std::unique_ptr<Program> program;
};

TEST_F(ProgramTest, ANormalStartShowsTheSplashForSevenSecondsAndThenTheWindowInTheTray) {
  GivenWizard("1");
  Program& p = Start();
  EXPECT_TRUE(p.Splash.Visible);
  EXPECT_EQ(machine.processes.Started().at(0).text, "C:\\Program\\U3-Data.exe");
  machine.Advance(5900ms);
  EXPECT_TRUE(p.Splash.Visible);
  machine.Advance(200ms);
  EXPECT_FALSE(p.Splash.Visible);
  EXPECT_FALSE(p.Agreement.IsLoaded());
  EXPECT_EQ(p.form.State.Get(), WindowState::kMinimized);
  EXPECT_TRUE(p.form.Enabled);
  machine.tray.Mouse(kTrayLeftDouble);
  EXPECT_EQ(p.form.State.Get(), WindowState::kNormal);
}

TEST_F(ProgramTest, TheFirstStartShowsTheAgreementBeforeADisabledWindow) {
  Program& p = Start();
  machine.Advance(6200ms);
  EXPECT_TRUE(p.form.Visible);
  ASSERT_TRUE(p.Agreement.IsLoaded());
  EXPECT_TRUE(p.Agreement.Get().Visible);
  EXPECT_FALSE(p.form.Enabled);

  p.Agreement.Get().chameleonButton1.Click.Emit();
  EXPECT_TRUE(p.form.Enabled);
  EXPECT_FALSE(p.Agreement.IsLoaded());
  EXPECT_THAT(machine.files.Content("C:\\Data\\Tarnvale.ini"), ::testing::HasSubstr("Wizard=1"));
  machine.Advance(1s);
  EXPECT_TRUE(p.form.Enabled) << "nothing disables the window any more";
}

TEST_F(ProgramTest, DeclinedWithNoTheAgreementStaysAndWithYesTheProgramLeaves) {
  machine.files.Write("C:\\Program\\Quit.exe", "");
  Program& p = Start();
  machine.Advance(6200ms);
  machine.boxes.Expect("Selecting Decline Will Close Tarnvale. Continue ?", BoxIcon::kQuestion,
                       BoxAnswer::kNo);
  p.Agreement.Get().chameleonButton2.Click.Emit();
  EXPECT_TRUE(p.Agreement.Get().Visible);
  p.form.Enabled = true;
  machine.Advance(200ms);
  EXPECT_FALSE(p.form.Enabled);
  machine.boxes.Answer(BoxAnswer::kYes);
  p.Agreement.Get().chameleonButton2.Click.Emit();
  EXPECT_FALSE(machine.tray.HasIcon());
  EXPECT_EQ(machine.processes.Started().back().text, "C:\\Program\\Quit.exe");
}

TEST_F(ProgramTest, ASettingsFileWithMarkZeroShowsTheAgreementAlone) {
  GivenWizard("0");
  Program& p = Start();
  machine.Advance(6200ms);
  EXPECT_TRUE(p.Agreement.IsLoaded());
  // Nowhere to be seen.
  EXPECT_EQ(p.form.State, WindowState::kMinimized);
  EXPECT_FALSE(p.form.InTaskBar);
  EXPECT_FALSE(p.form.Enabled);
}

TEST_F(ProgramTest, ASettingsFileWithMarkTwoKeepsTheSplashUpForGood) {
  GivenWizard("2");
  Program& p = Start();
  machine.Advance(60s);
  EXPECT_TRUE(p.Splash.Visible);
  EXPECT_FALSE(p.Agreement.IsLoaded());
}

TEST_F(ProgramTest, ASecondInstanceStartsTheCompanionShowsItsMessageAndEnds) {
  GivenWizard("1");
  machine.processes.previous_instance = true;
  machine.boxes.Expect("Another Instance Of Tarnvale Is Already Running On This System.",
                       BoxIcon::kExclamation, BoxAnswer::kOk);
  Program second(machine.Interfaces());
  EXPECT_EQ(second.Run(), 0);
  EXPECT_EQ(machine.processes.Started().size(), 1U);
  EXPECT_EQ(machine.processes.Started().at(0).text, "C:\\Program\\U3-Data.exe");
  EXPECT_FALSE(machine.tray.HasIcon());
}

TEST_F(ProgramTest, AMessageOfASecondInstanceThatStandsForLongLeavesTheFirstOneAlone) {
  GivenWizard("1");
  machine.files.Write("C:\\Program\\Quit.exe", "");
  machine.processes.previous_instance = true;
  Program second(machine.Interfaces());
  machine.boxes.Answer(BoxAnswer::kOk);
  machine.boxes.WhileOpen([&] {
    machine.Advance(1min);
    EXPECT_FALSE(second.form.Visible);
    EXPECT_FALSE(second.Agreement.IsLoaded());
  });
  EXPECT_EQ(second.Run(), 0);
  ASSERT_EQ(machine.processes.Started().size(), 1U) << "the helper, and never Quit.exe";
  EXPECT_EQ(machine.processes.Started().at(0).text, "C:\\Program\\U3-Data.exe");
}

TEST_F(ProgramTest, AnErrorThatLeftItsHandlerIsShown) {
  ShowFaults(machine.Interfaces());
  machine.ExpectFault(6);
  machine.boxes.Expect("6\nOverflow", BoxIcon::kStop, BoxAnswer::kOk);
  machine.loop.Deliver([] { throw ProgramError(kOverflow); });
}

TEST_F(ProgramTest, ACommandBringsUpAToolThatWasMinimised) {
  GivenWizard("1");
  Program& p = Start();
  const std::vector<std::pair<Label*, Window*>> tools{{&p.form.Label34, &p.UserData.Get()},
                                                      {&p.form.Label42, &p.Splitter.Get()},
                                                      {&p.form.Label56, &p.RegistryBackup.Get()},
                                                      {&p.form.Label46, &p.Transfer.Get()},
                                                      {&p.form.Label41, &p.Compressor.Get()}};
  for (const auto& [link, tool] : tools) {
    link->Clicked.Emit();
    tool->State = WindowState::kMinimized;
    link->Clicked.Emit();
    EXPECT_EQ(tool->State.Get(), WindowState::kNormal) << link->Caption.Get();
    EXPECT_TRUE(tool->Visible);
  }
}

TEST_F(ProgramTest, ARunPacksItsResultAndThePopupsFollow) {
  machine.files.Write("C:\\Work\\a.txt", "aaaaabbb");
  machine.files.MakeFolder("C:\\Store");
  machine.files.MakeFolder("C:\\Archives");
  machine.files.Write(
      "C:\\Data\\Tarnvale.ini",
      "[Setup]\r\nWizard=1\r\n[Compress]\r\nAuto=True\r\n[Destiny]\r\nDir=C:\\Store\r\n"
      "Backup=C:\\Archives\r\n[Entries]\r\n0=C:\\Work\\a.txt\r\n");
  Program& p = Start();
  machine.Advance(10s);
  machine.boxes.Expect(
      "Tarnvale Will Now Perform A Backup For Your Files - Compression & FTP Upload Will Occur If "
      "Selected. Proceed?",
      BoxIcon::kQuestion, BoxAnswer::kYes);
  p.form.mnuBackup.Clicked.Emit();
  EXPECT_TRUE(p.popups.IsAlertLoaded());
  machine.Advance(20s);
  EXPECT_TRUE(machine.files.FileExists("C:\\Archives\\Auto Compressed.tvz"));
  EXPECT_EQ(p.popups.ProgressPopup().Label1.Caption.Get(), "Tarnvale Has Completed");
  EXPECT_FALSE(p.Compressor.Get().Visible) << "a run doesn't show the window";
}

class MailTest : public ProgramTest {
 protected:
  MailTest() {
    machine.files.Write("C:\\Work\\a.txt", "aaaaabbb");
    machine.files.MakeFolder("C:\\Store");
    machine.files.MakeFolder("C:\\Archives");
    server.on_connect = [](FakeConnection& c) { c.Say("220 ready\r\n", 20ms); };
  }

  void GivenSettings(const std::string& compression) {
    machine.files.Write(
        "C:\\Data\\Tarnvale.ini",
        "[Setup]\r\nWizard=1\r\n[Compress]\r\nAuto=" + compression +
            "\r\n[Destiny]\r\nDir=C:\\Store\r\nBackup=C:\\Archives\r\n"
            "[Server]\r\nSTMP=mail.example\r\n"
            "[Reports]\r\nSend=True\r\n[Send]\r\nTo=ann@home.example, bob@home.example\r\n"
            "[Entries]\r\n0=C:\\Work\\a.txt\r\n");
  }

  void BackUp(Program& p) {
    machine.boxes.Answer(BoxAnswer::kYes);
    p.form.mnuBackup.Clicked.Emit();
    machine.Advance(20s);
  }

  FakeServer& server = machine.network.AddServer("mail.example", 25);
};

TEST_F(MailTest, ARunSendsItsReportWhenTheStagesBeforeItHaveReturned) {
  GivenSettings("True");
  Program& p = Start();
  machine.Advance(10s);
  bool packed_before = false;
  server.on_connect = [&](FakeConnection& c) {
    packed_before = machine.files.FileExists("C:\\Archives\\Auto Compressed.tvz");
    c.Say("220 ready\r\n", 20ms);
  };
  BackUp(p);
  EXPECT_TRUE(packed_before);
  ASSERT_EQ(server.ConnectionCount(), 1U);
  EXPECT_THAT(server.Connection().Text(),
              ::testing::StartsWith("HELO x.x\r\nMAIL FROM: report@tarnvale.example\r\n"
                                    "RCPT TO: ann@home.example\r\nRCPT TO:  bob@home.example\r\n"
                                    "DATA\r\nSUBJECT: 0\r\n"
                                    "This is an automated E-Mail Report from Tarnvale.\r\n"));
  EXPECT_THAT(server.Connection().Text(),
              ::testing::HasSubstr(">> Backed Up Files Have Been Compressed To: C:\\Archives\r\n"));
  EXPECT_FALSE(p.Mailer.Get().Visible) << "a run doesn't show the window";
}

TEST_F(MailTest, TheRunDoesNotWaitForAServerThatSaysNothing) {
  GivenSettings("False");
  Program& p = Start();
  machine.Advance(10s);
  server.on_connect = nullptr;
  BackUp(p);
  EXPECT_EQ(server.Connection().Text(), "HELO x.x\r\n");
  EXPECT_THAT(p.form.Progress.Label14.Caption.Get(),
              ::testing::StartsWith("Success >> Copied 1 Items"));
  EXPECT_FALSE(p.engine.timers[EngineTimer::kRunStart].Enabled) << "the run has returned";
}

TEST_F(MailTest, AFailedSendGoesUnnoticed) {
  GivenSettings("False");
  Program& p = Start();
  machine.Advance(10s);
  server.fails_with = kConnectionRefused;
  BackUp(p);
  EXPECT_EQ(p.Mailer.Get().txtData.Text.Get(),
            "<WINSOCK ERROR> 10061. Connection is forcefully rejected.\r\n");
  EXPECT_FALSE(p.Mailer.Get().Visible);
}

TEST_F(MailTest, TheTestButtonShowsTheWindowAndSendsTheTestTextUnsaved) {
  GivenSettings("False");
  Program& p = Start();
  p.form.Advanced.txtServer.Text = "other.example";
  p.form.Advanced.txtTo.Text = "carol@home.example";
  FakeServer& other = machine.network.AddServer("other.example", 25);
  other.on_connect = [](FakeConnection& c) { c.Say("220 ready\r\n"); };
  p.form.Advanced.chameleonButton6.Click.Emit();
  EXPECT_TRUE(p.Mailer.Get().Visible);
  machine.Advance(5s);
  EXPECT_EQ(other.Connection().Text(),
            "HELO x.x\r\nMAIL FROM: report@tarnvale.example\r\nRCPT TO: carol@home.example\r\n"
            "DATA\r\nSUBJECT: 0\r\n"
            "This Is A Test E-Mail Report From Tarnvale : Your Settings Have Been Confirmed\r\n"
            "\r\n\r\n.\r\n");
  EXPECT_EQ(p.form.Advanced.txtBody.Text.Get(),
            "This Is A Test E-Mail Report From Tarnvale : Your Settings Have Been Confirmed");
  EXPECT_EQ(p.form.Advanced.txtSubject.Text.Get(), "0");
  EXPECT_EQ(p.form.Advanced.Text15.Text.Get(), "report@tarnvale.example");
  EXPECT_THAT(machine.files.Content("C:\\Data\\Tarnvale.ini"),
              ::testing::Not(::testing::HasSubstr("carol")));
}

TEST_F(MailTest, AfterTheWindowWasClosedTheNextMailStillWaitsForNothing) {
  GivenSettings("False");
  Program& p = Start();
  p.form.Advanced.chameleonButton6.Click.Emit();
  machine.Advance(5s);
  p.Mailer.Get().Close();
  EXPECT_FALSE(p.Mailer.IsLoaded());
  server.on_connect = nullptr;
  p.form.Advanced.chameleonButton6.Click.Emit();
  machine.Advance(5s);
  EXPECT_THAT(server.Connection(1).Text(), ::testing::EndsWith("\r\n\r\n\r\n.\r\n"));
}

TEST_F(ProgramTest, TheTransferWindowIsThereHiddenFromTheStart) {
  machine.files.Write("C:\\Data\\Tarnvale.ini",
                      "[Setup]\r\nWizard=1\r\n[FTP]\r\nServer=ftp.home\r\nUsername=ann\r\n");
  Program& p = Start();
  ASSERT_TRUE(p.Transfer.IsLoaded());
  EXPECT_FALSE(p.Transfer.Get().Visible);
  EXPECT_EQ(p.Transfer.Get().txtServer.Text.Get(), "ftp.home");
  EXPECT_EQ(p.Transfer.Get().txtUserID.Text.Get(), "ann");
  EXPECT_EQ(p.Transfer.Get().XP_ProgressBar1.Value, 0);
}

TEST_F(ProgramTest, WithoutAServerTheExampleReachesTheSettingsThoughNobodyOpensTheWindow) {
  GivenWizard("1");
  Program& p = Start();
  machine.Advance(2s);
  EXPECT_EQ(p.engine.settings.FtpServer.Get(), kExampleServer);
}

TEST_F(ProgramTest, EveryWayToTheTransferWindowShowsIt) {
  GivenWizard("1");
  Program& p = Start();
  const std::vector<std::function<void()>> ways{
      [&] { p.form.Label46.Clicked.Emit(); }, [&] { p.form.mnuFTP.Clicked.Emit(); },
      [&] { p.form.Advanced.chameleonButton7.Click.Emit(); },
      [&] { p.Compressor.Get().Label49.Clicked.Emit(); }};
  for (const auto& way : ways) {
    way();
    EXPECT_TRUE(p.Transfer.Get().Visible);
    p.Transfer.Get().Hide();
  }
}

TEST_F(ProgramTest, WhatIsTypedIntoTheTransferWindowIsSavedWhenItIsClosed) {
  GivenWizard("1");
  Program& p = Start();
  p.form.Label46.Clicked.Emit();
  Main& first = p.Transfer.Get();
  first.txtServer.Text = "ftp.home";
  first.txtPassword.Text = "s3cret";
  machine.Advance(1s);
  first.Close();
  EXPECT_THAT(machine.files.Content("C:\\Data\\Tarnvale.ini"),
              ::testing::AllOf(::testing::HasSubstr("Server=ftp.home"),
                               ::testing::HasSubstr("Password=s3cret")));
  machine.Advance(100ms);
  EXPECT_TRUE(p.Transfer.IsLoaded()) << "the engine reads its status";
  EXPECT_EQ(p.Transfer.Get().txtServer.Text.Get(), "ftp.home");
  EXPECT_FALSE(p.Transfer.Get().Visible);
}

class RunWithUploadTest : public ProgramTest {
 protected:
  RunWithUploadTest() {
    machine.files.Write("C:\\Work\\a.txt", "aaaaabbb");
    machine.files.MakeFolder("C:\\Store");
    machine.files.MakeFolder("C:\\Archives");
    machine.files.Write(
        "C:\\Data\\Tarnvale.ini",
        "[Setup]\r\nWizard=1\r\n[Compress]\r\nAuto=True\r\n[FTP]\r\nAuto=True\r\n"
        "Server=ftp.home\r\nUsername=ann\r\nPassword=s3cret\r\n[Destiny]\r\n"
        "Dir=C:\\Store\r\nBackup=C:\\Archives\r\n[Entries]\r\n0=C:\\Work\\a.txt\r\n");
  }

  /// Starts the program and requests a run, up to the end of its pause.
  Program& StartRun() {
    Program& p = Start();
    machine.Advance(10s);
    machine.boxes.Answer(BoxAnswer::kYes);
    p.form.mnuBackup.Clicked.Emit();
    machine.Advance(8s);
    return p;
  }

  const std::string put = "PUT \"C:\\Archives\\Auto Compressed.tvz\" \"AutoCompressed.tvz\"";
};

TEST_F(RunWithUploadTest, CopiesThenPacksThenUploads) {
  bool was_copied = false;
  bool was_packed = false;
  machine.ftp.Called.Listen([&](const std::string& call) {
    if (call != "Execute DIR") return;
    was_copied = machine.files.FileExists("C:\\Store\\a.txt");
    was_packed = machine.files.FileExists("C:\\Archives\\Auto Compressed.tvz");
  });
  Program& p = StartRun();
  machine.Advance(10s);
  EXPECT_TRUE(was_copied);
  EXPECT_TRUE(was_packed);
  EXPECT_THAT(machine.ftp.Commands(), ::testing::ElementsAre("DIR", put, "CLOSE"));
  EXPECT_TRUE(p.Transfer.Get().Visible) << "a run shows the window";
  EXPECT_EQ(p.Transfer.Get().ConnectionStatus.Get(), "Action Completed");
  EXPECT_EQ(p.engine.run.EngineFree.Get(), "1");
}

TEST_F(RunWithUploadTest, TheProgressWindowDoesNotWaitForTheTransfer) {
  machine.ftp.Let("PUT", {.lasts = 30s});
  std::string text;
  machine.ftp.Called.Listen([&](const std::string& call) {
    if (call == "Execute CLOSE") text = program->popups.ProgressPopup().Label1.Caption;
  });
  StartRun();
  machine.Advance(60s);
  EXPECT_EQ(text, "Backup Has Been Completed");
}

TEST_F(RunWithUploadTest, AFailedUploadLeavesTheEngineFree) {
  machine.ftp.FailAlways("Execute", kMalformedCommand);
  Program& p = StartRun();
  machine.Advance(10s);
  EXPECT_EQ(p.Transfer.Get().ConnectionStatus.Get(), "File Transferring...");
  EXPECT_EQ(p.engine.run.EngineFree.Get(), "1");
  EXPECT_FALSE(p.engine.timers[EngineTimer::kRunStart].Enabled);
}

TEST_F(RunWithUploadTest, ClosingTheWindowDoesNotEndTheUpload) {
  machine.ftp.Let("PUT", {.lasts = 5s});
  machine.ftp.Called.Listen([&](const std::string& call) {
    if (call == "Execute " + put) {
      machine.loop.OnYield(10, [this] { program->Transfer.Get().Close(); });
    }
  });
  StartRun();
  machine.Advance(20s);
  EXPECT_THAT(machine.ftp.Commands(), ::testing::ElementsAre("DIR", put, "CLOSE"));
  EXPECT_FALSE(program->Transfer.Get().Visible);
}

// While compression is under way; a text without a row leaves what its bar says.
TEST_F(ProgramTest, TheEngineReadsTheStatusOfTheTransferWindow) {
  const std::vector<std::pair<const char*, const char*>> expected{
      {"Finding Host IP Address", "0"},
      {"IP Address Found", "0"},
      {"Sending Request", "0"},
      {"Request Sent", "0"},
      {"Receiving Response", "0"},
      {"Disconnecting From Server", "0"},
      {"Not Connected To Server", "1"},
      {"Action Completed", "1"},
      {"File Transferring...", "0"},
      {"Connected To Server", "0"},
      {"Connecting To Server", "0"},
      {"File Transfer Has Failed!", "0"},
      {"File Download Has Failed!", "0"},
      {"Please Wait...", "0"},
      {"Not Connected : Server Error", "0"}};
  GivenWizard("1");
  Program& p = Start();
  for (const auto& [status, engine_free] : expected) {
    p.Transfer.Get().ConnectionStatus = status;
    p.Compressor.Get().XP_ProgressBar1.Value = 50;
    machine.Advance(100ms);
    EXPECT_EQ(p.engine.run.EngineFree.Get(), engine_free) << status;
    p.Compressor.Get().XP_ProgressBar1.Value = 100;
    machine.Advance(100ms);
    EXPECT_EQ(p.engine.run.EngineFree.Get(), "1") << status;
  }
}

TEST_F(ProgramTest, AClosedToolIsMadeAnewByItsNextUse) {
  GivenWizard("1");
  Program& p = Start();
  p.form.Label41.Clicked.Emit();
  compression& first = p.Compressor.Get();
  EXPECT_TRUE(first.Visible);
  EXPECT_TRUE(first.GroupBox1.Visible);
  first.Label2.Clicked.Emit();
  EXPECT_FALSE(first.Visible);
  p.form.mnuCompressor.Clicked.Emit();
  EXPECT_NE(&p.Compressor.Get(), &first);
  p.form.Label42.Clicked.Emit();
  EXPECT_TRUE(p.Splitter.Get().Visible);
}

TEST_F(ProgramTest, AClosedToolIsDeletedWhenNothingOfItRuns) {
  GivenWizard("1");
  Program& p = Start();
  const std::size_t before = machine.windows.Adopted().size();
  for (int i = 0; i < 5; ++i) {
    machine.loop.Post([&] { p.form.Label42.Clicked.Emit(); });
    machine.Advance(1s);
    EXPECT_EQ(machine.windows.Adopted().size(), before + 1);
    machine.loop.Post([&] { p.Splitter.Get().Close(); });
    machine.Advance(1s);
    EXPECT_EQ(machine.windows.Adopted().size(), before);
  }
}

// The mail server is silent, so a conversation waits all the while.
TEST_F(MailTest, AClosedToolIsDeletedThoughAMailWaitsForItsServer) {
  GivenSettings("False");
  Program& p = Start();
  server.on_connect = nullptr;
  p.form.Advanced.chameleonButton6.Click.Emit();
  machine.Advance(1min);
  ASSERT_EQ(server.Connection().Text(), "HELO x.x\r\n");
  const std::size_t before = machine.windows.Adopted().size();
  machine.loop.Post([&] { p.form.Label42.Clicked.Emit(); });
  machine.Advance(1s);
  EXPECT_EQ(machine.windows.Adopted().size(), before + 1);
  machine.loop.Post([&] { p.Splitter.Get().Close(); });
  machine.Advance(1s);
  EXPECT_EQ(machine.windows.Adopted().size(), before);
}

TEST_F(ProgramTest, AToolThatIsClosedWhileItWorksIsDeletedBehindItsWork) {
  GivenWizard("1");
  machine.files.Write("C:\\Work\\a.bin", std::string(100000, 'a'));
  Program& p = Start();
  const std::size_t before = machine.windows.Adopted().size();
  std::size_t during = 0;
  machine.loop.Post([&] {
    p.form.Label42.Clicked.Emit();
    frmMain& tool = p.Splitter.Get();
    // As a click would: the handler goes on while the window is closed in a pass.
    machine.loop.Post([&] { p.Splitter.Get().Close(); });
    for (int i = 0; i < 50; ++i) machine.loop.WaitPass();
    during = machine.windows.Adopted().size();
    tool.Caption = "still there";
  });
  machine.Advance(1s);
  EXPECT_EQ(during, before + 1);
  EXPECT_EQ(machine.windows.Adopted().size(), before);
}

TEST_F(ProgramTest, TheRegistryWindowOpensFromTheTaskPanelAndTheMenu) {
  GivenWizard("1");
  Program& p = Start();
  EXPECT_FALSE(p.RegistryBackup.IsLoaded());
  p.form.Label56.Clicked.Emit();
  registry& first = p.RegistryBackup.Get();
  EXPECT_TRUE(first.Visible);
  EXPECT_FALSE(first.Icon.Get().empty());
  first.Text3.Text = "D:\\all.reg";
  first.Close();
  machine.Advance(1min);
  EXPECT_TRUE(p.RegistryBackup.IsLoaded());
  EXPECT_FALSE(first.Visible);
  p.form.mnuregistry.Clicked.Emit();
  EXPECT_EQ(&p.RegistryBackup.Get(), &first);
  EXPECT_TRUE(first.Visible);
  EXPECT_EQ(first.Text3.Text.Get(), "D:\\all.reg");
}

TEST_F(ProgramTest, TheUserDataWindowOpensFromTheTaskPanelAndTheMenuAndKnowsItsPaths) {
  GivenWizard("1");
  machine.processes.variables["username"] = "ann";
  Program& p = Start();
  EXPECT_FALSE(p.UserData.IsLoaded());
  p.form.Label34.Clicked.Emit();
  userdata& first = p.UserData.Get();
  EXPECT_TRUE(first.Visible);
  EXPECT_FALSE(first.Icon.Get().empty());
  machine.Advance(500ms);
  EXPECT_EQ(first.Text5.Text.Get(), "C:\\Documents and Settings\\ann\\Favorites");
  p.form.mnudata.Clicked.Emit();
  EXPECT_TRUE(p.UserData.Get().Visible);
}

TEST_F(ProgramTest, AClosedUserDataWindowStaysLoadedAsItIs) {
  GivenWizard("1");
  Program& p = Start();
  p.form.Label34.Clicked.Emit();
  userdata& window = p.UserData.Get();
  window.Label30.Clicked.Emit();
  window.Text21.Text = "D:\\Typed";
  window.Close();
  machine.Advance(1min);
  EXPECT_TRUE(p.UserData.IsLoaded());
  EXPECT_FALSE(window.Visible);
  p.form.Label34.Clicked.Emit();
  EXPECT_EQ(&p.UserData.Get(), &window);
  EXPECT_TRUE(window.Visible);
  EXPECT_EQ(window.Text21.Text.Get(), "D:\\Typed");
}

TEST_F(ProgramTest, TheTicksOfIdleWindowsDrawNoControlAnew) {
  GivenWizard("1");
  Program& p = Start();
  p.engine.settings.CompressDir = "C:\\Archives";
  p.engine.settings.AutoCompress = true;
  p.engine.settings.AutoUpload = true;
  machine.Advance(10s);
  for (Label* link :
       {&p.form.Label34, &p.form.Label42, &p.form.Label56, &p.form.Label46, &p.form.Label41}) {
    link->Clicked.Emit();
  }
  p.popups.LoadAlert();
  p.popups.ProgressPopup().CallUp();
  machine.Advance(10s);
  int followed = 0;
  int drawings = 0;
  for (const Window* window : machine.windows.Adopted()) {
    for (const Placement& placement : window->Placements()) {
      auto* drawn = dynamic_cast<OwnerDrawn*>(placement.control);
      if (drawn == nullptr) continue;
      drawn->OnResize({placement.place.width_px, placement.place.height_px});
      drawn->LookChanged.Listen([&] { ++drawings; });
      ++followed;
    }
  }
  EXPECT_GT(followed, 80);
  machine.Advance(1min);
  EXPECT_EQ(drawings, 0);
}

}  // namespace
}  // namespace tarnvale::testing
