// Real file dialogs, each answered as a person does it.
#include "hosts/qt/qt_file_dialogs.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <fstream>
#include <optional>

#include "tests/hosts/contract/temporary_folder.h"
#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtDialogs : public QtFixture {
 protected:
  QtDialogs() {
    std::filesystem::create_directory(Native("Store"));
    QTimer::singleShot(0, &receiver_, [this] { Look(); });
  }
  ~QtDialogs() override {
    EXPECT_TRUE(actions_.empty()) << "a dialog that was expected didn't come";
  }

  /// "Store/a" on a drive of the test's own.
  std::string Native(const std::string& place) const { return drive_.Path() + "/" + place; }
  void Write(const std::string& place) const { std::ofstream(Native(place)) << place; }

  /// What will be done with the next modal dialog of a kind as soon as it is up: an
  /// action for each dialog, in order. It need not be the active window: a window
  /// manager may pass the focus on to nobody when a box goes.
  template <class Dialog>
  void With(std::function<void(Dialog&)> act) {
    actions_.push_back({.fits = [](QDialog* dialog) { return qobject_cast<Dialog*>(dialog); },
                        .act = [act](QDialog& dialog) { act(dynamic_cast<Dialog&>(dialog)); }});
  }
  void Cancel() {
    With<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
  }
  void TypeName(const std::string& name) {
    With<QFileDialog>([name](QFileDialog& dialog) {
      // In one piece: typed by letters, the list of completions would take the Enter.
      NameField(dialog).setText(ToQt(name));
      QTest::keyClick(&NameField(dialog), Qt::Key_Return);
    });
  }
  void TypeNameAndClickOpen(const std::string& name) {
    With<QFileDialog>([name](QFileDialog& dialog) {
      NameField(dialog).setText(ToQt(name));
      QTest::mouseClick(OpenButton(dialog), Qt::LeftButton);
    });
  }
  void ClickRowAndOpen(const std::string& name) {
    With<QFileDialog>([this, name](QFileDialog& dialog) {
      auto* view = dialog.findChild<QTreeView*>("treeView");
      QModelIndex row;
      ASSERT_TRUE(WaitFor([&] {
        const QModelIndex first = view->model()->index(0, 0, view->rootIndex());
        row =
            view->model()->match(first, Qt::DisplayRole, ToQt(name), 1, Qt::MatchExactly).value(0);
        return row.isValid() && view->isVisible() && view->visualRect(row).isValid();
      }));
      QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(row).center());
      QTest::mouseClick(OpenButton(dialog), Qt::LeftButton);
    });
  }
  /// As TypeName in a dialog of the desktop, which takes all that is typed for one
  /// name and says when it has gone.
  void TypeNameIntoDesktopsOwn(const std::string& name) {
    With<QFileDialog>([name](QFileDialog& dialog) {
      QLineEdit& field = NameField(dialog);
      field.setObjectName({});
      field.setText(ToQt(name));
      QTest::keyClick(&field, Qt::Key_Return);
    });
  }
  /// Keeps the box's text.
  void AnswerBox(QMessageBox::StandardButton answer) {
    With<QMessageBox>([this, answer](QMessageBox& box) {
      box_text_ = FromQt(box.text());
      box.button(answer)->click();
    });
  }
  static QLineEdit& NameField(QFileDialog& dialog) {
    return *dialog.findChild<QLineEdit*>("fileNameEdit");
  }

  static QPushButton* OpenButton(QFileDialog& dialog) {
    return dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
  }

  static std::string Padded(std::string text) {
    text.resize(260, '\0');
    return text;
  }
  static FileDialogRecord Record(const Path& file = {}) {
    return {.title = "Choose",
            .filter = {},
            .default_ext = ".tvz",
            .initial_dir = "C:\\Store",
            .file = Padded(file),
            .file_title = Padded({})};
  }
  std::optional<Path> Open(FileDialogRecord record = Record()) {
    if (!dialogs.ShowOpen(record)) return std::nullopt;
    return record.file.substr(0, record.file.find('\0'));
  }
  std::optional<Path> Save(FileDialogRecord record = Record()) {
    if (!dialogs.ShowSave(record)) return std::nullopt;
    return record.file.substr(0, record.file.find('\0'));
  }
  /// The name and the folder that are in a save dialog at its start.
  std::string OfferedFor(const Path& file) {
    std::string offered;
    With<QFileDialog>([&](QFileDialog& dialog) {
      offered = FromQt(NameField(dialog).text());
      shown_folder_ = FromQt(dialog.directory().absolutePath());
      dialog.reject();
    });
    EXPECT_EQ(Save(Record(file)), std::nullopt);
    return offered;
  }

  QtFileDialogs dialogs{host,
                        {.to_program = [this](const std::string& native) { return ToPath(native); },
                         .to_native = [this](const Path& path) { return NativeOf(path); }}};
  std::string box_text_;
  std::string shown_folder_;

 private:
  struct Action {
    std::function<bool(QDialog*)> fits;
    std::function<void(QDialog&)> act;
  };

  // Timers of Qt don't tick within themselves, and an action may wait in a box: each
  // look has a timer of its own.
  void Look() {
    constexpr int kLookMs = 10;
    constexpr int kPatienceMs = 20000;
    QTimer::singleShot(kLookMs, &receiver_, [this] { Look(); });
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) {
      since_.restart();
    } else if (!actions_.empty() && dialog->isVisible() && actions_.front().fits(dialog)) {
      const auto act = std::move(actions_.front().act);
      actions_.pop_front();
      since_.restart();
      act(*dialog);
    } else if (since_.elapsed() > kPatienceMs) {
      ADD_FAILURE() << "an unexpected dialog: " << FromQt(dialog->windowTitle());
      dialog->reject();
    }
  }

  Path ToPath(const std::string& native) const {
    if (native.find('\\') != std::string::npos || !native.starts_with(drive_.Path())) return {};
    Path path = "C:" + native.substr(drive_.Path().size());
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
  }
  /// Regardless of case in the last name, as far as the tests need it.
  std::string NativeOf(const Path& path) const {
    if (path.empty() || (path.front() != '\\' && !path.starts_with("C:"))) return {};
    std::string place = path.substr(path.front() == '\\' ? 0 : 2);
    std::replace(place.begin(), place.end(), '\\', '/');
    if (std::filesystem::exists(drive_.Path() + place)) return drive_.Path() + place;
    std::transform(place.begin() + static_cast<std::ptrdiff_t>(place.rfind('/')), place.end(),
                   place.begin() + static_cast<std::ptrdiff_t>(place.rfind('/')),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::filesystem::exists(drive_.Path() + place) ? drive_.Path() + place : std::string();
  }

  testing::TemporaryFolder drive_;
  std::deque<Action> actions_;
  QElapsedTimer since_;
  QObject receiver_;
};

TEST_F(QtDialogs, ASaveDialogOffersTheNameOfTheFile) {
  EXPECT_EQ(OfferedFor("far.tvz"), "far.tvz");
  EXPECT_EQ(OfferedFor("far..tvz"), "far..tvz");
  EXPECT_EQ(OfferedFor("C:\\Data\\a.tvz"), "a.tvz");
  EXPECT_EQ(OfferedFor("backups/far.tvz"), "far.tvz");
  EXPECT_EQ(OfferedFor(""), "");
  EXPECT_EQ(OfferedFor("*.*"), "");
}

TEST_F(QtDialogs, TheFoldersOfAFileThatAreThereAreShown) {
  std::filesystem::create_directory(Native("Data"));
  OfferedFor("C:\\Data\\a.tvz");
  EXPECT_EQ(shown_folder_, Native("Data"));
  OfferedFor("C:\\None\\a.tvz");
  EXPECT_EQ(shown_folder_, Native("Store"));
  OfferedFor("backups/far.tvz");
  EXPECT_EQ(shown_folder_, Native("Store"));
}

TEST_F(QtDialogs, WithoutAFolderAtTheStartTheOneOfTheLastChoiceIsShown) {
  TypeName("mine");
  EXPECT_EQ(Save(), "C:\\Store\\mine.tvz");
  FileDialogRecord record = Record();
  record.initial_dir = "C:\\None";
  With<QFileDialog>([&](QFileDialog& dialog) {
    shown_folder_ = FromQt(dialog.directory().absolutePath());
    dialog.reject();
  });
  EXPECT_EQ(Save(record), std::nullopt);
  EXPECT_EQ(shown_folder_, Native("Store"));
}

TEST_F(QtDialogs, ADialogShowsSizeAndTimeOfAFileWhole) {
  std::ofstream(Native("Store/mine.tvz")) << std::string(72909, 'x');
  With<QFileDialog>([this](QFileDialog& dialog) {
    const auto* view = dialog.findChild<QTreeView*>("treeView");
    const QAbstractItemView& cells = *view;
    const auto is_whole = [&](int column) {
      return cells.sizeHintForColumn(column) <= view->columnWidth(column);
    };
    EXPECT_TRUE(WaitFor([&] {
      return view->model()->rowCount(view->rootIndex()) == 1 && is_whole(1) && is_whole(3) &&
             view->header()->length() <= view->viewport()->width();
    }));
    dialog.reject();
  });
  EXPECT_EQ(Open(), std::nullopt);
}

TEST_F(QtDialogs, BothDialogsAddTheDefaultExtension) {
  Write("Store/mine.tvz");
  TypeName("mine");
  EXPECT_EQ(Open(), "C:\\Store\\mine.tvz");
  TypeName("other");
  EXPECT_EQ(Save(), "C:\\Store\\other.tvz");
}

TEST_F(QtDialogs, AFileWithoutExtensionCanBeOpened) {
  Write("Store/mine");
  Write("Store/mine.tvz");
  TypeName("mine");
  EXPECT_EQ(Open(), "C:\\Store\\mine");
  TypeNameAndClickOpen("mine");
  EXPECT_EQ(Open(), "C:\\Store\\mine");
  ClickRowAndOpen("mine");
  EXPECT_EQ(Open(), "C:\\Store\\mine");
  TypeNameIntoDesktopsOwn("mine");
  EXPECT_EQ(Open(), "C:\\Store\\mine");
}

TEST_F(QtDialogs, AMissingFileIsAgreedToWhereItMayBeCreated) {
  FileDialogRecord record = Record();
  record.flags = kCreatePrompt;
  TypeName("mine");
  AnswerBox(QMessageBox::No);
  EXPECT_EQ(Open(record), std::nullopt);
  EXPECT_EQ(box_text_, "mine.tvz\nThis file doesn't exist. Create it?");
  TypeName("mine");
  AnswerBox(QMessageBox::Yes);
  EXPECT_EQ(Open(record), "C:\\Store\\mine.tvz");
  Write("Store/mine.tvz");
  TypeName("mine");
  EXPECT_EQ(Open(record), "C:\\Store\\mine.tvz");
}

TEST_F(QtDialogs, APathOfTheProgramsLanguageCanBeTyped) {
  std::filesystem::create_directory(Native("Data"));
  Write("Data/mine.tvz");
  for (const char* typed : {"C:\\Data\\mine.tvz", "\\Data\\mine", "C:\\Data/mine"}) {
    TypeName(typed);
    EXPECT_EQ(Open(), "C:\\Data\\mine.tvz") << typed;
    TypeNameAndClickOpen(typed);
    EXPECT_EQ(Open(), "C:\\Data\\mine.tvz") << typed;
  }
  for (const char* typed : {"C:\\Data\\new", "\\Data\\new.tvz"}) {
    TypeName(typed);
    EXPECT_EQ(Save(), "C:\\Data\\new.tvz") << typed;
  }
  EXPECT_FALSE(std::filesystem::exists(Native("Store/C:\\Data\\new.tvz")));
}

TEST_F(QtDialogs, ATypedPathIsConfirmedBeforeItsFileIsReplaced) {
  Write("Store/mine.tvz");
  TypeName("C:\\Store\\mine.tvz");
  AnswerBox(QMessageBox::No);
  Cancel();
  EXPECT_EQ(Save(), std::nullopt);
  EXPECT_EQ(box_text_, "mine.tvz already exists.\nDo you want to replace it?");
}

TEST_F(QtDialogs, ANameThatDiffersInCaseIsConfirmedBeforeItsFileIsReplaced) {
  Write("Store/mine.tvz");
  TypeName("MINE.tvz");
  AnswerBox(QMessageBox::No);
  Cancel();
  EXPECT_EQ(Save(), std::nullopt);
  EXPECT_EQ(box_text_, "MINE.tvz already exists.\nDo you want to replace it?");
  TypeName("MINE.tvz");
  AnswerBox(QMessageBox::Yes);
  EXPECT_EQ(Save(), "C:\\Store\\MINE.tvz");
}

TEST_F(QtDialogs, WhatIsNotThereGoesThrough) {
  for (const char* typed : {"gone", "C:\\Store\\gone", "\\Store\\gone.tvz"}) {
    TypeName(typed);
    EXPECT_EQ(Open(), "C:\\Store\\gone.tvz") << typed;
    TypeNameAndClickOpen(typed);
    EXPECT_EQ(Open(), "C:\\Store\\gone.tvz") << typed;
  }
  for (const bool saving : {false, true}) {
    for (const char* typed : {"C:\\None\\mine", "C:\\None/mine.tvz"}) {
      TypeName(typed);
      EXPECT_EQ(saving ? Save() : Open(), "C:\\None\\mine.tvz") << typed;
    }
    TypeName(Native("None/mine"));
    EXPECT_EQ(saving ? Save() : Open(), "C:\\None\\mine.tvz");
    TypeName("D:\\Store\\mine");
    EXPECT_EQ(saving ? Save() : Open(), "D:\\Store\\mine.tvz");
  }
}

TEST_F(QtDialogs, WhatIsNotThereIsRefusedWhereItMustBe) {
  FileDialogRecord record = Record();
  record.flags = kFileMustExist;
  for (const char* typed : {"gone", "C:\\Store\\gone"}) {
    TypeName(typed);
    AnswerBox(QMessageBox::Ok);
    Cancel();
    EXPECT_EQ(Open(record), std::nullopt);
    EXPECT_TRUE(box_text_.starts_with("gone.tvz\nFile not found.")) << box_text_;
  }
  TypeName("C:\\None\\mine");
  AnswerBox(QMessageBox::Ok);
  Cancel();
  EXPECT_EQ(Open(record), std::nullopt);
  EXPECT_EQ(box_text_, "C:\\None\\mine\nThere is no such folder.");
}

TEST_F(QtDialogs, ANameIsNoRichTextInAnyBox) {
  const std::string name = "<b>a \xE2\x80\xAE b.tvz";
  std::ofstream(Native("Store") + "/<i>c") << "c";
  for (const bool saving : {true, false}) {
    FileDialogRecord record = Record();
    record.flags = kFileMustExist;
    With<QFileDialog>([&](QFileDialog& dialog) {
      NameField(dialog).setText(saving ? "<i>c" : ToQt(name));
      QTest::keyClick(&NameField(dialog), Qt::Key_Return);
    });
    With<QMessageBox>([&](QMessageBox& box) {
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      box_text_ = FromQt(box.text());
      box.reject();
    });
    Cancel();
    if (saving) {
      record.default_ext = {};
      EXPECT_EQ(Save(record), std::nullopt);
      EXPECT_EQ(box_text_, "<i>c already exists.\nDo you want to replace it?");
    } else {
      EXPECT_EQ(Open(record), std::nullopt);
      EXPECT_TRUE(box_text_.starts_with("<b>a ? b.tvz\n")) << box_text_;
    }
  }
}

TEST_F(QtDialogs, ANameThatNoPathCanNameIsRefusedAndTheDialogStays) {
  Write("Store/a\\b.tvz");
  for (const bool saving : {false, true}) {
    TypeName("a\\b.tvz");
    AnswerBox(QMessageBox::Ok);
    Cancel();
    EXPECT_EQ(saving ? Save() : Open(), std::nullopt);
    EXPECT_TRUE(box_text_.starts_with(Native("Store/a\\b.tvz") + "\nThis name can't be used"))
        << box_text_;
  }
}

TEST_F(QtDialogs, ADialogOfTheDesktopTakesTheSamePaths) {
  std::filesystem::create_directory(Native("Data"));
  Write("Data/mine.tvz");
  TypeNameIntoDesktopsOwn("C:\\Data\\new");
  EXPECT_EQ(Save(), "C:\\Data\\new.tvz");
  TypeNameIntoDesktopsOwn("\\Data\\mine");
  AnswerBox(QMessageBox::No);
  EXPECT_EQ(Save(), std::nullopt);
  EXPECT_EQ(box_text_, "mine.tvz already exists.\nDo you want to replace it?");
  TypeNameIntoDesktopsOwn("C:\\None\\new");
  AnswerBox(QMessageBox::Yes);
  FileDialogRecord record = Record();
  record.flags = kCreatePrompt;
  EXPECT_EQ(Open(record), "C:\\None\\new.tvz");
  EXPECT_EQ(box_text_, "new.tvz\nThis file doesn't exist. Create it?");
  TypeNameIntoDesktopsOwn("a\\b");
  AnswerBox(QMessageBox::Ok);
  EXPECT_EQ(Save(), std::nullopt);
  EXPECT_TRUE(box_text_.starts_with(Native("Store/a\\b.tvz") + "\nThis name can't be used"));
}

TEST_F(QtDialogs, OnlyADrivesRootEndsInABackslash) {
  for (const std::string& typed : {Native(""), std::string("C:\\"), std::string("\\")}) {
    TypeName(typed);
    EXPECT_EQ(dialogs.BrowseForFolder({}), "C:\\") << typed;
  }
  for (const std::string& typed : {Native("Store"), std::string("C:\\Store\\")}) {
    TypeName(typed);
    EXPECT_EQ(dialogs.BrowseForFolder({}), "C:\\Store") << typed;
  }
  Cancel();
  EXPECT_EQ(dialogs.BrowseForFolder({}), std::nullopt);
}

}  // namespace
}  // namespace tarnvale
