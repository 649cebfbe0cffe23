// What the user has asked other players for: the one record by which a line is an answer.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/client.h"

namespace kelvaron {

enum class Asked { profile, ping, file, join };

/// The questions that are open, of one client (`client.lasting<AskedFor>()`). A question has one
/// answer, on its connection, within a minute.
class AskedFor {
 public:
  static constexpr std::chrono::seconds kLongestWait{60};
  /// Clients answer by themselves: an address that takes longer is asked about.
  static constexpr std::chrono::seconds kPromptly{10};
  using Time = std::chrono::steady_clock::time_point;

  /// The user has asked who has this nickname.
  void ask(const Client& client, Asked what, std::string_view nickname);

  /// A line that says whom it is from: whether it's an answer, which is taken; then with whether
  /// the user has typed since the question.
  struct Answer {
    bool typedSince = false;
  };
  std::optional<Answer> take(const Client& client, Asked what, std::string_view shownName);

  enum class Address {
    /// Nobody has asked for it.
    unasked,
    usable,
    /// It tells nothing new, or the user has said No.
    passedOver
  };
  /// A line that only says an address, so that it can be from whoever was asked: what to do with
  /// it. It is usable at once when it came promptly from the only one who was asked; else the user
  /// is asked, also where it would take the place of another one.
  Address takeAddress(Client& client, Asked what, const std::string& address);
  /// Sentences about who has not answered promptly, one for each question and once; of those that
  /// are for an address, one about all who may be meant.
  std::vector<std::string> takeSilences(const Client& client);
  /// Whether there may be more of them later.
  bool waits(const Client& client);
  /// A question went out.
  std::function<void()> onAsked;

  /// Whether the user has typed since the question behind the address that was usable last.
  bool typedSinceAddress(const Client& client) const {
    return keysOfAddress_ != client.keysTyped();
  }

 private:
  struct Question {
    std::string nickname;
    Time when;
    std::uint64_t connection = 0;
    std::uint64_t keys = 0;
    bool answered = false;
    bool told = false;
  };
  struct Used {
    std::string address;
    Time when{};
  };

  std::vector<Question>& open(const Client& client, Asked what);

  std::map<Asked, std::vector<Question>> questions_;
  std::map<Asked, Used> used_;
  std::uint64_t keysOfAddress_ = 0;
};

/// An answer is there: brings its form up ready to use when the user asked for it and has typed
/// nothing since; else the keyboard stays where it is.
void showAnswer(Form& form, bool takesKeyboard);

}  // namespace kelvaron
