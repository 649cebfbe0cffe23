#include "desktop/ports/dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>

#include "base/scope_exit.h"
#include "desktop/ports/file_dialog.h"
#include "desktop/qt_values.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

// Share of the screen that the text of a box may take, and the width of a usual line.
constexpr int kScreenShare = 2;
constexpr int kLineCharacters = 70;
// What a label takes; more than this scrolls.
constexpr int kLabelCharacters = 600;
constexpr int kLabelLines = 12;
constexpr int kScrolledLines = 16;
constexpr int kMargin = 18;
constexpr int kSpacing = 14;
constexpr std::size_t kMostShownBytes = 4096;
constexpr std::chrono::milliseconds kWithoutKeys{500};

std::optional<QStyle::StandardPixmap> iconOf(int style) {
  switch (style) {
    case box_style::kCritical:
      return QStyle::SP_MessageBoxCritical;
    case box_style::kExclamation:
      return QStyle::SP_MessageBoxWarning;
    case box_style::kInformation:
      return QStyle::SP_MessageBoxInformation;
    default:
      return std::nullopt;
  }
}

bool fitsLabel(const QString& text, const QFontMetrics& metrics, int width) {
  if (text.size() > kLabelCharacters || text.count('\n') >= kLabelLines) return false;
  // A word longer than a line cannot be broken in a label.
  const QStringList words = text.simplified().split(' ');
  return std::ranges::none_of(
      words, [&](const QString& word) { return metrics.horizontalAdvance(word) > width; });
}

QWidget* makeText(const QString& text, QWidget& parent) {
  const QFontMetrics metrics = parent.fontMetrics();
  const int width = std::min(metrics.averageCharWidth() * kLineCharacters,
                             parent.screen()->availableSize().width() / kScreenShare);
  if (fitsLabel(text, metrics, width)) {
    auto* label = new QLabel(&parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (metrics.size(0, text).width() > width) {
      label->setWordWrap(true);
      label->setFixedWidth(width);
    }
    return label;
  }
  auto* area = new QPlainTextEdit(text, &parent);
  area->setReadOnly(true);
  area->setAccessibleName(QStringLiteral("Message"));
  area->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  area->setTabChangesFocus(true);
  area->setFixedSize(width, std::min(metrics.lineSpacing() * kScrolledLines,
                                     parent.screen()->availableSize().height() / kScreenShare));
  return area;
}

/// Puts a dialog over the window at work, if there is one, within the screen. The dialog has no
/// parent, so that it outlives that window.
void placeOverWork(QDialog& dialog) {
  const QWidget* window = QApplication::activeModalWidget();
  if (window == nullptr) window = QApplication::activeWindow();
  if (window == nullptr || window->windowHandle() == nullptr) return;
  QRect place(QPoint(), dialog.layout()->sizeConstraint() == QLayout::SetFixedSize
                            ? dialog.sizeHint()
                            : dialog.size());
  place.moveCenter(window->frameGeometry().center());
  const QRect space = window->screen()->availableGeometry();
  dialog.move(std::max(space.left(), std::min(place.left(), space.right() - place.width())),
              std::max(space.top(), std::min(place.top(), space.bottom() - place.height())));
  dialog.winId();
  dialog.windowHandle()->setTransientParent(window->windowHandle());
}

constexpr Qt::WindowFlags kBoxFlags =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;

/// Keeps the keys that are typed right now from a box that came by itself.
class KeyGuard : public QObject {
 public:
  explicit KeyGuard(QWidget& box) : box_(box) {
    since_.start();
    QCoreApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // It may have waited for its turn.
    if (watched == &box_ && event->type() == QEvent::Show) since_.start();
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                     event->type() == QEvent::ShortcutOverride ||
                     event->type() == QEvent::InputMethod;
    if (!key || since_.hasExpired(kWithoutKeys.count())) return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    const bool inBox =
        watched == box_.windowHandle() || (widget != nullptr && widget->window() == &box_);
    return inBox;
  }

 private:
  QWidget& box_;
  QElapsedTimer since_;
};

class MessageBox : public QDialog {
 public:
  MessageBox(const QString& text, int style, const std::string& title, bool question = false,
             bool yesIsDefault = false)
      : QDialog(nullptr, kBoxFlags),
        buttons_(*new QDialogButtonBox(
            question ? QDialogButtonBox::Yes | QDialogButtonBox::No : QDialogButtonBox::Ok, this)) {
    setWindowTitle(shownText(title));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    grid->setSpacing(kSpacing);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    if (const auto icon = iconOf(style)) {
      auto* picture = new QLabel(this);
      const int size = this->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
      picture->setPixmap(
          this->style()->standardIcon(*icon).pixmap(QSize(size, size), devicePixelRatioF()));
      grid->addWidget(picture, 0, 0, Qt::AlignTop);
    }
    grid->addWidget(makeText(text, *this), 0, 1, Qt::AlignVCenter);
    grid->addWidget(&buttons_, 1, 0, 1, 2);
    QObject::connect(&buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    QObject::connect(&buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QPushButton* usual = buttons_.button(!question      ? QDialogButtonBox::Ok
                                         : yesIsDefault ? QDialogButtonBox::Yes
                                                        : QDialogButtonBox::No);
    usual->setDefault(true);
    usual->setFocus();
  }

  void offerDisconnect() {
    QPushButton* button =
        buttons_.addButton(QStringLiteral("Disconnect"), QDialogButtonBox::DestructiveRole);
    QObject::connect(button, &QPushButton::clicked, this, [this] {
      disconnects_ = true;
      reject();
    });
  }
  bool disconnects() const { return disconnects_; }

 private:
  QDialogButtonBox& buttons_;
  bool disconnects_ = false;
};

}  // namespace

bool QtDialogs::ask(QDialog& dialog) {
  gate_.edge().throwIfEnded();
  const EventGate::Hold hold(gate_);
  placeOverWork(dialog);
  const bool agreed = dialog.exec() == QDialog::Accepted;
  gate_.edge().throwIfEnded();
  return agreed;
}

bool QtDialogs::askInTurn(QDialog& box) {
  const EventGate::Hold hold(gate_);
  while (!boxes_.empty() && boxes_.back()->isVisible()) {
    QEventLoop turn;
    QObject::connect(boxes_.back(), &QDialog::finished, &turn, &QEventLoop::quit);
    turn.exec();
    gate_.edge().throwIfEnded();
  }
  boxes_.push_back(&box);
  const ScopeExit done([this] { boxes_.pop_back(); });
  return ask(box);
}

BoxAnswer QtDialogs::show(const BoxRequest& request) {
  MessageBox box(shownText(beginningOf(request.text, kMostShownBytes)), request.style,
                 request.title, request.question, request.yesIsDefault);
  if (request.offersDisconnect) box.offerDisconnect();
  std::optional<KeyGuard> guard;
  if (request.unasked) guard.emplace(box);
  const bool agreed = askInTurn(box);
  if (box.disconnects()) return BoxAnswer::disconnect;
  if (!request.question) return BoxAnswer::ok;
  return agreed ? BoxAnswer::yes : BoxAnswer::no;
}

std::string QtDialogs::InputBox(const std::string& prompt, const std::string& title,
                                const std::string& initial) {
  QInputDialog box(nullptr, kBoxFlags);
  box.setWindowTitle(shownText(title));
  box.setLabelText(shownText(prompt));
  box.setTextValue(shownText(initial));
  box.findChild<QLabel*>()->setTextFormat(Qt::PlainText);
  auto* edit = box.findChild<QLineEdit*>();
  edit->setAccessibleName(shownText(prompt));
  edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * kLineCharacters / 2);
  box.adjustSize();
  return askInTurn(box) ? withoutLineEnds(storedText(box.textValue())) : std::string();
}

std::optional<std::string> QtDialogs::openFile(const FileDialog& told) {
  QFileDialog dialog;
  prepareFileDialog(dialog, told, folder_);
  while (ask(dialog)) {
    const QString chosen = QDir::toNativeSeparators(dialog.selectedFiles().value(0));
    const QString why = whyNot(chosen);
    if (why.isEmpty()) {
      folder_ = QFileInfo(chosen).absolutePath();
      return storedText(chosen);
    }
    MessageBox refusal(why, box_style::kExclamation, storedText(dialog.windowTitle()));
    askInTurn(refusal);
  }
  return std::nullopt;
}

}  // namespace kelvaron
