// What the main window needs of the windows beside it. The composition root sets
// these; one that isn't set does nothing.
#pragma once

#include <functional>
#include <string>

namespace tarnvale {

struct ToolHooks {
  std::function<void()> ShowUserData;
  std::function<void()> ShowSplitter;
  std::function<void()> ShowRegistry;
  std::function<void()> ShowTransfer;
  std::function<void()> ShowCompressor;
  /// The compressor with its panel for packing.
  std::function<void()> ShowCompressorPanel;
  /// Shows the window of the conversation and sends a mail with this body by
  /// the server of the settings.
  std::function<void(const std::string& body)> SendTestReport;
};

}  // namespace tarnvale
