// What every form has for those without a mouse, or without eyes for the screen.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "chat/about_box.h"
#include "chat/mute_list.h"
#include "chat/private_message.h"
#include "chat/volume.h"
#include "game/awaiting_verification.h"
#include "game/configuration.h"
#include "game/final_chance.h"
#include "game/game_request.h"
#include "game/game_selection.h"
#include "game/in_game.h"
#include "moderation/kick_form.h"
#include "moderation/status_request.h"
#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "peer/ping.h"
#include "peer/profile.h"
#include "session/login_window.h"
#include "session/message_of_the_day.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

class Forms : public ClientTest {
 protected:
  std::vector<Form*> forms() {
    return {&room(),
            &form<frmLogin>(),
            &form<Form5>(),
            &form<SendPM>(),
            &form<Muted>(),
            &form<Volume>(),
            &form<frmAbout>(),
            &form<config>(),
            &form<game1>(),
            &form<Form1>(),
            &form<request>(),
            &form<Form3>(),
            &form<Form4>(),
            &form<Profile>(),
            &form<Pingme>(),
            &form<Frm_Server>(),
            &form<Frm_Client>(),
            &form<frmGetOP>(),
            &form<frmkick>()};
  }
};

// The forms that the headers declare: one that `forms` lacks would go through no test below.
TEST_F(Forms, AreAllInTheListAbove) {
  const std::regex declaration(R"(class (\w+)[^:;{}]*: public (?:Form|MainWindow) )");
  std::set<std::string> declared;
  for (const char* folder : {"session", "chat", "peer", "game", "moderation", "client"}) {
    const std::filesystem::path path = std::filesystem::path(KELVARON_SOURCES) / folder;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
      if (entry.path().extension() != ".h") continue;
      std::ifstream file(entry.path());
      const std::string header{std::istreambuf_iterator<char>(file), {}};
      for (std::sregex_iterator found(header.begin(), header.end(), declaration), end; found != end;
           ++found) {
        declared.insert((*found)[1]);
      }
    }
  }
  declared.erase("MainWindow");  // what `session/` knows of frmMain
  std::set<std::string> listed;
  for (const Form* form : forms()) listed.insert(form->Name);
  EXPECT_EQ(listed, declared);
}

TEST_F(Forms, HaveACancelButtonOrAreLeftByTheirFrame) {
  std::vector<std::string> without;
  std::vector<std::string> onlyHidden;
  for (const Form* form : forms()) {
    const bool cancels = std::ranges::any_of(form->Controls(), [](const Control* control) {
      const auto* button = dynamic_cast<const CommandButton*>(control);
      return button != nullptr && button->Cancel;
    });
    if (!cancels) without.push_back(form->Name);
    if (form->HidesOnClose) onlyHidden.push_back(form->Name);
  }
  EXPECT_EQ(without, (std::vector<std::string>{"frmMain", "Volume", "Form1", "request", "Form4",
                                               "Profile"}));
  EXPECT_EQ(onlyHidden, (std::vector<std::string>{"Muted", "config"}));
}

TEST_F(Forms, TellWhatEachControlIs) {
  for (const Form* form : forms()) {
    std::set<std::string> names;
    for (std::size_t i = 0; i < form->Controls().size(); ++i) {
      using enum ControlKind;
      const Control& control = *form->Controls()[i];
      const bool hasCaption =
          std::set{label, checkBox, button, frame, image, shape, line, timer}.contains(
              control.kind);
      // Of the label in front of it, else of its own.
      const bool labelled = i > 0 && form->Controls()[i - 1]->kind == label;
      if (hasCaption || !control.Visible || (labelled && control.AccessibleName.empty())) continue;
      EXPECT_TRUE(!control.AccessibleName.empty() && names.insert(control.AccessibleName).second)
          << form->Name << ' ' << control.Name;
    }
  }
}

}  // namespace
}  // namespace kelvaron::testing
