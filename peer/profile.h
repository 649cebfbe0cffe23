// The user's profile: edited, asked for, answered and shown.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "platform/controls.h"

namespace kelvaron {

class Client;
struct InboundContext;

/// What a user tells of himself, in the order of `profile.dat`. All free text.
struct UserProfile {
  static constexpr std::size_t kRecords = 13;

  std::string userName;
  std::string version;
  std::string firstName;
  std::string lastName;
  std::string age;
  std::string sex;
  std::string icqNumber;
  std::string emailAddress;
  std::string city;
  std::string state;
  std::string country;
  std::string homePage;
  std::string comments;

  /// Its thirteen texts in order.
  std::array<std::string*, kRecords> records();
};

/// The user's own profile as the file has it; records that it lacks are empty. Faults 53 and 75.
UserProfile readProfile(Client& client);

/// Edits the user's own profile, or shows somebody else's.
class Profile : public Form {
 public:
  explicit Profile(Client& client);

  Label Label1{*this, "Label1", pixels(16, 18, 120, 22), "User Name"};
  TextBox Text1{*this, "Text1", pixels(144, 14, 360, 28)};
  Label Label2{*this, "Label2", pixels(16, 52, 120, 22), "Version"};
  TextBox Text2{*this, "Text2", pixels(144, 48, 360, 28)};
  Label Label3{*this, "Label3", pixels(16, 86, 120, 22), "First Name"};
  TextBox Text3{*this, "Text3", pixels(144, 82, 360, 28)};
  Label Label4{*this, "Label4", pixels(16, 120, 120, 22), "Last Name"};
  TextBox Text4{*this, "Text4", pixels(144, 116, 360, 28)};
  Label Label5{*this, "Label5", pixels(16, 154, 120, 22), "Age"};
  TextBox Text5{*this, "Text5", pixels(144, 150, 360, 28)};
  Label Label6{*this, "Label6", pixels(16, 188, 120, 22), "Sex"};
  TextBox Text6{*this, "Text6", pixels(144, 184, 360, 28)};
  Label Label7{*this, "Label7", pixels(16, 222, 120, 22), "ICQ Number"};
  TextBox Text7{*this, "Text7", pixels(144, 218, 360, 28)};
  Label Label8{*this, "Label8", pixels(16, 256, 120, 22), "Email Address"};
  TextBox Text8{*this, "Text8", pixels(144, 252, 360, 28)};
  Label Label9{*this, "Label9", pixels(16, 290, 120, 22), "City"};
  TextBox Text9{*this, "Text9", pixels(144, 286, 360, 28)};
  Label Label10{*this, "Label10", pixels(16, 324, 120, 22), "State"};
  TextBox Text10{*this, "Text10", pixels(144, 320, 360, 28)};
  Label Label11{*this, "Label11", pixels(16, 358, 120, 22), "Country"};
  TextBox Text11{*this, "Text11", pixels(144, 354, 360, 28)};
  Label Label12{*this, "Label12", pixels(16, 392, 120, 22), "Home Page"};
  TextBox Text12{*this, "Text12", pixels(144, 388, 360, 28)};
  Label Label13{*this, "Label13", pixels(16, 426, 120, 22), "Comments"};
  TextBox Text13{*this, "Text13", pixels(144, 422, 360, 28)};
  /// Nothing happens when it is pressed.
  CommandButton Command1{*this, "Command1", pixels(16, 466, 236, 30), "Send User an ICQ Message"};
  CommandButton Command2{*this, "Command2", pixels(392, 466, 112, 30), "Save"};

  void Form_Load() override;
  void Form_Unload() override;

  /// The thirteen boxes in the order of the records.
  std::array<TextBox*, UserProfile::kRecords> boxes();

 private:
  friend void editProfile(Client& client);
  friend void showProfile(InboundContext& context);

  void Command2_Click();
  bool beingEdited() const { return Command2.Visible && Visible; }

  Client& client_;
  // Whether anything in the boxes came from somebody else.
  bool foreign_ = false;
  // The profile that came last while the user was editing or reading.
  std::optional<UserProfile> waiting_;
};

/// Shows the user's own profile for editing.
void editProfile(Client& client);
/// Shows the profile that a line brings. While one is edited it waits until the form is closed, and
/// so does one that nobody has asked for while another is shown; of several the last one is kept.
void showProfile(InboundContext& context);

}  // namespace kelvaron
