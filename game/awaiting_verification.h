// The host waits: six slots with a name, two lamps and the answer in a word each, and GO.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/shape.h"

namespace kelvaron {

class Client;

/// What the user list's entries, the answers and GO work on: the captions of the names and the
/// colours of the lamps.
class Form1 : public Form {
 public:
  static constexpr std::size_t kSlots = 6;
  /// The name of a slot that nobody was invited to.
  static constexpr std::string_view kNobody = "None";
  /// Fill of a green lamp when the guest has accepted: 8454016.
  static constexpr Color kAccepted{128, 255, 128};
  /// Fill of a red lamp when the guest has declined: 255.
  static constexpr Color kDeclined{255, 0, 0};

  explicit Form1(Client& client);

  Frame Frame1{*this, "Frame1", pixels(16, 14, 212, 92), "Player One"};
  Frame Frame2{*this, "Frame2", pixels(240, 14, 212, 92), "Player Two"};
  Frame Frame4{*this, "Frame4", pixels(464, 14, 212, 92), "Player Three"};
  Frame Frame5{*this, "Frame5", pixels(16, 118, 212, 92), "Player Four"};
  Frame Frame6{*this, "Frame6", pixels(240, 118, 212, 92), "Player Five"};
  Frame Frame7{*this, "Frame7", pixels(464, 118, 212, 92), "Player Six"};

  /// The slots' names; a name is the guest's whole entry of the user list.
  std::array<Label, kSlots> Label1{{{Frame1, "Label1", kNamePlace, kNobody},
                                    {Frame2, "Label1", kNamePlace, kNobody},
                                    {Frame4, "Label1", kNamePlace, kNobody},
                                    {Frame5, "Label1", kNamePlace, kNobody},
                                    {Frame6, "Label1", kNamePlace, kNobody},
                                    {Frame7, "Label1", kNamePlace, kNobody}}};

  /// What a slot's guest has last done, in a word; empty where nobody was asked.
  std::array<Label, kSlots> Label2{{{Frame1, "Label2", kAnswerPlace, ""},
                                    {Frame2, "Label2", kAnswerPlace, ""},
                                    {Frame4, "Label2", kAnswerPlace, ""},
                                    {Frame5, "Label2", kAnswerPlace, ""},
                                    {Frame6, "Label2", kAnswerPlace, ""},
                                    {Frame7, "Label2", kAnswerPlace, ""}}};

  Shape Shape1{Frame1, "Shape1", kRedPlace};
  Shape Shape2{Frame1, "Shape2", kGreenPlace};
  Shape Shape3{Frame2, "Shape3", kRedPlace};
  Shape Shape4{Frame2, "Shape4", kGreenPlace};
  Shape Shape5{Frame4, "Shape5", kRedPlace};
  Shape Shape6{Frame4, "Shape6", kGreenPlace};
  Shape Shape7{Frame5, "Shape7", kRedPlace};
  Shape Shape8{Frame5, "Shape8", kGreenPlace};
  Shape Shape9{Frame6, "Shape9", kRedPlace};
  Shape Shape10{Frame6, "Shape10", kGreenPlace};
  Shape Shape11{Frame7, "Shape11", kRedPlace};
  Shape Shape12{Frame7, "Shape12", kGreenPlace};

  CommandButton Command1{*this, "Command1", pixels(564, 224, 112, 30), "GO"};

  /// An invitation begins: names the first slots, at most `kSlots`; nobody has been asked yet.
  void invite(const std::vector<std::string>& entries);
  /// The guests of the first slots are asked, and all lamps dark; the other seats are empty and
  /// grey, and no line is about them.
  void showAsked(std::size_t guests);
  /// Lights the lamp of each slot whose guest was asked and has this name, letter for letter.
  void showAccepted(std::string_view guest);
  void showDeclined(std::string_view guest);

 private:
  static constexpr Place kNamePlace = pixels(14, 24, 156, 24);
  static constexpr Place kAnswerPlace = pixels(14, 55, 156, 24);
  static constexpr Place kRedPlace = pixels(176, 26, 22, 22);
  static constexpr Place kGreenPlace = pixels(176, 56, 22, 22);

  void Command1_Click();
  bool sits(std::string_view guest, std::size_t slot) const;
  void tell(std::size_t slot, std::string_view answer, Color color);

  Client& client_;
  const std::array<Frame*, kSlots> seats_ = {&Frame1, &Frame2, &Frame4, &Frame5, &Frame6, &Frame7};
  const std::array<Shape*, kSlots> red_ = {&Shape1, &Shape3, &Shape5, &Shape7, &Shape9, &Shape11};
  const std::array<Shape*, kSlots> green_ = {&Shape2, &Shape4,  &Shape6,
                                             &Shape8, &Shape10, &Shape12};
};

}  // namespace kelvaron
