#include "peer/profile.h"

#include <algorithm>

#include "build_settings.h"
#include "platform/delimited_fields.h"
#include "platform/text.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/dispatch.h"

namespace kelvaron {
namespace {

constexpr const char* kFile = "profile.dat";

void fill(Profile& form, UserProfile profile) {
  const auto records = profile.records();
  const auto boxes = form.boxes();
  for (std::size_t index = 0; index < boxes.size(); ++index) boxes[index]->Text = *records[index];
}

void showForReading(Profile& form) {
  for (TextBox* box : form.boxes()) box->Enabled = false;
  form.ShowQuietly();
}

}  // namespace

std::array<std::string*, UserProfile::kRecords> UserProfile::records() {
  return {&userName,     &version, &firstName, &lastName, &age,      &sex,     &icqNumber,
          &emailAddress, &city,    &state,     &country,  &homePage, &comments};
}

UserProfile readProfile(Client& client) {
  const std::vector<std::string> fields =
      readFields(client.ports.files.read(kFile), UserProfile::kRecords);
  UserProfile profile;
  const auto records = profile.records();
  for (std::size_t index = 0; index < fields.size(); ++index) *records[index] = fields[index];
  return profile;
}

Profile::Profile(Client& client)
    : Form({.name = "Profile",
            .caption = "KV User Profiles",
            .width = 520 * kTwipsPerPixel,
            .height = 512 * kTwipsPerPixel}),
      client_(client) {
  const std::array<const Label*, UserProfile::kRecords> labels = {
      &Label1, &Label2, &Label3,  &Label4,  &Label5,  &Label6, &Label7,
      &Label8, &Label9, &Label10, &Label11, &Label12, &Label13};
  for (std::size_t index = 0; index < labels.size(); ++index) {
    boxes()[index]->AccessibleName = labels[index]->Caption.get();
  }
  Text2.Text = std::string(build::kVersion);
  Text2.Enabled = false;
  Command2.Visible = false;
  Command2.Main = true;
  Command2.Click = [this] { Command2_Click(); };
}

std::array<TextBox*, UserProfile::kRecords> Profile::boxes() {
  return {&Text1, &Text2, &Text3,  &Text4,  &Text5,  &Text6, &Text7,
          &Text8, &Text9, &Text10, &Text11, &Text12, &Text13};
}

void Profile::Form_Load() {
  UserProfile own;
  // Without a file the boxes are empty.
  FaultRule::goOn().step([&] { own = readProfile(client_); });
  fill(*this, own);
}

void Profile::Form_Unload() {
  if (!waiting_) return;
  client_.slots.afterUnload([&client = client_, profile = *waiting_] {
    auto& form = client.form<Profile>();
    form.foreign_ = true;
    fill(form, profile);
    showForReading(form);
  });
}

void Profile::Command2_Click() {
  std::string content;
  for (const TextBox* box : boxes()) {
    content += box->Text.get();
    content += kLineEnd;
  }
  client_.ports.files.replace(kFile, content);
  // The file has no way to hold such a field; it is written as it stands all the same.
  const std::vector<std::string> kept = readFields(content, UserProfile::kRecords);
  const auto shown = boxes();
  const bool whole = std::ranges::equal(shown, kept, {}, [](const TextBox* box) {
    // Reading skips blanks in front.
    const std::string& text = box->Text;
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
  });
  // The client outlives the form.
  Client& client = client_;
  client.slots.unload(*this);
  if (whole) return;
  client.MsgBox(
      "One of your fields holds a comma, or begins with a quotation mark. The profile cannot hold "
      "that: others would see the fields behind it in the wrong places. Please change it.",
      box_style::kExclamation);
}

void editProfile(Client& client) {
  std::optional<UserProfile> waiting;
  if (auto* loaded = client.loadedForm<Profile>(); loaded != nullptr && loaded->foreign_) {
    waiting = std::exchange(loaded->waiting_, std::nullopt);
    client.slots.unload(*loaded);
  }
  auto& form = client.form<Profile>();
  if (waiting) form.waiting_ = std::move(waiting);
  form.Command2.Visible = true;
  form.Show();
}

void showProfile(InboundContext& context) {
  const FaultRule& rule = context.rule;
  Client& client = context.client;
  std::string from;
  rule.step([&] { from = context.line.field(1); });
  const auto answer = client.lasting<AskedFor>().take(client, Asked::profile, from);
  auto* loaded = client.loadedForm<Profile>();
  // What is edited, and what is read by whoever has not asked for another, stays.
  if (loaded != nullptr && (loaded->beingEdited() || (loaded->Visible && !answer))) {
    UserProfile profile;
    const auto records = profile.records();
    for (std::size_t index = 0; index < records.size(); ++index) {
      rule.step([&] { *records[index] = context.line.field(index + 1); });
    }
    loaded->waiting_ = std::move(profile);
    return;
  }
  auto& form = client.form<Profile>();
  form.foreign_ = true;
  const auto boxes = form.boxes();
  for (std::size_t index = 0; index < boxes.size(); ++index) {
    rule.step([&] { boxes[index]->Text = std::string(context.line.field(index + 1)); });
  }
  for (TextBox* box : boxes) box->Enabled = false;
  showAnswer(form, answer && !answer->typedSince);
}

}  // namespace kelvaron
