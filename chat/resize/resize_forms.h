// Proportional resizing: the controls of a form follow the form's size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/form.h"

namespace kelvaron {

/// The layouts that forms and their controls had when they were first resized, and the scaling of
/// all later sizes against them. They are kept as long as the program runs, also when a form is
/// unloaded and loaded again: the client keeps the one object. All lengths are twips, all
/// percentages whole numbers. Fonts keep their size.
class Resize_forms {
 public:
  /// Gives the form's controls their place and size for the form's present size. The first call
  /// for a form takes its baseline. Controls whose `Tag` begins with "Resize=N", and those that
  /// came after the baseline, stay as they are. A call from within a call does nothing.
  void ResizeForm(Form& form);

 private:
  struct LayoutRecord {
    std::string Name = {};
    std::int32_t Index = 0;
    std::string FormName = {};
    // Of a line: Y1, X1, Y2, X2.
    std::int32_t Top = 0;
    std::int32_t Left = 0;
    std::int32_t Height = 0;
    std::int32_t Width = 0;
    // Of forms alone.
    std::int32_t ScaleHeight = 0;
    std::int32_t ScaleWidth = 0;
  };

  // The first two give the number of the record, or -1.
  int FindFormLayout(const Form& form) const;
  int FindControlLayout(const Control& control, const std::string& formName) const;
  int AddFormLayout(const Form& form);
  int AddControlLayout(const Control& control, const std::string& formName);
  const LayoutRecord& baseline(const Form& form);
  int WidthPercent(const Form& form);
  int HeightPercent(const Form& form);
  void ResizeControl(Control& control, const Form& form);

  std::vector<LayoutRecord> FormLayouts;
  std::vector<LayoutRecord> ControlLayouts;
  bool ResizeBusy = false;
};

}  // namespace kelvaron
