// The colours of the room, as red, green, blue.
#pragma once

#include "platform/color.h"

namespace kelvaron::colors {

/// The chat view at first, and after a private message.
inline constexpr Color kPlain{190, 190, 0};
/// What the user types, and what is said in the room.
inline constexpr Color kSpeech{96, 246, 241};
/// Who says it.
inline constexpr Color kSender{219, 178, 240};
/// The client's own notices.
inline constexpr Color kNotice{0, 255, 18};
inline constexpr Color kPrivateHeading{255, 0, 18};
inline constexpr Color kPrivateText{185, 190, 215};

inline constexpr Color kLabel{192, 255, 192};
inline constexpr Color kValue{192, 255, 255};
inline constexpr Color kStatus{255, 192, 192};
inline constexpr Color kUsers{128, 255, 128};
/// While there is no connection: 5 to 1 against black.
inline constexpr Color kUsersBefore{80, 140, 80};
inline constexpr Color kWhite{255, 255, 255};
inline constexpr Color kBlack{0, 0, 0};
inline constexpr Color kBuffering{0, 255, 0};
inline constexpr Color kBufferingPercent{255, 0, 0};
/// What a dialog warns of.
inline constexpr Color kWarning{255, 64, 64};

}  // namespace kelvaron::colors
