// One native window.
#pragma once

#include <QElapsedTimer>
#include <QMenuBar>
#include <QPoint>
#include <QTimer>
#include <QWidget>

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/qt/peers/peer.h"
#include "ui/window.h"

namespace tarnvale {

/// Where a popup goes on the whole desktop, whose screens may lie anywhere: its
/// record counts from the corner of the primary one.
QPoint PopupPlace(QPoint screen_origin, int left_twips, int top_twips);

/// Mirrors a window record by a native window. The controls get their peers when
/// the window is first shown. What changes in one event comes to the desktop in
/// one step after it.
class QtWindow final : public QWidget {
 public:
  QtWindow(PeerContext& context, Window& record, Desktop& desktop);
  ~QtWindow() override;

  Window& Record() { return record_; }
  /// The peer of one of its controls; none before the window was first shown.
  Peer* PeerOf(const Control& control) const;
  /// The menu bar; none when it has none or wasn't shown yet.
  QMenuBar* Menus() const { return menus_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FollowRecord();
  void Build();
  void BuildMenus();
  void BuildControls();
  void NameControls();

  void RequestSync();
  void Sync();
  void EmitResized();
  void ApplyFlags();
  void ApplyState();
  void ApplyPosition();
  void PlaceFirst();
  void BringForward();
  void ApplyIcon();
  void ApplyEnabled();

  void ReportState();
  /// A window that was to be minimised and then not may go away after all: it
  /// was to come up before the window manager had taken it down.
  void RestoreAgain();
  void ReportActivation();
  void ShowFocus();

  template <class Handler>
  void Follow(Signal<>& signal, Handler handler) {
    subscriptions_.push_back(signal.Subscribe(std::move(handler)));
  }
  void Report(const std::function<void()>& handler);

  PeerContext& context_;
  Window& record_;
  Desktop& desktop_;
  QWidget* client_ = nullptr;
  QMenuBar* menus_ = nullptr;
  std::vector<std::unique_ptr<Peer>> peers_;
  std::map<const Control*, Peer*> peer_of_;
  std::vector<Subscription> subscriptions_;
  /// What was last requested of the native window, or reported by it.
  std::optional<WindowState> ordered_state_;
  WindowState emitted_state_ = WindowState::kNormal;
  bool sync_is_requested_ = false;
  bool raise_is_requested_ = false;
  bool was_placed_ = false;
  bool is_applying_ = false;
  /// Once per order, as nobody can force a window manager.
  bool was_restored_again_ = false;
  QElapsedTimer since_state_was_applied_;
  QTimer settle_;
};

}  // namespace tarnvale
