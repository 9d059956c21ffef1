#include "engine/mail_action.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "engine/actions.h"
#include "engine/db_manager.h"
#include "engine/last_error.h"
#include "engine/path_mapper.h"
#include "exchange/mail_addresses.h"
#include "exchange/smtp_mail_session.h"
#include "exchange/template_merge.h"
#include "model/fields.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/temporary_file.h"
#include "platform/temporary_folder.h"
#include "ui/host.h"

namespace verdal::engine {

namespace {

using exchange::AddressUse;

int32_t Refuse(const std::string& message) {
  SetActionMessage(message.c_str());
  SetLastError(VERDAL_ERR_ACTION);
  return 0;
}

// The attachment every message of a run carries: the file as it is, or a template merged anew for
// each message into a file of the same name in the run's temporary folder.
struct Attachment {
  std::string path;  // mapped; empty for none
  std::string title;
  bool merge = false;
  std::string templateText;
  std::vector<exchange::TReplacerWord> words;
  exchange::LineBreaks breaks = exchange::LineBreaks::kKeep;
  platform::LocalTime today{};
  std::string mergedPath;  // in the temporary folder, once written

  // The file to attach for the record at cursor; "" where the merged file could not be written.
  std::string For(TDBManager& db, int32_t cursor, const std::string& folder) {
    if (!merge) return path;
    if (folder.empty()) return {};
    const std::string text = exchange::MergeTemplate(
        templateText, words, [&](int32_t field) { return ActionText(db, field, cursor); }, breaks, today);
    mergedPath = folder + "/" + title;
    return platform::WriteWholeFile(mergedPath.c_str(), text.data(), text.size()) ? mergedPath : "";
  }
};

// What the run did, as the user is told at its end.
struct Tally {
  int sent = 0;
  int failed = 0;
  int duplicates = 0;
  std::string failedList;  // the addresses that failed, each ending in CR LF

  void Fail(const std::string& address) {
    ++failed;
    failedList += address + "\r\n";
  }

  void Tell(ui::Host& host) const {
    char text[256];
    std::snprintf(text, sizeof text,
                  "Es wurden %d Emails versandt.\n%d Emails konnten nicht versandt werden.\n"
                  "%d Emails waren mehrfach vorhanden.",
                  sent, failed, duplicates);
    host.MessageBox(nullptr, ui::ApplicationName(), text, ui::Buttons::kOk, ui::Icon::kInformation,
                    ui::Answer::kOk);
    if (failed == 0) return;
    // The desktop opens the list in its own time, after this call has returned: the file stays
    // until the process ends.
    const std::string path = platform::MakeTemporaryFile("verdal-failed-", ".txt");
    if (path.empty()) return;
    platform::RemoveAtProcessEnd(path);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << failedList;
    host.OpenDocument(path);
  }
};

}  // namespace

int32_t RunMailAction(TDBManager& db, const options::TEmailData& option, int32_t count,
                      const int32_t* cursors) {
  Attachment attachment;
  if ((option.flags & options::TEmailData::kAttach) != 0) {
    attachment.path = option.attachment;
    if (!MapPath(attachment.path)) return 0;
    // An empty path passes: the messages go without an attachment.
    attachment.merge = !attachment.path.empty() && (option.flags & options::TEmailData::kTemplate) != 0;
    if (!attachment.path.empty() &&
        (!platform::FileExists(attachment.path.c_str()) ||
         (attachment.merge && !platform::ReadWholeFile(attachment.path.c_str(), attachment.templateText))))
      return Refuse("Der Dateianhang '" + attachment.path + "' konnte nicht gefunden werden!");
    attachment.title = platform::FileNamePart(attachment.path.c_str());
    if (attachment.merge) {
      attachment.words = exchange::ReplacerWords(db.store.fields);
      attachment.breaks = exchange::LineBreaksFor(attachment.path);
      attachment.today = platform::NowLocal();
    }
  }
  platform::SharedTemporaryFolder folder("~zep-");
  exchange::TSmtpMailSession session;
  if (!session.Available()) return Refuse("Die MAPI-Schnittstelle kann nicht initialisiert werden!");
  if (!session.Logon()) return Refuse("Fehler beim Logon!");

  Tally tally;
  exchange::TMailAddressList addresses;
  ui::Host& host = ui::CurrentHost();
  for (int32_t i = 0; i < count; ++i) {
    if (host.StopRequested()) break;
    for (const std::string& name : option.fields) {
      const int32_t field = model::FieldIndexByName(db.store, name.c_str());
      if (field < 0) continue;
      for (const exchange::TFieldAddress& found : addresses.Take(ActionText(db, field, cursors[i]))) {
        if (found.use == AddressUse::kDuplicate) {
          ++tally.duplicates;
          continue;
        }
        if (found.use == AddressUse::kNoAddress) {
          tally.Fail(found.text);
          continue;
        }
        exchange::TMapiMessage message;
        message.to.push_back(session.ResolveName(found.text));
        message.subject = option.subject;
        message.body = option.message;
        bool ready = true;
        if (!attachment.path.empty()) {
          message.attachmentPaths.push_back(attachment.For(db, cursors[i], folder.Path()));
          message.attachmentTitles.push_back(attachment.title);
          ready = !message.attachmentPaths.back().empty();
        }
        if (ready && session.Send(message)) ++tally.sent;
        else tally.Fail(found.text);
      }
    }
  }
  tally.Tell(host);
  if (!attachment.mergedPath.empty()) platform::WipeFile(attachment.mergedPath.c_str());
  session.Logoff();
  SetLastError(VERDAL_ERR_NONE);
  return 1;
}

}  // namespace verdal::engine
