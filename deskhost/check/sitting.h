#pragma once

#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "deskhost/check/calls.h"
#include "deskhost/check/shop.h"
#include "deskhost/session/session.h"

namespace deskhost::check {

/// The findings of a take-down for what wasn't removed from the host's user interface.
inline constexpr const char* toolbar_left = "its toolbar is still there";
inline constexpr const char* menu_left = "the host's menu isn't as it was";

/// What one stretch of a session came to.
struct Outcome {
  std::vector<Call> calls;
  std::vector<std::string> messages;  ///< texts of the boxes that the user saw
  std::vector<std::string> failures;  ///< "OnCommand: text"
};

/// A session of the host with the component on a shop, and everything that comes out of it.
class Sitting {
 public:
  /// `preload` names a document of the shop that is open while the component connects; empty for none.
  explicit Sitting(const Shop& shop, const std::function<automation::Ref()>& make_addin,
                   const std::string& preload = {});

  Session& session() { return *session_; }
  /// The shop's, opened when the component first asks for it.
  void offer_knowledge_base();
  /// Begins a stretch.
  void begin();
  Outcome end();
  /// In the stretch that begins now, refuses the call of that number, from 0, and with `lasting` all behind
  /// it.
  void refuse(std::size_t call, bool lasting);
  void refuse_nothing();
  /// Hears every call before it is made.
  void observe(std::function<void()> observer) { observer_ = std::move(observer); }
  void open(const std::string& document) { session_->open(shop_.file(document)); }
  /// Whether the host's menu is as it was before the component came.
  [[nodiscard]] bool menu_is_as_before();
  /// Takes the component down; findings for what it left. A menu and a toolbar that the host didn't let it
  /// remove may stay.
  std::vector<std::string> take_down();

 private:
  const Shop& shop_;
  std::ostringstream trace_;
  std::vector<std::string> failures_;
  std::function<void()> observer_;
  std::size_t error_text_read_ = 0;
  std::size_t files_open_ = 0;
  std::optional<Session> session_;
  std::vector<std::string> menu_;
  bool refused_user_interface_ = false;
};

/// The component of a place, loaded once, the shop that it works in, and what a sound run comes to.
class Stand {
 public:
  explicit Stand(const Place& place);

  Shop& shop() { return shop_; }
  const std::function<automation::Ref()>& make_addin() const { return make_addin_; }
  /// After whatever happened in the sitting: a document is opened, tools are imported, a tool is changed, and
  /// all comes out as in a sound session. Findings for what doesn't.
  std::vector<std::string> works_as_before(Sitting& sitting);
  /// The same, and the take-down.
  void end_well(Sitting& sitting, Report& report);

 private:
  /// The host calls that a question for a command's state, a changed tool, and the next two questions lead
  /// to.
  struct Followed {
    std::size_t idle_state = 0, change = 0, first_state = 0, second_state = 0;
    friend bool operator==(const Followed&, const Followed&) = default;
    /// A change is followed at once and by one deferred step.
    [[nodiscard]] bool is_sound() const {
      return change > 0 && first_state > idle_state && second_state == idle_state;
    }
  };
  struct After {
    std::string document;
    std::vector<std::string> messages, failures;
    Followed before_import, behind_import;
    std::size_t calls_of_close = 0;
  };
  After after(Sitting& sitting);
  static Followed followed(Sitting& sitting, const char* length);
  void require_soundness() const;

  Shop shop_;
  std::function<automation::Ref()> make_addin_;
  After sound_;
};

/// The file that this process's standard error goes to, and what it said there.
void read_standard_error_from(const std::filesystem::path& file);
std::string standard_error();

}  // namespace deskhost::check
