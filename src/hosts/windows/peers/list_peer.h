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
  template <class List>
  ListPeer(PeerContext& context, WindowsWindow& window, List& list, const Rect& place,
           const Peer* container)
      : NativePeer(context, window, list, place, container), selection_(list) {}

  /// The last act of each constructor.
  void Make(const std::vector<std::string>& rows);
  void Assign(const std::vector<std::string>& rows);
  void Append(const std::string& row);
  void RemoveAt(std::size_t index);

 private:
  std::size_t Count() const;
  void Widen(const std::wstring& row);
  void ReportSelection();

  RowSelection& selection_;
  LONG widest_ = 0;
};

class ListBoxPeer final : public ListPeer {
 public:
  ListBoxPeer(PeerContext& context, WindowsWindow& window, ListBox& list, const Rect& place,
              const Peer* container);

 private:
  ListBox& list_;
};

/// The files of one folder.
class FileListPeer final : public ListPeer {
 public:
  FileListPeer(PeerContext& context, WindowsWindow& window, FileList& files, const Rect& place,
               const Peer* container);

 private:
  FileList& files_;
};

}  // namespace tarnvale
