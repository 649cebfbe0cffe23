// Views that only the factory makes, one a kind of control.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QSlider>
#include <cstdint>

#include "desktop/chat_view/chat_view.h"
#include "desktop/controls/control_view.h"
#include "platform/combo_box.h"
#include "platform/progress_bar.h"
#include "platform/shape.h"
#include "platform/slider.h"

namespace kelvaron {

/// The order of events at a mouse click: `MouseDown`, the value turns over, `Click`, `MouseUp`.
/// The keyboard turns the value over and raises `Click` alone.
class CheckBoxView : public ControlView {
 public:
  CheckBoxView(CheckBox& box, ViewHost& host, QWidget* parent);

  FirstFocus firstFocus() const override { return FirstFocus::usual; }

  void mouseDown(Qt::MouseButton button);
  void mouseUp(Qt::MouseButton button);

 protected:
  void refresh() override;
  bool refreshesAtOnce() const override { return true; }

 private:
  void turnedOver(bool checked);
  CheckBox& box() const { return static_cast<CheckBox&>(*control()); }

  QCheckBox& widget_;
};

/// What is typed stays as it was typed: nothing completes it, and nothing typed goes into the list.
/// A character that the code page lacks shows as the "?" that it became. A key that closes the open
/// list does nothing else.
class ComboBoxView : public ControlView {
 public:
  ComboBoxView(ComboBox& box, ViewHost& host, QWidget* parent);

  bool wantsLabel() const override { return true; }
  void setNameFromLabel(const QString& name) override;

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void textEdited(const QString& text);
  void showText();
  void listHears(int key);
  ComboBox& box() const { return static_cast<ComboBox&>(*control()); }

  QComboBox& combo_;
  // The pop-up list.
  const QObject* list_;
  // What the widget's list was filled from.
  std::vector<std::string> items_;
  // Of this turn; 0 for none.
  int keyOfList_ = 0;
};

class FrameView : public ControlView {
 public:
  FrameView(Frame& frame, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Fits the picture into its place without distorting it, sharp at any scale of the screen.
class ImageView : public ControlView {
 public:
  ImageView(Image& image, ViewHost& host, QWidget* parent);

  bool pointerMoved() override;

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Image& image() const { return static_cast<Image&>(*control()); }

  QLabel& label_;
};

/// A bar that was full stays so until something else is under way: its value is empty at once.
class ProgressBarView : public ControlView {
 public:
  ProgressBarView(ProgressBar& bar, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;

 private:
  QProgressBar& bar_;
  // What it was full of; 0 while it wasn't.
  std::int64_t full_ = 0;
};

class RichTextBoxView : public ControlView {
 public:
  RichTextBoxView(RichTextBox& box, ViewHost& host, QWidget* parent);

  bool wantsLabel() const override { return true; }
  FirstFocus firstFocus() const override { return FirstFocus::toRead; }
  void detach() override;

 protected:
  void refresh() override;

 private:
  RichTextBox& box() const { return static_cast<RichTextBox&>(*control()); }
};

/// Round, in the middle of its place, and with a glow while it is lit. A screen reader hears "lit"
/// or "unlit" as its description.
class ShapeView : public ControlView {
 public:
  ShapeView(Shape& shape, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel& label_;
};

/// Dynamic property of a slider: whether its groove is filled from the knob to the right end.
inline constexpr const char* kFillsBehind = "kelvaronFillsBehind";

/// A click beside the knob brings it there. The wheel turns it only while it has the keyboard.
class SliderView : public ControlView {
 public:
  SliderView(Slider& slider, ViewHost& host, QWidget* parent);

  bool wantsLabel() const override { return true; }

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void moved(int value);
  Slider& slider() const { return static_cast<Slider&>(*control()); }

  QSlider& slider_;
};

}  // namespace kelvaron
