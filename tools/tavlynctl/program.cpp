#include "tools/tavlynctl/program.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <span>
#include <string_view>

#include "tools/command_line.h"
#include "tools/completion.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/help.h"
#include "tools/tavlynctl/offers.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/progress.h"
#include "tools/tavlynctl/trouble/simulator.h"
#include "tools/tavlynctl/trouble/verbose.h"

namespace tavlyn::ctl {
namespace {

constexpr int kWeek = 604'800;  // seconds

// First words of the commands that handle keys, whose memory a crash must not write to disk; and of those
// whose arguments may be keys, which no message repeats.
constexpr std::string_view kWithKeys[] = {"secure", "keys", "ble", "raw", "serial"};
constexpr std::string_view kWordsMayBeKeys[] = {"secure", "raw", "serial write"};

bool IsAmong(std::string_view command, std::span<const std::string_view> all) {
  return std::ranges::any_of(all, [&](std::string_view words) { return IsOrIsBelow(command, words); });
}

std::string ProblemOfName(const std::string& word) {
  if (!word.empty() && ParseDeviceName(word).kind != NameKind::kWrong) return {};
  return word + " is not an index, a serial number, a path or luid:N";
}

}  // namespace

Json Request::DeviceDocument() const {
  Json document = Document();
  document["device"] = ActiveIndex();
  return document;
}

// As a list of one, so that a second word is reported as one file too many.
void Words::File(std::string& path) {
  const auto take = [&path, &files = request_.files](const std::vector<std::string>& given) {
    files = given;
    path = given.front();
  };
  command_.add_option_function<std::vector<std::string>>("FILE", take)->required()->expected(1);
}

void Words::Files(std::vector<std::string>& paths, const char* text) {
  const auto take = [&paths, &files = request_.files](const std::vector<std::string>& given) {
    files = given;
    paths = given;
  };
  command_.add_option_function<std::vector<std::string>>("FILE", take, text)->required();
}

CLI::Option* Words::Count(int& count, const char* text) {
  return command_.add_option("--count", count, text)->check(WholeNumber(1))->option_text("N");
}

void Words::Timeout(std::optional<double>& seconds, const char* text) {
  command_.add_option("--timeout", seconds, text)->check(Seconds(kWeek))->option_text("S");
}

void Words::Product() {
  static const std::map<std::string, std::uint32_t> kWords = {
      {"reader", kReaders}, {"magstripe", kMagstripes}, {"sonar", kSensors}};
  command_
      .add_option_function<std::string>(
          "--product", [&request = request_](const std::string& word) { request.products = kWords.at(word); },
          "reader, magstripe or sonar: only such a device; all are searched without it")
      ->check(OneOf({"reader", "magstripe", "sonar"}))
      ->option_text("WORD");
}

void Words::Device() {
  command_
      .add_option(
          "--device", request_.device.word,
          "The device: its index in list, serial number or path, or luid:N; else what TAVLYNCTL_DEVICE "
          "says, or the first one")
      ->check(CLI::Validator(ProblemOfName, ""))
      ->option_text("WHICH");
}

CLI::Option* Words::Which(const char* name, DeviceChoice& device, const char* text) {
  return command_.add_option(name, device.word, text)
      ->check(CLI::Validator(ProblemOfName, ""))
      ->option_text("WHICH");
}

void Words::DeviceToChange(const std::function<bool()>& changes) {
  Device();
  command_.final_callback([&command = command_, &device = request_.device, changes] {
    device.changes = changes();
    device.takesAll = command.get_option_no_throw("--all") != nullptr;
  });
}

void Words::All() {
  Flag("--all", request_.device.all, "Every device that is found, one after the other")
      ->excludes(command_.get_option("--device"));
}

Program::Program(const char* text, const std::function<std::string()>& version)
    : version_(version), app_(text, kProgram) {
  app_.require_subcommand(1);
  app_.formatter(HelpWithExamples());
  app_.add_flag("--json", request_.json, "One JSON object instead of text");
  AddVerboseWords(app_, request_.verbose);
  app_.add_flag_callback("--quiet", BeQuiet, "Say nothing of what lasts, on a terminal either");
  AddLinkWords(app_, request_.link);
}

CLI::App& Program::NewWord(const std::string& words, const char* text) {
  CLI::App* above = &app_;
  std::size_t begin = 0;
  for (std::size_t end = words.find(' '); end != std::string::npos; end = words.find(' ', begin)) {
    above = above->get_subcommand(words.substr(begin, end - begin));
    begin = end + 1;
  }
  CLI::App* word = above->add_subcommand(words.substr(begin), text);
  if (begin == 0) word->group(heading_);
  const std::string example = ExampleOf(words);
  return *word->footer(example.empty() ? "" : "Example: " + example);
}

void Program::Group(const char* words, const char* text) { NewWord(words, text).require_subcommand(1); }

CLI::App& Program::NewCommand(const std::string& words, const char* text) {
  CLI::App& command = NewWord(words, text);
  command.add_flag("--json", request_.json, "One JSON object instead of text");
  return command;
}

// What the environment says, unless the command line does. Commands without --device run whatever it says:
// list shows what to put there.
void Program::TakeVariable() {
  if (Innermost(app_).get_option_no_throw("--device") == nullptr) return;
  const char* word = std::getenv(kDeviceVariable);
  DeviceChoice& device = request_.device;
  if (word == nullptr || *word == '\0' || device.all || !device.word.empty()) return;
  const std::string problem = ProblemOfName(word);
  if (!problem.empty()) throw Failure(kUsage, kDeviceVariable + std::string(": ") + problem);
  device.word = word;
  device.isVariable = true;
}

int Program::RunGiven() try {
  if (request_.link.ascii && request_.link.kind == LinkKind::kUsb) {
    throw Failure(kUsage, "--ascii needs --com or --ip");
  }
  if (IsAmong(request_.command, kWithKeys)) ForbidCoreImage();
  for (const std::string& path : request_.files) RequireFile(path);
  TakeVariable();
  if (request_.verbose > 0) BeQuiet();  // the trace says more
  BeginTrace(request_.verbose);
  SetLockHolder(std::string(kProgram) + " " + request_.command);
  Show(commands_.at(request_.command)(request_), request_.json);
  return kOk;
} catch (const Failure& failure) {
  return ShowFailure(failure, request_.command, request_.json);
}

int Program::Refuse(const CLI::ParseError& error, bool json) const {
  const std::string command = GivenCommand(app_);
  return ShowFailure(Failure(kUsage, WrongWords(app_, error, IsAmong(command, kWordsMayBeKeys))), command,
                     json);
}

// A shell that completes a word has no place for a message.
int Program::Complete(const std::vector<std::string>& words) try {
  ShowCandidates(app_, words, Offers());
  return kOk;
} catch (const Failure& failure) {
  return failure.code;
}

void Program::AddHelp() {
  AddCommonWords(app_, version_);
  app_.get_subcommand(kHelp)->group("Help");
}

// Options may stand alone too, but those that look elsewhere than on USB want a command.
bool Program::IsWithoutCommand(const CLI::ParseError& error) const {
  const bool isMissing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  const Link& link = request_.link;
  return isMissing && GivenCommand(app_).empty() && app_.remaining().empty() && link.kind == LinkKind::kUsb &&
         !link.ascii;
}

int Program::RunWithoutCommand() try {
  BeginTrace(request_.verbose);
  Show(FirstSteps(app_, [this] { return commands_.at("list")(request_); }), request_.json);
  return kOk;
} catch (const Failure& failure) {
  return ShowFailure(failure, "", request_.json);
}

int Program::Run(int argc, char** argv) {
  if (const auto words = WordsToComplete(argc, argv)) return Complete(*words);
  // Looks for --json in the words themselves, because not all of them may be understood.
  const std::span words(argv, static_cast<std::size_t>(argc));
  const bool json = std::ranges::find(words, std::string_view("--json")) != words.end();
  if (const auto replay = WordsForReplay(words); !replay.empty()) {
    return ShowFailure(RunSimulator(replay), "", json);
  }
  try {
    app_.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app_.exit(error);  // help
    if (IsWithoutCommand(error)) return RunWithoutCommand();
    return Refuse(error, json);
  }
  request_.command = GivenCommand(app_);
  return RunGiven();
}

}  // namespace tavlyn::ctl
