#include "session/asked_for.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace kelvaron {
namespace {

constexpr std::array kKinds = {Asked::profile, Asked::ping, Asked::file, Asked::join};

std::vector<std::string> joined(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : " or ") + name;
  return all.empty() ? names : std::vector{all};
}

// A name as lines show it, without the mark of moderators.
std::string_view withoutMarks(std::string_view shownName) {
  return shownName.substr(std::min(shownName.find_first_not_of(kModeratorMark), shownName.size()));
}

std::string_view kindOf(Asked what) {
  return what == Asked::join ? "the CSDoom game" : "sending a file";
}

std::string_view lackOf(Asked what) {
  switch (what) {
    case Asked::profile:
      return "with a profile";
    case Asked::ping:
      return "the ping";
    case Asked::file:
      return "about the file";
    case Asked::join:
      break;
  }
  return "about the CSDoom game";
}

}  // namespace

std::vector<AskedFor::Question>& AskedFor::open(const Client& client, Asked what) {
  std::vector<Question>& questions = questions_[what];
  std::erase_if(questions, [&](const Question& each) {
    return each.connection != client.connectionsMade || client.now() - each.when > kLongestWait;
  });
  if (std::ranges::all_of(questions, &Question::answered)) questions.clear();
  return questions;
}

void AskedFor::ask(const Client& client, Asked what, std::string_view nickname) {
  std::vector<Question>& questions = open(client, what);
  questions.push_back({.nickname = std::string(nickname),
                       .when = client.now(),
                       .connection = client.connectionsMade,
                       .keys = client.keysTyped()});
  if (onAsked) onAsked();
}

std::vector<std::string> AskedFor::takeSilences(const Client& client) {
  std::vector<std::string> sentences;
  for (const Asked what : kKinds) {
    std::vector<std::string> silent;
    for (Question& each : open(client, what)) {
      if (each.told || client.now() - each.when < kPromptly) continue;
      each.told = true;
      if (std::ranges::find(silent, each.nickname) == silent.end()) silent.push_back(each.nickname);
    }
    // An address doesn't say whom it is from, so any of those who were asked may be meant.
    if (what == Asked::file || what == Asked::join) silent = joined(silent);
    for (const std::string& name : silent) {
      sentences.push_back(name + " hasn't answered " + std::string(lackOf(what)) + ".");
    }
  }
  return sentences;
}

bool AskedFor::waits(const Client& client) {
  return std::ranges::any_of(kKinds, [&](Asked what) {
    return !std::ranges::all_of(open(client, what), &Question::told);
  });
}

std::optional<AskedFor::Answer> AskedFor::take(const Client& client, Asked what,
                                               std::string_view shownName) {
  std::vector<Question>& questions = open(client, what);
  const std::string_view nickname = withoutMarks(shownName);
  std::optional<Answer> answer;
  for (const Question& each : questions) {
    if (each.nickname == nickname) answer = Answer{.typedSince = each.keys != client.keysTyped()};
  }
  std::erase_if(questions, [&](const Question& each) { return each.nickname == nickname; });
  return answer;
}

AskedFor::Address AskedFor::takeAddress(Client& client, Asked what, const std::string& address) {
  std::vector<Question>& questions = open(client, what);
  const auto oldest = std::ranges::find(questions, false, &Question::answered);
  if (oldest == questions.end()) return Address::unasked;
  std::vector<std::string> names;
  for (const Question& each : questions) {
    if (std::ranges::find(names, each.nickname) == names.end()) names.push_back(each.nickname);
  }
  const Question question = *oldest;
  const auto age = client.now() - question.when;
  // While several were asked nobody can tell which of them has answered.
  if (names.size() == 1) {
    questions.erase(oldest);
  } else {
    oldest->answered = true;
  }
  const Used used = used_[what];
  const bool replaces = question.when <= used.when;
  if (replaces && used.address == address) return Address::passedOver;
  if (replaces || names.size() > 1 || age > kPromptly) {
    std::string text = "An address for " + std::string(kindOf(what)) + " came " +
                       std::to_string(std::chrono::floor<std::chrono::seconds>(age).count()) +
                       " s after you asked";
    for (const std::string& name : names) {
      text.append(&name == names.data() ? " \"" : " or \"").append(name).append("\"");
    }
    text += ": \"" + address + "\"";
    if (replaces) text += ", behind \"" + used.address + "\"";
    if (!client.confirm(text + ".\r\n\r\nUse it?")) return Address::passedOver;
  }
  used_[what] = {.address = address, .when = client.now()};
  keysOfAddress_ = question.keys;
  return Address::usable;
}

void showAnswer(Form& form, bool takesKeyboard) {
  if (takesKeyboard) {
    form.Show();
  } else {
    form.ShowQuietly();
  }
}

}  // namespace kelvaron
