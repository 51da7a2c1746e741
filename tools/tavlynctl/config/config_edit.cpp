// config edit.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "api.h"
#include "tools/own_file.h"
#include "tools/path_names.h"
#include "tools/printable.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/config/loading.h"
#include "tools/tavlynctl/config/saving.h"
#include "tools/tavlynctl/config/state_folder.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

std::string Editor() {
  for (const char* name : {"VISUAL", "EDITOR"}) {
    const char* editor = std::getenv(name);
    if (editor != nullptr && *editor != '\0') return editor;
  }
  return UsualEditor();
}

// Not in a temporary folder: what somebody has written stays until it has arrived, whatever is edited later.
std::string PlaceOfText() {
  MakeOwnFolder(StateFolder());
  const std::string name = "edited-" + FolderOfActiveDevice();
  std::filesystem::path place = PathOf(StateFolder()) / PathOf(name + ".txt");
  std::error_code error;
  for (int number = 2; std::filesystem::exists(place, error); ++number) {
    place.replace_filename(PathOf(name + "-" + std::to_string(number) + ".txt"));
  }
  return NameOfPath(place);
}

// A test of a text puts it into the library's mirror of another product; that of a reader it leaves alone.
void ForgetTest() {
  if (DeviceIsReader() || ReadCfg() == 1) return;
  throw Failure(kDeviceError, ActiveDeviceName() + " could not be read again, " + ErrorText());
}

bool IsOfText(const Failure& failure) { return failure.code == kUsage || failure.code == kBadFile; }

struct EditConfig {
  Overwriting over;

  void Take(Words& words) {
    over.TakeAll(words);
    words.DryRun(over.dryRun);
    words.Product();
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    over.Require("this overwrites the configuration");
    const Session session(request.link, request.products);
    session.Use(request.device);
    const std::string path = PlaceOfText();
    SaveConfigurationAt(path);
    const std::string before = ContentsOf(path);
    try {
      Json document = Edited(path, before, request);
      RemoveOwnFile(path);
      return document;
    } catch (const Failure& failure) {
      if (ContentsOf(path) == before) {
        RemoveOwnFile(path);
        throw;
      }
      throw Failure(failure.code, failure.what() + ("; what you wrote is in " + path), failure.document);
    }
  }

 private:
  // Nothing is written of a text that does not pass its tests as a whole.
  void Test(const std::string& path, const Request& request) const {
    Loading::Terms terms = TermsOf(request);
    terms.over.dryRun = true;
    static_cast<void>(LoadingOf(path).Into(request.Document(), terms));
    ForgetTest();
  }

  [[nodiscard]] Json Edited(const std::string& path, const std::string& before,
                            const Request& request) const {
    while (true) {
      NowResting();
      const std::string editor = Editor();
      if (!RunEditor(editor, path)) {
        throw Failure(kBadFile, "the editor " + editor + " failed; VISUAL or EDITOR names another");
      }
      Json document = request.DeviceDocument();
      if (ContentsOf(path) == before) {
        document["written"] = false;
        document["changes"] = Json::array();
        return document;
      }
      try {
        Test(path, request);
      } catch (const Failure& failure) {
        if (!IsOfText(failure) || !MayAsk()) throw;
        Tell(kProgram, failure.what());
        if (!IsConfirmed("edit it again", true)) throw Failure(failure.code, "nothing was written");
        ForgetTest();
        continue;
      }
      return LoadingOf(path).Into(std::move(document), TermsOf(request));
    }
  }

  [[nodiscard]] Loading::Terms TermsOf(const Request& request) const { return {request.command, over, true}; }
  [[nodiscard]] static Loading LoadingOf(const std::string& path) { return {path, false, "the edited text"}; }
};

}  // namespace

void AddConfigEdit(Program& program) {
  program.Add<EditConfig>("config edit",
                          "Opens the configuration in your editor, and writes what you have changed");
}

}  // namespace tavlyn::ctl
