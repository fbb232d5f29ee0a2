#pragma once

#include <memory>
#include <string>
#include <vector>

namespace deskhost {

/// What an import or export would trip over in the environment: blanks, separators, a folder in use.
class SiteCheck {
 public:
  /// Looks at the environment, and holds the folder of the exchange files while this lives.
  SiteCheck();
  [[nodiscard]] const std::vector<std::string>& warnings() const noexcept { return warnings_; }

 private:
  std::vector<std::string> warnings_;
  std::shared_ptr<void> held_;
};

}  // namespace deskhost
