// The parent of workers, driven by lines: shows what it hears, a line each, with the link before it.
//
//   worker_owner PROGRAM PAUSE LINK...
//
// PAUSE: milliseconds between two questions to a device. Lines of its standard input: "pass SECONDS" lets
// time pass, "be LINK..." changes the links, "LINK OBJECT" sends a command, which is told if it is not taken.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tools/tavlynd/workers.h"

namespace {

using tavlyn::agent::Json;
using tavlyn::agent::Workers;
using tavlyn::agent::WorkerTerms;

void Show(const std::string& text) {
  std::puts(text.c_str());
  std::fflush(stdout);
}

std::vector<std::string> WordsOf(std::istringstream& line) {
  std::vector<std::string> words;
  for (std::string word; line >> word;) words.push_back(word);
  return words;
}

void Do(const std::string& typed, Workers& workers, WorkerTerms& terms) {
  std::istringstream line(typed);
  std::string verb;
  line >> verb;
  if (verb == "pass") {
    double seconds = 0;
    line >> seconds;
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  } else if (verb == "be") {
    terms.links = WordsOf(line);
    workers.Be(terms);
  } else {
    std::string command;
    std::getline(line, command);
    if (!workers.Send(verb, Json::parse(command))) Show("not taken");
  }
}

}  // namespace

int main(int argc, char** argv) {
  WorkerTerms terms;
  terms.program = argv[1];
  terms.pause = std::chrono::milliseconds(std::atoi(argv[2]));
  terms.links = {argv + 3, argv + argc};
  Workers workers([](const std::string& link, const Json& said) { Show(link + " " + said.dump()); });
  workers.Be(terms);
  // Workers do not get it.
  static_cast<void>(open("/dev/null", O_RDONLY));
  std::string typed;
  for (bool isOver = false; !isOver;) {
    std::vector<pollfd> polled{{STDIN_FILENO, POLLIN, 0}};
    workers.AddTo(polled);
    poll(polled.data(), polled.size(), workers.TurnMs());
    workers.Serve(polled);
    if (polled[0].revents == 0) continue;
    char byte = 0;
    isOver = read(STDIN_FILENO, &byte, 1) <= 0;
    if (byte != '\n') {
      typed += byte;
    } else {
      Do(typed, workers, terms);
      typed.clear();
    }
  }
  return argc < 2;
}
