// The host waits: six slots with a name and two lamps each, and GO.
#pragma once

#include <array>
#include <string_view>

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

  CommandButton Command1{*this, "Command1", pixels(564, 224, 112, 34), "GO"};

  /// Lights the lamp of each slot whose name is the guest's, letter for letter.
  void showAccepted(std::string_view guest);
  void showDeclined(std::string_view guest);

 private:
  static constexpr Place kNamePlace = pixels(14, 34, 150, 40);
  static constexpr Place kRedPlace = pixels(176, 26, 22, 22);
  static constexpr Place kGreenPlace = pixels(176, 56, 22, 22);

  void Command1_Click();

  Client& client_;
  const std::array<Shape*, kSlots> red_ = {&Shape1, &Shape3, &Shape5, &Shape7, &Shape9, &Shape11};
  const std::array<Shape*, kSlots> green_ = {&Shape2, &Shape4,  &Shape6,
                                             &Shape8, &Shape10, &Shape12};
};

}  // namespace kelvaron
