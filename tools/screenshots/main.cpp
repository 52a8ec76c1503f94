// Takes a picture of every window and state, from the screen: `screenshots ROOT TARGET`.
// ROOT is the drive that the program believes to be on, laid out by scripts/screenshots,
// which also puts this program there, as the place where it lies is where it has its data;
// without settings there, the pictures are those of the first start.
// The program, its windows and its files are the real ones; the clock is still, so that
// the same program makes the same pictures. Prints what it has made.
#include <QAbstractButton>
#include <QApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "app/program.h"
#include "hosts/linux/linux_host.h"
#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/qt_file_dialogs.h"
#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_sockets.h"
#include "hosts/qt/qt_style.h"
#include "hosts/qt/qt_text.h"
#include "hosts/qt/qt_tray.h"
#include "hosts/qt/qt_window_host.h"
#include "platform/no_ftp_transport.h"

namespace tarnvale {
namespace {

/// Twenty past ten on a Monday in March.
class StillClock final : public Clock {
 public:
  DateTime Now() override { return MakeDateTime({2026, 3, 2}, {10, 20, 0}); }
  double SecondsSinceMidnight() override { return 10 * 3600 + 20 * 60; }
  std::chrono::nanoseconds Uptime() override { return running_.Uptime(); }

 private:
  LinuxClock running_;
};

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "screenshots: waited in vain for %s\n", what.c_str());
  QGuiApplication::primaryScreen()->grabWindow(0).save("build/screenshots-failed.png");
  std::_Exit(1);
}

class Stage {
 public:
  Stage(const std::string& root, std::string target)
      : target_(std::move(target)),
        system_({.root = root,
                 .state_folder = root + "/var/state",
                 .locale_name = "C",
                 .processes = {.program_file = root + "/home/ann/Tarnvale/tarnvale",
                               .lock_folder = root + "/var/lock",
                               .desktop_opener = root + "/bin/true"}}),
        paths_{.to_program = [this](const std::string& native) { return system_.PathOf(native); },
               .to_native = [this](const Path& path) { return system_.NativeOf(path); }},
        host_(loop_, system_.files, paths_.to_program),
        dialogs_(host_, paths_),
        tray_(loop_),
        sockets_(loop_),
        settings_(root + "/home/ann/Tarnvale/Data/Tarnvale.ini") {}

  void TakeAll() {
    if (!std::filesystem::exists(settings_)) return FirstStart();
    StartAndBringUp();
    Screens();
    Boxes();
    Run();
    Tools();
    TrayMenu();
  }

 private:
  // The program.

  Program& Start() {
    program_ = std::make_unique<Program>(machine_);
    if (!program_->Start()) Fail("the start");
    return *program_;
  }

  void StartAndBringUp() {
    Program& p = Start();
    Tick(p.Splash.Timer1);
    WaitFor("the trees", [&] { return !p.engine.timers[EngineTimer::kStorageTree].Enabled; });
    p.form.State = WindowState::kNormal;
    p.form.InTaskBar = true;
    p.form.Show();
  }

  /// What a window's controls show goes by its timers: it is taken after a tick.
  void Tick(Timer& timer) {
    loop_.Deliver([&] { timer.Tick.Emit(); });
  }

  void WaitFor(const std::string& what, const std::function<bool()>& condition) {
    constexpr int kPatienceMs = 30000;
    QElapsedTimer since;
    since.start();
    while (!condition()) {
      if (since.elapsed() > kPatienceMs) Fail(what);
      loop_.WaitPass();
    }
  }

  // The pictures.

  QWidget& WidgetOf(Window& window) { return *host_.NativeOf(window); }

  static QImage FromScreen(const QRect& area) {
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    const int scale = qRound(screen.devicePixelRatio());
    QImage part = screen.copy(QRect(area.topLeft() * scale, area.size() * scale))
                      .convertToFormat(QImage::Format_RGB32);
    part.setDevicePixelRatio(1);
    return part;
  }

  static QRect ClientOf(const QWidget& widget) {
    return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
  }

  /// All of it is on the screen as it draws itself: nothing lies before it, nothing
  /// has still to be drawn.
  static bool IsSeen(QWidget& widget) {
    if (!widget.isVisible()) return false;
    QImage drawn = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const int scale = qRound(drawn.devicePixelRatio());
    drawn.setDevicePixelRatio(1);
    // A window manager knows nothing of the scale: it places by the screen's pixels.
    const QImage around = FromScreen(ClientOf(widget).adjusted(-1, -1, 1, 1));
    for (int y = 0; y <= 2 * scale; ++y) {
      for (int x = 0; x <= 2 * scale; ++x) {
        if (around.copy(QRect(QPoint(x, y), drawn.size())) == drawn) return true;
      }
    }
    return false;
  }

  /// The window manager has drawn it as the active one.
  static bool IsTitleBlue(const QWidget& widget) {
    // The widget keeps the frame that it heard of first.
    if (widget.windowHandle()->frameMargins().isNull()) return false;
    // Between icon and title.
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    const QPoint spot = ClientOf(widget).topLeft() * screen.devicePixelRatio() + QPoint(30, -5);
    const QColor title = screen.pixelColor(spot);
    return title.blue() > title.red() + 40;
  }

  void Save(const std::string& name, const QImage& picture) {
    const QByteArray pixels = QByteArray::fromRawData(
        reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes());
    const QByteArray sum = QCryptographicHash::hash(pixels, QCryptographicHash::Sha256).toHex();
    if (!picture.save(ToQt(target_ + "/" + name + ".png"))) Fail("the file of " + name);
    std::printf("%-26s %4dx%-4d %s\n", name.c_str(), picture.width(), picture.height(),
                sum.left(16).constData());
  }

  /// Windows follow their records a frame later.
  void LetFramesPass() {
    constexpr int kTwoFramesMs = 40;
    QElapsedTimer since;
    since.start();
    WaitFor("two frames", [&] { return since.elapsed() >= kTwoFramesMs; });
  }

  /// With its frame where a pixel of the desktop's is one of the program's.
  void Keep(const std::string& name, QWidget& widget) {
    LetFramesPass();
    const bool takes_focus = !(widget.windowFlags() & Qt::WindowDoesNotAcceptFocus);
    const bool is_framed = !(widget.windowFlags() & Qt::FramelessWindowHint);
    if (takes_focus && is_framed) {
      // A window manager may give the focus to nobody when another window goes.
      QTimer ask;
      QObject::connect(&ask, &QTimer::timeout, [&] { widget.activateWindow(); });
      ask.start(500);
      widget.activateWindow();
      WaitFor(name + " to be active",
              [&] { return widget.isActiveWindow() && IsTitleBlue(widget); });
    } else {
      widget.raise();
    }
    WaitFor(name + " on the screen", [&] { return IsSeen(widget); });
    const bool is_framed_here = widget.devicePixelRatioF() == 1;
    Save(name, is_framed_here ? FromScreen(widget.windowHandle()->frameGeometry())
                              : widget.grab().toImage().convertToFormat(QImage::Format_RGB32));
  }
  void Keep(const std::string& name, Window& window) { Keep(name, WidgetOf(window)); }

  /// The dialog that `act` opens, then answered by `answer`.
  void KeepDialog(const std::string& name, const std::function<void()>& act,
                  const std::function<void(QDialog&)>& answer) {
    bool is_met = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr || is_met) return;
      is_met = true;
      // The pointer and the focus are nowhere that a picture would show.
      Keep(name, *dialog);
      answer(*dialog);
    });
    look.start(5);
    loop_.Deliver(act);
    WaitFor(name, [&] { return is_met && QApplication::activeModalWidget() == nullptr; });
  }
  void KeepBox(const std::string& name, const std::function<void()>& act,
               QMessageBox::StandardButton button = QMessageBox::Ok) {
    KeepDialog(name, act, [&](QDialog& dialog) {
      dynamic_cast<QMessageBox&>(dialog).button(button)->click();
    });
  }

  /// The menu that `act` opens, with what is around it.
  void KeepMenu(const std::string& name, const QRect& around, const std::function<void()>& act) {
    bool is_met = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (menu == nullptr || is_met) return;
      is_met = true;
      WaitFor(name + " on the screen", [&] { return IsSeen(*menu); });
      Save(name, FromScreen(around));
      menu->close();
    });
    look.start(5);
    loop_.Deliver(act);
    WaitFor(name, [&] { return is_met && QApplication::activePopupWidget() == nullptr; });
  }

  // What there is to see.

  void FirstStart() {
    Program& p = Start();
    Keep("splash", p.Splash);
    Tick(p.Splash.Timer1);
    Keep("agreement", p.Agreement.Get());
  }

  void Show(Label& link) {
    loop_.Deliver([&] { link.Clicked.Emit(); });
  }
  void Choose(FolderTree& tree, const Path& folder) {
    loop_.Deliver([&] { tree.Start(folder); });
  }

  void Screens() {
    Form1& form = program_->form;
    Show(form.Label44);
    Keep("schedule", form);
    QMenuBar& bar = *host_.NativeOf(form)->Menus();
    KeepMenu("menu", WidgetOf(form).windowHandle()->frameGeometry(),
             [&] { bar.setActiveAction(bar.actions().front()); });

    Show(form.Label37);
    Choose(form.List.ListTree, "C:\\home\\ann\\Documents");
    FileList& files = form.List.File1;
    WaitFor("the files", [&] { return files.Folder.Get() == "C:\\home\\ann\\Documents"; });
    files.Select(1, true);
    Keep("list", form);
    const auto show_hidden = [&](bool shown) {
      form.List.Check1.Value = shown;
      loop_.Deliver([&] { form.List.Check1.Clicked.Emit(); });
      WaitFor("the hidden files", [&] { return (files.Rows().size() > 4) == shown; });
    };
    show_hidden(true);
    Keep("hidden", form);
    show_hidden(false);

    Show(form.Label36);
    Choose(form.Storage.StorageTree, "C:\\media\\ann\\Backup");
    Keep("storage", form);
    Show(form.Label38);
    Keep("general", form);
    Show(form.Label39);
    Keep("advanced", form);
    KeepDialog(
        "choose-folder", [&] { form.Advanced.chameleonButton4.Click.Emit(); },
        [](QDialog& dialog) { dialog.reject(); });
  }

  void Boxes() {
    Form1& form = program_->form;
    BackupSettings& settings = program_->engine.settings;
    const Path storage = settings.DestinationDir;
    const auto save = [&] { form.Label45.Clicked.Emit(); };
    settings.DestinationDir = "";
    KeepBox("stop", save);
    settings.DestinationDir = "C:\\";
    KeepBox("exclamation", save, QMessageBox::No);
    settings.DestinationDir = storage;
    KeepBox("saved", save);
  }

  void Run() {
    Program& p = *program_;
    KeepBox(
        "question", [&] { p.form.Label49.Clicked.Emit(); }, QMessageBox::Yes);
    Timer& pause = p.engine.timers[EngineTimer::kRunStart];
    WaitFor("the run", [&] { return pause.Enabled.Get(); });
    WaitFor("the alert",
            [&] { return p.popups.IsAlertLoaded() && !p.popups.Alert().Timer1.Enabled; });
    Keep("alert", p.popups.Alert());
    Tick(pause);
    const RunState& run = p.engine.run;
    WaitFor("the end of the run", [&] {
      return run.EngineFree.Get() == "1" && run.StatusCaption.Get().starts_with("Success");
    });
    Keep("progress", p.form);
    loop_.Deliver([&] { p.popups.ProgressPopup().CallUp(); });
    WaitFor("the progress window", [&] { return !p.popups.ProgressPopup().Timer1.Enabled; });
    Keep("progress-popup", p.popups.ProgressPopup());
    p.popups.ProgressPopup().Hide();
    p.popups.Alert().Hide();

    RestoreScreen& restore = p.form.Restore;
    Show(p.form.Label51);
    Choose(restore.RestoreSourceTree, "C:\\media\\ann\\Backup");
    Choose(restore.RestoreTargetTree, "C:\\home\\ann");
    WaitFor("both folders", [&] {
      return restore.Text27.Text.Get() == "C:\\media\\ann\\Backup" &&
             restore.Text28.Text.Get() == "C:\\home\\ann";
    });
    KeepBox("restored", [&] { restore.chameleonButton8.Click.Emit(); });
    Keep("restore", p.form);
  }

  template <class W>
  W& Open(Label& link, WindowSlot<W>& slot) {
    Show(link);
    WaitFor("a tool", [&] { return slot.IsLoaded(); });
    return slot.Get();
  }

  void Tools() {
    Program& p = *program_;
    compression& compressor = Open(p.form.Label41, p.Compressor);
    Tick(compressor.Timer1);
    Keep("compressor", compressor);
    Show(compressor.Label42);
    Keep("compressor-unpacking", compressor);
    compressor.Close();

    frmMain& splitter = Open(p.form.Label42, p.Splitter);
    WaitFor("the first tick", [&] { return !splitter.chameleonButton2.Enabled.Get(); });
    Keep("splitter", splitter);
    Show(splitter.Label42);
    Keep("splitter-joining", splitter);
    KeepDialog(
        "open-file", [&] { splitter.chameleonButton5.Click.Emit(); },
        [](QDialog& dialog) { dialog.reject(); });
    splitter.Close();

    registry& registry_window = Open(p.form.Label56, p.RegistryBackup);
    Tick(registry_window.Timer1);
    Keep("registry", registry_window);
    registry_window.Close();
    UserData();
    Transfer();
    Keep("conversation", [&]() -> Window& {
      p.Mailer.Get().Show();
      return p.Mailer.Get();
    }());
    p.Mailer.Get().Close();
  }

  void UserData() {
    userdata& window = Open(program_->form.Label34, program_->UserData);
    Tick(window.Timer1);
    const struct {
      const char* name;
      Label& link;
    } panels[] = {{"user-data", window.Label41},
                  {"user-data-explorer", window.Label42},
                  {"user-data-opera", window.Label30},
                  {"user-data-outlook", window.Label14},
                  {"user-data-express", window.Label15},
                  {"user-data-thunderbird", window.Label49},
                  {"user-data-windows-files", window.Label19}};
    for (const auto& panel : panels) {
      Show(panel.link);
      Keep(panel.name, window);
    }
    window.Close();
  }

  void Transfer() {
    Main& window = Open(program_->form.Label46, program_->Transfer);
    Keep("ftp-empty", window);
    window.txtServer.Text = "ftp.example.org";
    window.txtUserID.Text = "ann";
    window.txtPassword.Text = "not that one";
    Keep("ftp-settings", window);
    Show(window.Label49);
    window.txtLocal.Text = "C:\\media\\ann\\Backup\\Auto Compressed.tvz";
    window.txtRemote.Text = "AutoCompressed.tvz";
    WaitFor("the upload's button", [&] { return window.chameleonButton1.Enabled.Get(); });
    Keep("ftp-upload", window);
    Show(window.Label14);
    window.Text22.Text = "AutoCompressed";
    window.Text23.Text = "tvz";
    WaitFor("the download's button", [&] { return window.chameleonButton3.Enabled.Get(); });
    Keep("ftp-download", window);
    window.Close();
  }

  // The area's window of the icon is Qt's own.
  static QWidget* TrayIcon() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->inherits("QSystemTrayIconSys") && window->isVisible()) return window;
    }
    return nullptr;
  }

  void TrayMenu() {
    Form1& form = program_->form;
    form.State = WindowState::kMinimized;
    WaitFor("the icon", [&] { return TrayIcon() != nullptr; });
    WaitFor("the window behind it", [&] { return !WidgetOf(form).isVisible(); });
    QCursor::setPos(ClientOf(*TrayIcon()).topLeft() + QPoint(8, 0));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    KeepMenu("tray", QRect(screen.width() - 260, screen.height() - 180, 260, 180),
             [&] { form.gSysTray.RButtonUp.Emit(); });
  }

  std::string target_;
  LinuxHost system_;
  StillClock clock_;
  QtEventLoop loop_;
  PathTranslation paths_;
  QtWindowHost host_;
  QtMessageBoxes boxes_;
  QtFileDialogs dialogs_;
  QtTray tray_;
  QtSockets sockets_;
  NoFtpTransport ftp_;
  Machine machine_{{system_.files, system_.open_files, system_.profiles, system_.processes, clock_,
                    system_.random, system_.formats, system_.registry, system_.applications},
                   {loop_, boxes_, host_.Surroundings(), host_, dialogs_, tray_, sockets_, ftp_}};
  std::string settings_;
  std::unique_ptr<Program> program_;
};

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  QApplication::setDesktopSettingsAware(false);
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  if (argc != 3) return 2;
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  // A caret that blinks is not always there.
  QApplication::setCursorFlashTime(0);
  tarnvale::QtStyle::Install();
  QCursor::setPos(0, 0);
  tarnvale::Stage stage(argv[1], argv[2]);
  stage.TakeAll();
  // Not taken apart: its windows would outlive their records in a loop that never ended.
  std::_Exit(0);
}
