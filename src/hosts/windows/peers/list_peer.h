// Lists of rows.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "hosts/windows/peers/native_peer.h"

namespace tarnvale {

/// A list whose rows follow its record at once, and its selection once a frame.
class ListPeer : public NativePeer {
 public:
  LONG RoleForReaders() const override { return ROLE_SYSTEM_LIST; }
  void OnFrame() override;
  void OnCommand(WORD code) override;

 protected:
  using NativePeer::NativePeer;

  /// The last act of each constructor.
  void Make(const std::vector<std::string>& rows, bool multi_select);
  void Assign(const std::vector<std::string>& rows);
  void Append(const std::string& row);
  void RemoveAt(std::size_t index);

  // The record's.
  virtual bool IsSelected(std::size_t index) const = 0;
  virtual void Select(std::size_t index, bool selected) = 0;
  virtual void ReportDoubleClick() = 0;

 private:
  std::size_t Count() const;
  void Widen(const std::wstring& row);
  void ReportSelection();

  bool multi_select_ = false;
  LONG widest_ = 0;
};

class ListBoxPeer final : public ListPeer {
 public:
  ListBoxPeer(PeerContext& context, WindowsWindow& window, ListBox& list, const Rect& place,
              const Peer* container);

 private:
  bool IsSelected(std::size_t index) const override { return list_.IsSelected(index); }
  void Select(std::size_t index, bool selected) override { list_.Select(index, selected); }
  void ReportDoubleClick() override { list_.DoubleClicked.Emit(); }

  ListBox& list_;
};

/// The files of one folder.
class FileListPeer final : public ListPeer {
 public:
  FileListPeer(PeerContext& context, WindowsWindow& window, FileList& files, const Rect& place,
               const Peer* container);

 private:
  bool IsSelected(std::size_t index) const override { return files_.IsSelected(index); }
  void Select(std::size_t index, bool selected) override { files_.Select(index, selected); }
  void ReportDoubleClick() override { files_.DoubleClicked.Emit(); }

  FileList& files_;
};

}  // namespace tarnvale
