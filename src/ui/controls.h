// The records of the plain controls.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "ui/control.h"
#include "ui/geometry.h"
#include "ui/raster.h"
#include "ui/row_list.h"
#include "ui/row_selection.h"

namespace tarnvale {

/// What a host implements to make peers: one function for each kind of record.
class ControlVisitor {
 public:
  virtual ~ControlVisitor() = default;
  virtual void Visit(class Label& label) = 0;
  virtual void Visit(class TextBox& box) = 0;
  virtual void Visit(class ListBox& list) = 0;
  virtual void Visit(class ComboBox& combo) = 0;
  virtual void Visit(class OptionButton& option) = 0;
  virtual void Visit(class CheckButton& check) = 0;
  virtual void Visit(class FileList& files) = 0;
  virtual void Visit(class FolderTree& tree) = 0;
  virtual void Visit(class PictureBox& picture) = 0;
  virtual void Visit(class OwnerDrawn& drawn) = 0;
};

/// What a text is for; the host gives each role its size, weight and colour.
enum class TextRole {
  kTitle,  ///< the program's name, large, on its first window
  kBody,
  kStrong,   ///< bold body text: the label of a group of fields
  kHeading,  ///< the heading of a screen or of a group of links
  kNote,     ///< small print
  kLink,     ///< does something when clicked, and shows it; takes the focus by keyboard
  kValue,    ///< a fact that the program fills in; long ones are elided in the middle
};

enum class TextAlign { kLeft, kCenter, kRight };

/// A text on the window.
class Label : public Control {
 public:
  explicit Label(TextRole role = TextRole::kBody) : Role(role) {}
  Label(TextRole role, Property<std::string>& caption) : Caption(caption), Role(role) {}
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return Role == TextRole::kLink; }
  // Required: a click on a link leaves no field, so it takes no time over that is
  // still being typed, and chooses none.
  bool TakesFocusByClick() const override { return false; }

  /// The caption as it is shown: "&&" stands for "&". A fact is shown as it is.
  std::string Shown() const;

  Bound<std::string> Caption;
  TextRole Role;
  TextAlign Align = TextAlign::kLeft;
  /// Long texts go on in the next line.
  bool Wrap = false;

  /// A click with the left button, or Space while a link has the focus.
  Signal<> Clicked;
};

enum class TextKind {
  kPlain,
  kMasked,    ///< Mask rules what can be typed
  kPassword,  ///< shown as "*"
  kMemo,      ///< many lines
};

struct TextSelection {
  std::size_t start = 0;   ///< bytes
  std::size_t length = 0;  ///< bytes
  bool operator==(const TextSelection&) const = default;
};

/// A field. Text changes by the user and by the program both show in
/// `Text.Changed()`.
class TextBox : public Control {
 public:
  TextBox() = default;
  explicit TextBox(TextKind kind) : Kind(kind) {}
  explicit TextBox(Property<std::string>& text, TextKind kind = TextKind::kPlain)
      : Text(text), Kind(kind) {}
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  Bound<std::string> Text;
  TextKind Kind = TextKind::kPlain;
  /// "#" stands for one digit, everything else for itself. Kind kMasked only.
  std::string Mask;
  Property<bool> ReadOnly{false};
  /// Takes dropped files (see FilesDropped).
  bool AcceptsFiles = false;
  /// A fixed-width font.
  bool FixedWidth = false;

  /// Selects part of the text; a host sets it when the user selects.
  Property<TextSelection> Selection;
  void SelectAll() { Selection = TextSelection{0, Text.Get().size()}; }

  /// Adds to the end of the text, in time that doesn't grow with the text, and
  /// puts the caret there; for logs. Emits `Appended` only, not `Text.Changed`.
  void Append(const std::string& text);
  Signal<const std::string&> Appended;

  /// Paths of files that the user dropped on the field.
  Signal<const std::vector<Path>&> FilesDropped;
};

/// A list of rows, of which any number can be selected.
class ListBox : public Control, public RowSelection {
 public:
  explicit ListBox(RowList& rows) : Rows(rows) { FollowRows(); }
  ListBox() : Rows(own_rows_) { FollowRows(); }
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  RowList& Rows;

 private:
  void FollowRows();

  RowList own_rows_;  ///< of a list without a record
  // The rows may live longer than the list.
  std::vector<Subscription> follows_;
};

/// A field with a list below it.
class ComboBox : public Control {
 public:
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  Bound<std::string> Text;
  RowList Rows;
  /// The user can type a text that is no row.
  bool Editable = true;
};

/// One of a group of radio buttons. A button that comes on puts the others of
/// its group out (see OptionGroup); putting one out by the program leaves the
/// group with none.
class OptionButton : public Control {
 public:
  OptionButton() = default;
  explicit OptionButton(Property<bool>& value) : Value(value) {}
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  /// "&" marks the access key.
  Property<std::string> Caption;
  Bound<bool> Value{false};
  /// The user chose it, whether it was on already or not; after Value.
  Signal<> Clicked;
};

/// Keeps at most one of some flags on. The flags must live as long as it.
class OptionGroup {
 public:
  explicit OptionGroup(std::vector<Property<bool>*> members);
  OptionGroup(const OptionGroup&) = delete;
  OptionGroup& operator=(const OptionGroup&) = delete;

 private:
  std::vector<Property<bool>*> members_;
  std::vector<Subscription> follows_;
};

/// A check box of the plain kind.
class CheckButton : public Control {
 public:
  CheckButton() = default;
  explicit CheckButton(Property<bool>& value) : Value(value) {}
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  /// "&" marks the access key.
  Property<std::string> Caption;
  Bound<bool> Value{false};
  /// The user clicked it; after Value.
  Signal<> Clicked;
};

/// The files of one folder, any number of them selected. Its rows follow its
/// properties at once; what happens on the medium shows after Refresh.
class FileList : public Control, public RowSelection {
 public:
  explicit FileList(FileSystem& files);
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  Property<Path> Folder;
  /// "*" any run, "?" any one character; "*.*" everything.
  Property<std::string> Pattern{"*.*"};
  /// Files with these attributes are shown; all attributes of a file must be
  /// among the shown ones. Archive and normal files always are.
  Property<bool> ShowHidden{false};
  Property<bool> ShowSystem{false};
  Property<bool> ShowReadOnly{true};

  /// Reads the folder again. A folder that is missing or can't be read has no
  /// rows. The selection is given up.
  void Refresh();

  const std::vector<std::string>& Rows() const { return rows_; }
  /// The name of the row that was selected last; empty when there is none.
  std::string FileName() const { return LastSelected() ? rows_[*LastSelected()] : std::string(); }

  Signal<> RowsChanged;

 private:
  bool Shows(const std::string& name) const;

  FileSystem& files_;
  std::vector<std::string> rows_;
};

/// A tree of the system's folders. The host reads them by the FileSystem as
/// they are opened, hidden ones included.
class FolderTree : public Control {
 public:
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }
  bool TakesFocus() const override { return true; }

  /// Sets the tree up at a folder, which becomes the selected one: the host
  /// opens the tree down to it. One that doesn't exist selects nothing in the
  /// tree; SelectedPath names it all the same.
  void Start(const Path& folder) {
    SelectedPath = folder;
    Started.Emit();
  }
  /// The folder selected last, no backslash at its end but for a drive's root.
  Property<Path> SelectedPath;
  Signal<> Started;
};

/// A picture, or just an area of its own colour that contains other controls.
class PictureBox : public Control {
 public:
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

  /// The name of one of the pictures in `assets/`, as large as the box; empty
  /// leaves the area plain. The host has it at 1x, 2x and 3x.
  Property<std::string> Picture;
  /// Look of the area behind it.
  enum class Ground { kWindow, kTaskPanel, kField } Background = Ground::kWindow;

  Signal<> Clicked;
  /// The mouse moved over it; in twips from its upper left corner.
  Signal<double, double> MouseMove;
};

}  // namespace tarnvale
